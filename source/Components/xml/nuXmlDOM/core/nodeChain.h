#pragma once

class TNuDOMNode;

namespace nu {

/// The children of a node in order, linked through their own members.
///
/// Every change takes the same time wherever it happens. The first node's link backwards leads to
/// the last node, so that one pointer is all that the owner keeps.
class NodeChain {
public:
    [[nodiscard]] bool empty() const noexcept { return first_ == nullptr; }
    [[nodiscard]] TNuDOMNode* first() const noexcept { return first_; }
    [[nodiscard]] inline TNuDOMNode* last() const noexcept;
    [[nodiscard]] inline TNuDOMNode* previous(const TNuDOMNode& node) const noexcept;
    [[nodiscard]] static inline TNuDOMNode* next(const TNuDOMNode& node) noexcept;

    inline void append(TNuDOMNode& node) noexcept;
    /// Puts `node` before `place`, which is in the chain; at the end when it is null.
    inline void insert(TNuDOMNode& node, TNuDOMNode* place) noexcept;
    inline void remove(TNuDOMNode& node) noexcept;

private:
    /// The link backwards of a node of the chain.
    [[nodiscard]] static inline TNuDOMNode*& previousOf(TNuDOMNode& node) noexcept;

    TNuDOMNode* first_ = nullptr;
};

} // namespace nu
