#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "host/runtime/export.h"
#include "nuXmlParser/chars.h"

/// \file
/// Bytes as XML text: base64 (RFC 4648), as XML Schema Datatypes takes it over in base64Binary.

/// The bytes as base64 in one line, padded with "=".
NUXML_API NuXmlString NuBytesToXML(std::span<const std::uint8_t> bytes);

/// The bytes that base64 stands for. White space may stand anywhere; padding is required, and the
/// bits that the last character leaves over have to be zero. Throws host::EConvertError with the
/// place of the first character that does not fit (of the last padding for such bits), or of the
/// end.
NUXML_API std::vector<std::uint8_t> NuXMLToBytes(std::u16string_view text);
