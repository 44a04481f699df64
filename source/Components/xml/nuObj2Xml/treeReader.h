#pragma once

#include "nuObj2Xml/objectBuilder.h"
#include "nuXmlDOM/core/element.h"

namespace nu {

/// Reads an object from an element of a tree. `serializer` reads it; null for the one that is
/// registered.
void readElement(ObjectBuilder& builder, TNuDOMElement& element, host::Instance object,
                 TNuSerializer* serializer);

} // namespace nu
