#pragma once

#include <set>
#include <utility>

class TNuDOMNode;

namespace nu {

/// The nodes outside of the tree that have a parent all the same: the one that has refused them and
/// does not know them.
class RefusedNodes {
public:
    /// The parent of a node has refused it.
    void note(TNuDOMNode& node) noexcept;
    /// A refused node goes elsewhere.
    void forget(TNuDOMNode& node) noexcept;
    /// Any node goes: neither is it refused, nor is it the parent of a refused one.
    void leaveNode(TNuDOMNode& node) noexcept;

private:
    /// Behind their parents.
    std::set<std::pair<const TNuDOMNode*, TNuDOMNode*>> nodes_;
};

} // namespace nu
