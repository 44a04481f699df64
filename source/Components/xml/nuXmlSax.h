#pragma once

/// \file
/// The SAX2 reader: everything of the unit.

#include "nuXmlParser/conforming/xmlFault.h"
#include "nuXmlParser/limits.h"
#include "nuXmlParser/parserErrors.h"
#include "nuXmlSax/attributes.h"
#include "nuXmlSax/contentHandler.h"
#include "nuXmlSax/eventHandlers.h"
#include "nuXmlSax/events.h"
#include "nuXmlSax/features.h"
#include "nuXmlSax/handler.h"
#include "nuXmlSax/namespaceList.h"
#include "nuXmlSax/properties.h"
#include "nuXmlSax/reader.h"
#include "nuXmlSax/vendor.h"
