#pragma once

#include <string_view>
#include <type_traits>

#include "nuXmlDOM/core/node.h"

/// \file
/// Nodes as nodes of their class.

class TNuDOMCharacterData;
class TNuDOMText;

namespace nu {

/// Whether a node is of the class, or one derived from it.
template <class Node> [[nodiscard]] bool is(const TNuDOMNode& node) noexcept {
    const host::DOMNodeType type = node.get_nodeType();
    if constexpr (std::is_same_v<Node, TNuDOMNode>) {
        return true;
    } else if constexpr (std::is_same_v<Node, TNuDOMCharacterData>) {
        return type == host::TEXT_NODE || type == host::CDATA_SECTION_NODE ||
               type == host::COMMENT_NODE;
    } else if constexpr (std::is_same_v<Node, TNuDOMText>) {
        return type == host::TEXT_NODE || type == host::CDATA_SECTION_NODE;
    } else {
        return type == Node::Type;
    }
}

/// The node as one of the class, or null when it is of another.
template <class Node> [[nodiscard]] Node* as(TNuDOMNode* node) noexcept {
    return node != nullptr && is<Node>(*node) ? static_cast<Node*>(node) : nullptr;
}

[[noreturn]] void raiseInvalidCast(std::u16string_view className);

/// The same, but throws host::EInvalidCast when it is of another class.
template <class Node> [[nodiscard]] Node& cast(TNuDOMNode& node) {
    if (!is<Node>(node)) {
        if constexpr (std::is_same_v<Node, TNuDOMCharacterData>) {
            raiseInvalidCast(u"TNuDOMCharacterData");
        } else {
            raiseInvalidCast(Node::Class.name);
        }
    }
    return static_cast<Node&>(node);
}

} // namespace nu
