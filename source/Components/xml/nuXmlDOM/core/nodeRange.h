#pragma once

#include <cstddef>
#include <iterator>
#include <string_view> // declares what is said of ranges below
#include <type_traits>

#include "nuXmlDOM/core/attribute.h"
#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"

/// \file
/// Nodes for range-based for loops.

namespace nu {

/// What a range takes nodes of its class by: any of them.
struct AnyName {
    [[nodiscard]] bool operator()(const TNuDOMNode& /*node*/) const noexcept { return true; }
    friend bool operator==(AnyName, AnyName) noexcept = default;
};

/// Those of one qualified name.
class SameName {
public:
    SameName() noexcept = default;
    explicit SameName(const NodeName* canonical) noexcept : canonical_(canonical) {}
    [[nodiscard]] bool operator()(const TNuDOMNode& node) const noexcept {
        return NodeContext::name(node).canonical == canonical_;
    }
    friend bool operator==(SameName, SameName) noexcept = default;

private:
    const NodeName* canonical_ = nullptr;
};

} // namespace nu

/// Nodes in the order of the document, for loops and algorithms:
/// `for (TNuDOMElement& book : library.ChildElements())`.
///
/// Walks the tree itself without a list: a loop may change everything but the place of the node
/// that it stands at. A view in the sense of the standard library; iterators are good without it.
template <class Node, class Test = nu::AnyName> class TNuDOMRange {
public:
    /// Steps from node to node.
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = std::remove_const_t<Node>;
        using difference_type = std::ptrdiff_t;
        using pointer = Node*;
        using reference = Node&;

        Iterator() noexcept = default;
        Iterator(TNuDOMNode* node, Test test) noexcept : node_(node), test_(test) { skip(); }
        Node& operator*() const noexcept { return static_cast<Node&>(*node_); }
        Node* operator->() const noexcept { return static_cast<Node*>(node_); }
        Iterator& operator++() noexcept {
            node_ = nu::NodeLinks::next(*node_);
            skip();
            return *this;
        }
        Iterator operator++(int) noexcept {
            Iterator former = *this;
            ++*this;
            return former;
        }
        friend bool operator==(Iterator left, Iterator right) noexcept {
            return left.node_ == right.node_;
        }

    private:
        void skip() noexcept {
            while (node_ != nullptr &&
                   !(nu::is<std::remove_const_t<Node>>(*node_) && test_(*node_))) {
                node_ = nu::NodeLinks::next(*node_);
            }
        }

        TNuDOMNode* node_ = nullptr;
        [[no_unique_address]] Test test_;
    };

    TNuDOMRange() noexcept = default;
    /// From `first` on, a node or null.
    explicit TNuDOMRange(
        std::conditional_t<std::is_const_v<Node>, const TNuDOMNode, TNuDOMNode>* first,
        Test test = {}) noexcept
        : first_(const_cast<TNuDOMNode*>(first)), test_(test) {}
    /// The first node that passes the test. The walk follows the tree as it is at each step; a node
    /// that is taken out ends it there.
    [[nodiscard]] Iterator begin() const noexcept { return Iterator(first_, test_); }
    /// Behind the last node.
    [[nodiscard]] Iterator end() const noexcept { return Iterator(); }
    /// Whether no node passes the test now.
    [[nodiscard]] bool empty() const noexcept { return begin() == end(); }

private:
    TNuDOMNode* first_ = nullptr;
    [[no_unique_address]] Test test_;
};

/// The child elements of one name.
template <class Node> using TNuDOMNamedRange = TNuDOMRange<Node, nu::SameName>;

/// \cond internal
template <class Node, class Test>
inline constexpr bool std::ranges::enable_borrowed_range<TNuDOMRange<Node, Test>> = true;
template <class Node, class Test>
inline constexpr bool std::ranges::enable_view<TNuDOMRange<Node, Test>> = true;
/// \endcond
