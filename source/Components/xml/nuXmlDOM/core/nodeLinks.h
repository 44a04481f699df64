#pragma once

#include "nuXmlDOM/core/node.h"

class TNuDOMElement;

namespace nu {

/// What leads from a node to others, for the library's own algorithms.
class NodeLinks {
public:
    /// The parent; null also for a node that its parent refused, which does not stand there.
    [[nodiscard]] static TNuDOMNode* parent(const TNuDOMNode& node) noexcept {
        return node.hasFlag(isRefused) ? nullptr : node.parent_;
    }
    /// The same when it is an element, else null.
    [[nodiscard]] static TNuDOMElement* parentElement(const TNuDOMNode& node) noexcept;
    [[nodiscard]] static TNuDOMNode* next(const TNuDOMNode& node) noexcept { return node.next_; }
    /// Whether the node stands in the chain of its parent; false also for one that was refused.
    [[nodiscard]] static bool isLinked(const TNuDOMNode& node) noexcept {
        return node.parent_ != nullptr && !node.hasFlag(isRefused);
    }

    /// The links themselves, for the chains that they make up.
    static void setParent(TNuDOMNode& node, TNuDOMNode* parent) noexcept { node.parent_ = parent; }
    static TNuDOMNode*& nextOf(TNuDOMNode& node) noexcept { return node.next_; }
    static TNuDOMNode*& previousOf(TNuDOMNode& node) noexcept {
        return static_cast<TNuDOMChildNode&>(node).previous_;
    }
};

/// What is noted in a node.
class NodeFlags {
public:
    [[nodiscard]] static bool has(const TNuDOMNode& node, ObjectFlag flag) noexcept {
        return node.hasFlag(flag);
    }
    static void set(TNuDOMNode& node, ObjectFlag flag) noexcept { node.setFlag(flag); }
    static void clear(TNuDOMNode& node, ObjectFlag flag) noexcept { node.clearFlag(flag); }
};

} // namespace nu
