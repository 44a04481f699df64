#pragma once

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/elementLinks.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/upkeep/documentParts.h"

/// \file
/// Ways through the tree.

namespace nu {

/// The chain of children; null for nodes that cannot have any. Of a document only instructions and
/// comments stand there.
[[nodiscard]] inline NodeChain* childrenOf(TNuDOMNode& node) noexcept {
    if (auto* element = as<TNuDOMElement>(&node)) {
        return &ElementLinks::children(*element);
    }
    auto* document = as<TNuDOMDocument>(&node);
    return document != nullptr ? &document->parts().topLevel : nullptr;
}
[[nodiscard]] inline const NodeChain* childrenOf(const TNuDOMNode& node) noexcept {
    return childrenOf(const_cast<TNuDOMNode&>(node));
}

/// The first attribute; null without one.
[[nodiscard]] inline TNuDOMNode* firstAttributeOf(const TNuDOMNode& node) noexcept {
    auto* element = as<TNuDOMElement>(&const_cast<TNuDOMNode&>(node));
    return element != nullptr ? ElementLinks::attributes(*element).first() : nullptr;
}

/// The attributes of a node for algorithms that only pass through it.
[[nodiscard]] inline TNuDOMRange<TNuDOMAttribute> attributesOf(const TNuDOMNode& node) noexcept {
    return TNuDOMRange<TNuDOMAttribute>(firstAttributeOf(node));
}

/// The first node from `start` on for which `test` holds, among `root`, its attributes, and
/// everything below it in document order; null without one. `start` is one of these.
template <class Test>
[[nodiscard]] const TNuDOMNode* firstFrom(const TNuDOMNode& start, const TNuDOMNode& root,
                                          Test&& test) {
    const TNuDOMNode* node = &start;
    const TNuDOMNode* attribute = nullptr;
    if (is<TNuDOMAttribute>(start) && NodeLinks::isLinked(start)) {
        attribute = &start;
        node = NodeLinks::parent(start);
    }
    for (;; attribute = nullptr) {
        // 1. The node and its attributes.
        if (attribute == nullptr) {
            if (test(*node)) {
                return node;
            }
            attribute = firstAttributeOf(*node);
        }
        for (; attribute != nullptr; attribute = NodeLinks::next(*attribute)) {
            if (test(*attribute)) {
                return attribute;
            }
        }
        // 2. Down, else on, else up until it goes on.
        const NodeChain* below = childrenOf(*node);
        if (below != nullptr && !below->empty()) {
            node = below->first();
            continue;
        }
        while (node != &root && NodeLinks::next(*node) == nullptr && NodeLinks::isLinked(*node)) {
            node = NodeLinks::parent(*node);
        }
        if (node == &root || NodeLinks::next(*node) == nullptr) {
            return nullptr;
        }
        node = NodeLinks::next(*node);
    }
}

/// The same from the beginning.
template <class Test>
[[nodiscard]] const TNuDOMNode* firstInSubtree(const TNuDOMNode& root, Test&& test) {
    return firstFrom(root, root, test);
}

} // namespace nu
