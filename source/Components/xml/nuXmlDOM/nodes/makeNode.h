#pragma once

#include <new>

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/nodeAccess.h"

/// \file
/// How nodes come into being; for the files that define or make a class of nodes.

namespace nu {

template <class Node>
[[gnu::always_inline]] inline Node& NodeAccess::make(TNuDOMDocument& document,
                                                     const NodeName* name) {
    void* memory = document.memory().allocate(sizeof(Node));
    return *new (memory) Node(name, Node::Type);
}

template <class Node> void NodeAccess::appendLoaded(TNuDOMElement& element, Node& node) noexcept {
    node.parent_ = &element;
    element.children_.append(node);
    if constexpr (!std::is_base_of_v<TNuDOMCharacterData, Node>) {
        element.setFlag(hadNamedChild);
    }
}

inline void NodeAccess::appendLoaded(TNuDOMElement& element, TNuDOMAttribute* last,
                                     TNuDOMAttribute& attribute) noexcept {
    attribute.parent_ = &element;
    element.attributes_.insertBehind(last, attribute);
}

/// What TNuDOMNodeClass::create is for a class of nodes.
template <class Node> TNuDOMNode* createNode(TNuDOMDocument* document) {
    if (document == nullptr) {
        host::failAssertion(cOwnerRequired, cDomLocation, __LINE__);
    }
    return &NodeAccess::make<Node>(*document, document->names().nameless());
}

} // namespace nu
