#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/elementLinks.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/path/pathNodes.h"

/// \file
/// The tree as paths see it. The document stands for the element that holds the document element:
/// it has no attributes, and instructions and comments beside the document element are not below
/// it.

namespace nu {

/// Whether something can stand below the node.
[[nodiscard]] inline bool isPathContext(const TNuDOMNode& node) noexcept {
    return is<TNuDOMElement>(node) || is<TNuDOMDocument>(node);
}

/// The first child of an element or a document, which may be any node; of the document the document
/// element.
[[nodiscard]] inline TNuDOMNode* firstPathChild(TNuDOMNode& context) noexcept {
    // Named in full: the class is known, so nothing needs to be looked up.
    return is<TNuDOMElement>(context)
               ? static_cast<TNuDOMElement&>(context).TNuDOMElement::get_firstChild()
               : static_cast<TNuDOMDocument&>(context).GetRootNode();
}

/// The same for who looks for names: null also where all children are known to have none.
[[nodiscard]] inline TNuDOMNode* firstOfNamed(TNuDOMNode& context) noexcept {
    const bool isLeaf = is<TNuDOMElement>(context) &&
                        !ElementLinks::mayHaveNamedChildren(static_cast<TNuDOMElement&>(context));
    return isLeaf ? nullptr : firstPathChild(context);
}

/// The first element among a node and those behind it; null without one. Counts what it looks at.
[[nodiscard]] inline TNuDOMNode* elementFrom(TNuDOMNode* node, std::uint64_t& visits) noexcept {
    for (; node != nullptr; node = NodeLinks::next(*node)) {
        ++visits;
        if (is<TNuDOMElement>(*node)) {
            break;
        }
    }
    return node;
}

/// Asks for the memory some way behind a node: nodes nearly always lie there in the order of the
/// document, so a walk comes to it soon. So far, because little time goes by from node to node; the
/// nearest cache of any processor holds that much. Costs next to nothing where it is wrong.
inline void fetchAhead(const TNuDOMNode& node) noexcept {
    constexpr std::uintptr_t distance = 12 * 1024;
    constexpr std::uintptr_t line = 64;
    const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(&node) + distance;
    __builtin_prefetch(reinterpret_cast<const void*>(ahead));
    __builtin_prefetch(reinterpret_cast<const void*>(ahead + line));
}

/// The next element below `root` in the order of the document; null at the end. Counts what it
/// looks at.
[[nodiscard]] inline TNuDOMNode* nextElement(TNuDOMNode& node, const TNuDOMNode& root,
                                             std::uint64_t& visits) noexcept {
    // 1. Down.
    TNuDOMNode* next = elementFrom(firstOfNamed(node), visits);
    // 2. On, else up until it goes on.
    for (TNuDOMNode* from = &node; next == nullptr && from != &root;
         from = NodeLinks::parent(*from)) {
        next = elementFrom(NodeLinks::next(*from), visits);
    }
    return next;
}

/// Visits the nodes among the children of `context`, then those among the children of each element
/// below it in the order of the document, until `visit` gives false for one. One walk: what an
/// element has below it waits until its turn comes, in memory that is the caller's. Throws
/// std::bad_alloc.
template <class Visit> void walkByParents(TNuDOMNode& context, PathNodes& waiting, Visit&& visit) {
    waiting.clear();
    if (TNuDOMNode* child = firstOfNamed(context)) {
        waiting.push_back(child);
    }
    while (!waiting.empty()) {
        // 1. All children of the next element.
        TNuDOMNode* child = waiting.back();
        waiting.pop_back();
        const auto firstOfLevel = static_cast<std::ptrdiff_t>(waiting.size());
        for (; child != nullptr; child = NodeLinks::next(*child)) {
            fetchAhead(*child);
            if (!visit(*child)) {
                return;
            }
            TNuDOMNode* const below = is<TNuDOMElement>(*child) ? firstOfNamed(*child) : nullptr;
            if (below != nullptr) {
                waiting.push_back(below);
            }
        }
        // 2. Below the first of them it goes on.
        std::reverse(waiting.begin() + firstOfLevel, waiting.end());
    }
}

} // namespace nu
