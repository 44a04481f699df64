#pragma once

/// \file
/// Character input and value conversion: everything of the unit.

#include "nuXmlParser/baseParser.h"
#include "nuXmlParser/boolText.h"
#include "nuXmlParser/chars.h"
#include "nuXmlParser/escape.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlParser/smallStreamParser.h"
#include "nuXmlParser/stringBuffer.h"
#include "nuXmlParser/unescape.h"
