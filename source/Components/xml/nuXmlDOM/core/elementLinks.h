#pragma once

#include <type_traits>

#include "nuXmlDOM/core/element.h"

namespace nu {

/// What stands in an element, for the library's own algorithms.
class ElementLinks {
public:
    [[nodiscard]] static NodeChain& children(TNuDOMElement& element) noexcept {
        return element.children_;
    }
    [[nodiscard]] static AttributeChain& attributes(TNuDOMElement& element) noexcept {
        return element.attributes_;
    }
    /// Whether a child of the element may have a name; most elements hold nothing but text.
    [[nodiscard]] static bool mayHaveNamedChildren(const TNuDOMElement& element) noexcept {
        return element.hasFlag(hadNamedChild);
    }

    /// Puts a node that has no place behind the children of `element`, which is known to be able
    /// to hold it and to have no lists.
    template <class Node> static void append(TNuDOMElement& element, Node& node) noexcept {
        NodeLinks::setParent(node, &element);
        element.children_.append(node);
        if constexpr (!std::is_base_of_v<TNuDOMCharacterData, Node>) {
            element.setFlag(hadNamedChild);
        }
    }
    /// The same for an attribute and the last one of the element; null when there is none.
    static void append(TNuDOMElement& element, TNuDOMAttribute* last,
                       TNuDOMAttribute& attribute) noexcept {
        NodeLinks::setParent(attribute, &element);
        element.attributes_.insertBehind(last, attribute);
    }
};

} // namespace nu
