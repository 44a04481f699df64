#pragma once

/// \file
/// Objects as XML and back: everything of the unit. Who puts objects into trees includes
/// nuXmlDOM.h, too.

#include "host/runtime/classRegistry.h"
#include "host/runtime/exception.h"
#include "host/runtime/persistent.h"
#include "host/runtime/propertyValue.h"
#include "nuObj2Xml/dataSetForms.h"
#include "nuObj2Xml/domForms.h"
#include "nuObj2Xml/entryFunctions.h"
#include "nuObj2Xml/objectStream.h"
#include "nuObj2Xml/registry.h"
#include "nuObj2Xml/serializer.h"
#include "nuObj2Xml/specialSerializers.h"
