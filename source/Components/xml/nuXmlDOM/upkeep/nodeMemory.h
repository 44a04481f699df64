#pragma once

#include <new>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/upkeep/documentParts.h"

namespace nu {

/// How nodes come into being and go.
class NodeMemory {
public:
    /// Makes a node of the class in the memory of the document.
    template <class Node>
    [[nodiscard]] [[gnu::always_inline]] static Node& make(TNuDOMDocument& document,
                                                           const NodeName* name) {
        void* memory = document.parts().memory.allocate(sizeof(Node));
        return *new (memory) Node(name, Node::Type);
    }
    /// Frees a node that has no children and no place, with its attributes, lists and faces.
    static void destroy(TNuDOMNode& node) noexcept;
    /// Frees a node outside of the tree and everything below it, whatever is held.
    static void destroySubtree(TNuDOMNode& root) noexcept;
};

} // namespace nu
