#pragma once

#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>

#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/core/nodeList.h"

/// \file
/// What a path selects, as a range.

/// The nodes that a path selects, for loops and algorithms:
/// `for (TNuDOMElement& book : library.Select("shelf/book"))`.
///
/// A snapshot in a handle of its own, which keeps the document: it may be copied and returned, and
/// the tree may be changed in a loop. A node that has been freed since is passed over. Iterators
/// are good as long as the selection, or a copy of it, is there.
template <class Node> class TNuDOMSelection {
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
        Iterator(const TNuDOMNodeList& list, std::ptrdiff_t index, std::ptrdiff_t count)
            : list_(&list), index_(index), count_(count) {
            passFreed();
        }
        Node& operator*() const { return static_cast<Node&>(*list_->GetItem(index_)); }
        Node* operator->() const { return &**this; }
        Iterator& operator++() {
            ++index_;
            passFreed();
            return *this;
        }
        Iterator operator++(int) {
            Iterator former = *this;
            ++*this;
            return former;
        }
        friend bool operator==(const Iterator& left, const Iterator& right) noexcept {
            return left.index_ == right.index_;
        }

    private:
        void passFreed() {
            while (index_ < count_ && list_->GetItem(index_) == nullptr) {
                ++index_;
            }
        }

        const TNuDOMNodeList* list_ = nullptr;
        std::ptrdiff_t index_ = 0;
        std::ptrdiff_t count_ = 0;
    };

    explicit TNuDOMSelection(NuRef<TNuDOMNodeList> list) noexcept : list_(std::move(list)) {}

    /// The first node that is still there; those that have been freed are passed over.
    [[nodiscard]] Iterator begin() const { return {*list_, 0, count()}; }
    /// Behind the last node.
    [[nodiscard]] Iterator end() const { return {*list_, count(), count()}; }
    /// Whether none of those that were selected is there.
    [[nodiscard]] bool empty() const { return begin() == end(); }
    /// How many were selected, those that have been freed since among them.
    [[nodiscard]] std::size_t Count() const { return list_->Count(); }
    /// Orders them as TNuDOMNodeList::Sort does; the tree stays as it is.
    void Sort(const TNuText& path) { list_->Sort(path.view()); }

private:
    [[nodiscard]] std::ptrdiff_t count() const { return static_cast<std::ptrdiff_t>(Count()); }

    NuRef<TNuDOMNodeList> list_;
};
