#pragma once

#include <cstddef>
#include <iterator>

#include "nuXmlDOM/core/attribute.h"
#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/core/nodeAccess.h"

/// \file
/// Nodes for range-based for loops.

/// Nodes in the order of the document, for range-based for loops:
/// `for (TNuDOMElement& book : library.ChildElements())`.
///
/// Walks the tree itself without a list: a loop may change everything but the place of the node
/// that it stands at.
template <class Node> class TNuDOMRange {
public:
    /// Steps from node to node.
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Node;
        using difference_type = std::ptrdiff_t;
        using pointer = Node*;
        using reference = Node&;

        Iterator() noexcept = default;
        explicit Iterator(TNuDOMNode* node) noexcept : node_(skip(node)) {}
        Node& operator*() const noexcept { return static_cast<Node&>(*node_); }
        Node* operator->() const noexcept { return static_cast<Node*>(node_); }
        Iterator& operator++() noexcept {
            node_ = skip(nu::NodeChain::next(*node_));
            return *this;
        }
        Iterator operator++(int) noexcept {
            Iterator former = *this;
            ++*this;
            return former;
        }
        friend bool operator==(Iterator, Iterator) noexcept = default;

    private:
        static TNuDOMNode* skip(TNuDOMNode* node) noexcept {
            while (node != nullptr && !nu::NodeAccess::is<Node>(*node)) {
                node = nu::NodeChain::next(*node);
            }
            return node;
        }

        TNuDOMNode* node_ = nullptr;
    };

    explicit TNuDOMRange(TNuDOMNode* first) noexcept : first_(first) {}
    [[nodiscard]] Iterator begin() const noexcept { return Iterator(first_); }
    [[nodiscard]] Iterator end() const noexcept { return Iterator(); }
    [[nodiscard]] bool empty() const noexcept { return begin() == end(); }

private:
    TNuDOMNode* first_;
};
