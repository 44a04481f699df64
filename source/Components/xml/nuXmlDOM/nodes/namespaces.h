#pragma once

#include <map>
#include <utility>

#include "nuXmlDOM/storage/nodeName.h"
#include "nuXmlParser/chars.h"

class TNuDOMAttribute;
class TNuDOMElement;

namespace nu {

/// The declaration that is in scope at `element` for the prefix of `name`; null without one.
[[nodiscard]] const TNuDOMAttribute* findDeclaration(const NodeName& name,
                                                     const TNuDOMElement& element);

/// The namespace that the declarations in scope at `element` give a name; "" without one.
[[nodiscard]] NuXmlString resolveNamespace(const NodeName& name, const TNuDOMElement& element);

/// The same for many elements of a tree that does not change meanwhile: what was found from far
/// below is remembered there, so that asking for every element of a deep tree stays linear.
class DeclarationSearch {
public:
    [[nodiscard]] const TNuDOMAttribute* find(const NodeName& name, const TNuDOMElement& element);

private:
    using Place = std::pair<const NodeName*, const TNuDOMElement*>;

    std::map<Place, const TNuDOMAttribute*> known_;
};

} // namespace nu
