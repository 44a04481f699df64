#pragma once

/// \file
/// Character input and value conversion: everything of the unit.

#include "nuXmlParser/base64Text.h"
#include "nuXmlParser/baseParser.h"
#include "nuXmlParser/boolText.h"
#include "nuXmlParser/chars.h"
#include "nuXmlParser/conforming/conformingOptions.h"
#include "nuXmlParser/conforming/conformingStream.h"
#include "nuXmlParser/conforming/sourceForm.h"
#include "nuXmlParser/conforming/xmlFault.h"
#include "nuXmlParser/dateTimeText.h"
#include "nuXmlParser/escape.h"
#include "nuXmlParser/largeStreamParser.h"
#include "nuXmlParser/numberText.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlParser/schemaTypes.h"
#include "nuXmlParser/smallStreamParser.h"
#include "nuXmlParser/stringBuffer.h"
#include "nuXmlParser/unescape.h"
#include "nuXmlParser/variantText.h"
