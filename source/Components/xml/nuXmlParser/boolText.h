#pragma once

#include <string>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// Booleans as XML text, after the lexical forms of XML Schema Datatypes.

/// "true" or "false".
NUXML_API std::u16string NuBoolToXML(bool value);

/// Reads "true", "1", "false" and "0", letter case and white space around them ignored.
/// Throws host::EConvertError for anything else.
NUXML_API bool NuXMLToBool(std::u16string_view text);
