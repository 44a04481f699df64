#pragma once

#include "nuXmlDOM/core/nodeLinks.h"

namespace nu {

/// The children of a node in order, linked through their own members.
///
/// Every change takes the same time wherever it happens. The first node's link backwards leads to
/// the last node, so that one pointer is all that the owner keeps.
class NodeChain {
public:
    [[nodiscard]] bool empty() const noexcept { return first_ == nullptr; }
    [[nodiscard]] TNuDOMNode* first() const noexcept { return first_; }
    [[nodiscard]] TNuDOMNode* last() const noexcept {
        return first_ != nullptr ? NodeLinks::previousOf(*first_) : nullptr;
    }
    [[nodiscard]] TNuDOMNode* previous(const TNuDOMNode& node) const noexcept {
        return &node != first_ ? NodeLinks::previousOf(const_cast<TNuDOMNode&>(node)) : nullptr;
    }

    void append(TNuDOMNode& node) noexcept {
        NodeLinks::nextOf(node) = nullptr;
        if (first_ == nullptr) {
            NodeLinks::previousOf(node) = &node;
            first_ = &node;
            return;
        }
        TNuDOMNode* const last = NodeLinks::previousOf(*first_);
        NodeLinks::previousOf(node) = last;
        NodeLinks::nextOf(*last) = &node;
        NodeLinks::previousOf(*first_) = &node;
    }

    /// Puts `node` before `place`, which is in the chain; at the end when it is null.
    void insert(TNuDOMNode& node, TNuDOMNode* place) noexcept {
        if (place == nullptr) {
            append(node);
            return;
        }
        NodeLinks::nextOf(node) = place;
        NodeLinks::previousOf(node) = NodeLinks::previousOf(*place);
        if (place == first_) {
            first_ = &node;
        } else {
            NodeLinks::nextOf(*NodeLinks::previousOf(*place)) = &node;
        }
        NodeLinks::previousOf(*place) = &node;
    }

    void remove(TNuDOMNode& node) noexcept {
        TNuDOMNode* const previous = NodeLinks::previousOf(node);
        TNuDOMNode* const next = NodeLinks::next(node);
        if (&node == first_) {
            first_ = next;
        } else {
            NodeLinks::nextOf(*previous) = next;
        }
        if (next != nullptr) {
            NodeLinks::previousOf(*next) = previous;
        } else if (first_ != nullptr) {
            NodeLinks::previousOf(*first_) = previous;
        }
        NodeLinks::previousOf(node) = nullptr;
        NodeLinks::nextOf(node) = nullptr;
    }

private:
    TNuDOMNode* first_ = nullptr;
};

} // namespace nu
