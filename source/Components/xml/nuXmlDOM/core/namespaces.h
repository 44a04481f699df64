#pragma once

#include "nuXmlDOM/core/nameTable.h"
#include "nuXmlParser/chars.h"

class TNuDOMAttribute;
class TNuDOMElement;

namespace nu {

/// The declaration that is in scope at `element` for the prefix of `name`; null without one.
[[nodiscard]] const TNuDOMAttribute* findDeclaration(const NodeName& name,
                                                     const TNuDOMElement& element);

/// The namespace that the declarations in scope at `element` give a name; "" without one.
[[nodiscard]] NuXmlString resolveNamespace(const NodeName& name, const TNuDOMElement& element);

} // namespace nu
