#pragma once

#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

#include "nuXmlDOM/core/attribute.h"
#include "nuXmlDOM/core/characterData.h"
#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/storage/nameTable.h"

class TNuDOMDocument;
class TNuDOMElement;

namespace nu {

/// Which nodes of a node's a list shows that follows the changes of the tree.
enum class LiveMembers : std::uint8_t { childNodes, childElements, attributes };

/// What the library's own algorithms use of nodes beside their public operations: names as
/// pointers, texts as they are stored, and the links between nodes.
class NodeAccess {
public:
    [[nodiscard]] static const NodeName& name(const TNuDOMNode& node) noexcept {
        return node.hasFlag(hasExtras) ? *static_cast<const NodeExtras*>(node.context_)->name
                                       : *static_cast<const NodeName*>(node.context_);
    }
    static void setName(TNuDOMNode& node, const NodeName* name) noexcept;
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
    static void setParent(TNuDOMNode& node, TNuDOMNode* parent) noexcept { node.parent_ = parent; }
    /// Puts a node that has no place behind the children of `element`, which is known to be able
    /// to hold it.
    template <class Node> static void appendLoaded(TNuDOMElement& element, Node& node) noexcept;
    /// The same for an attribute and the last one of the element; null when there is none.
    static void appendLoaded(TNuDOMElement& element, TNuDOMAttribute* last,
                             TNuDOMAttribute& attribute) noexcept;

    /// The chain of children; null for nodes that cannot have any. Of a document only instructions
    /// and comments stand there.
    [[nodiscard]] static NodeChain* children(TNuDOMNode& node) noexcept;
    [[nodiscard]] static const NodeChain* children(const TNuDOMNode& node) noexcept;
    /// The first attribute; null without one.
    [[nodiscard]] static TNuDOMNode* firstAttribute(const TNuDOMNode& node) noexcept;
    /// Whether a child of the element may have a name; most elements hold nothing but text.
    [[nodiscard]] static bool mayHaveNamedChildren(const TNuDOMNode& element) noexcept {
        return element.hasFlag(hadNamedChild);
    }
    /// The child elements in the order of their list where that is not the order of the tree; else
    /// null.
    [[nodiscard]] static const std::vector<TNuDOMElement*>*
    elementOrder(const TNuDOMElement& element) noexcept;
    /// The text of a leaf as it is stored; null for elements and documents.
    [[nodiscard]] static StoredText* text(TNuDOMNode& node) noexcept;
    [[nodiscard]] static const StoredText* text(const TNuDOMNode& node) noexcept;
    /// The same where the class is known.
    [[nodiscard]] static const StoredText& stored(const TNuDOMAttribute& node) noexcept {
        return node.text_;
    }
    [[nodiscard]] static const StoredText& stored(const TNuDOMCharacterData& node) noexcept {
        return node.text_;
    }
    [[nodiscard]] static const StoredText&
    stored(const TNuDOMProcessingInstruction& node) noexcept {
        return node.text_;
    }
    [[nodiscard]] static StoredText& stored(TNuDOMAttribute& attribute) noexcept {
        return attribute.text_;
    }
    [[nodiscard]] static StoredText& stored(TNuDOMCharacterData& data) noexcept {
        return data.text_;
    }
    /// The text as it is meant: unescaped in texts and attributes.
    static void appendValue(const TNuDOMNode& node, NuXmlString& target);

    /// Whether a node is of the class, or one derived from it.
    template <class Node> [[nodiscard]] static bool is(const TNuDOMNode& node) noexcept;
    /// The node as one of the class, or null when it is of another.
    template <class Node> [[nodiscard]] static Node* as(TNuDOMNode* node) noexcept {
        return node != nullptr && is<Node>(*node) ? static_cast<Node*>(node) : nullptr;
    }
    /// The same, but throws host::EInvalidCast when it is of another class.
    template <class Node> [[nodiscard]] static Node& cast(TNuDOMNode& node);

    /// Makes a node of the class in the memory of the document.
    template <class Node>
    [[nodiscard]] static Node& make(TNuDOMDocument& document, const NodeName* name);
    /// Puts the text of a node in place of that of another one of its class.
    static void copyText(const TNuDOMNode& source, TNuDOMNode& target);
    /// Frees a node that has no children and no place, with its attributes, lists and faces.
    static void destroy(TNuDOMNode& node) noexcept;
    /// Frees a node outside of the tree and everything below it, whatever is held.
    static void destroySubtree(TNuDOMNode& root) noexcept;
    /// How many of the node and its lists are held.
    [[nodiscard]] static std::int64_t heldCount(const TNuDOMNode& node) noexcept;
    [[nodiscard]] static bool isHeld(const TNuDOMNode& node) noexcept;
    /// The first node of `root`, its attributes, and everything below it in document order for
    /// which `test` holds; null without one.
    template <class Test>
    [[nodiscard]] static const TNuDOMNode* firstInSubtree(const TNuDOMNode& root, Test&& test);
    /// The same from `start` on, which is `root`, or below it or an attribute.
    template <class Test>
    [[nodiscard]] static const TNuDOMNode* firstFrom(const TNuDOMNode& start,
                                                     const TNuDOMNode& root, Test&& test);
    /// The first held node of `root` and below it; null without one.
    [[nodiscard]] static const TNuDOMNode* firstHeld(const TNuDOMNode& root) noexcept;
    /// The first from `start` on, else the first of all.
    [[nodiscard]] static const TNuDOMNode* firstHeld(const TNuDOMNode& root,
                                                     const TNuDOMNode& start) noexcept;
    /// Whether anything of `root` and below it is held.
    [[nodiscard]] static bool isSubtreeHeld(const TNuDOMNode& root) noexcept;
    [[nodiscard]] static NodeExtras* extrasIfAny(const TNuDOMNode& node) noexcept;
    /// The lists of a node, and what stands beside them.
    [[nodiscard]] static NodeLists& lists(TNuDOMNode& node) { return node.lists(); }
    /// The context that a list of the node's own shares with it.
    [[nodiscard]] static const ObjectContext* context(TNuDOMNode& node) { return &node.extras(); }
    /// Puts nodes into an empty list without looking whether one is there twice.
    static void fill(TNuDOMNodeList& list, std::vector<TNuDOMNode*> nodes);
    /// Puts the members of one of the node's lists into another order.
    static void reorder(TNuDOMNode& owner, LiveMembers shown,
                        const std::vector<TNuDOMNode*>& order);
};

[[noreturn]] void raiseInvalidCast(std::u16string_view className);

template <class Node> bool NodeAccess::is(const TNuDOMNode& node) noexcept {
    const host::DOMNodeType type = node.get_nodeType();
    if constexpr (std::is_same_v<Node, TNuDOMNode>) {
        return true;
    } else if constexpr (std::is_same_v<Node, TNuDOMCharacterData>) {
        return type == host::TEXT_NODE || type == host::CDATA_SECTION_NODE ||
               type == host::COMMENT_NODE;
    } else if constexpr (std::is_same_v<Node, TNuDOMText>) {
        return type == host::TEXT_NODE || type == host::CDATA_SECTION_NODE;
    } else {
        return type == Node::Type;
    }
}

template <class Node> Node& NodeAccess::cast(TNuDOMNode& node) {
    if (!is<Node>(node)) {
        if constexpr (std::is_same_v<Node, TNuDOMCharacterData>) {
            raiseInvalidCast(u"TNuDOMCharacterData");
        } else {
            raiseInvalidCast(Node::Class.name);
        }
    }
    return static_cast<Node&>(node);
}

template <class Test>
const TNuDOMNode* NodeAccess::firstInSubtree(const TNuDOMNode& root, Test&& test) {
    return firstFrom(root, root, test);
}

template <class Test>
const TNuDOMNode* NodeAccess::firstFrom(const TNuDOMNode& start, const TNuDOMNode& root,
                                        Test&& test) {
    const TNuDOMNode* node = &start;
    const TNuDOMNode* attribute = nullptr;
    if (start.nodeType_ == host::ATTRIBUTE_NODE && isLinked(start)) {
        attribute = &start;
        node = start.parent_;
    }
    for (;; attribute = nullptr) {
        // 1. The node and its attributes.
        if (attribute == nullptr) {
            if (test(*node)) {
                return node;
            }
            attribute = firstAttribute(*node);
        }
        for (; attribute != nullptr; attribute = attribute->next_) {
            if (test(*attribute)) {
                return attribute;
            }
        }
        // 2. Down, else on, else up until it goes on.
        const NodeChain* below = children(*node);
        if (below != nullptr && !below->empty()) {
            node = below->first();
            continue;
        }
        while (node != &root && node->next_ == nullptr && isLinked(*node)) {
            node = node->parent_;
        }
        if (node == &root || node->next_ == nullptr) {
            return nullptr;
        }
        node = node->next_;
    }
}

inline TNuDOMNode*& NodeChain::previousOf(TNuDOMNode& node) noexcept {
    return static_cast<TNuDOMChildNode&>(node).previous_;
}

inline TNuDOMNode* NodeChain::last() const noexcept {
    return first_ != nullptr ? previousOf(*first_) : nullptr;
}

inline TNuDOMNode* NodeChain::previous(const TNuDOMNode& node) const noexcept {
    return &node != first_ ? previousOf(const_cast<TNuDOMNode&>(node)) : nullptr;
}

inline TNuDOMNode* NodeChain::next(const TNuDOMNode& node) noexcept { return node.next_; }

inline void NodeChain::append(TNuDOMNode& node) noexcept {
    node.next_ = nullptr;
    if (first_ == nullptr) {
        previousOf(node) = &node;
        first_ = &node;
        return;
    }
    TNuDOMNode* const last = previousOf(*first_);
    previousOf(node) = last;
    last->next_ = &node;
    previousOf(*first_) = &node;
}

inline void NodeChain::insert(TNuDOMNode& node, TNuDOMNode* place) noexcept {
    if (place == nullptr) {
        append(node);
        return;
    }
    node.next_ = place;
    previousOf(node) = previousOf(*place);
    if (place == first_) {
        first_ = &node;
    } else {
        previousOf(*place)->next_ = &node;
    }
    previousOf(*place) = &node;
}

inline void NodeChain::remove(TNuDOMNode& node) noexcept {
    TNuDOMNode* const previous = previousOf(node);
    if (&node == first_) {
        first_ = node.next_;
    } else {
        previous->next_ = node.next_;
    }
    if (node.next_ != nullptr) {
        previousOf(*node.next_) = previous;
    } else if (first_ != nullptr) {
        previousOf(*first_) = previous;
    }
    previousOf(node) = nullptr;
    node.next_ = nullptr;
}

inline void AttributeChain::insertBehind(TNuDOMNode* before, TNuDOMNode& attribute) noexcept {
    TNuDOMNode*& link = before != nullptr ? before->next_ : first_;
    attribute.next_ = link;
    link = &attribute;
}

inline void AttributeChain::removeBehind(TNuDOMNode* before) noexcept {
    TNuDOMNode*& link = before != nullptr ? before->next_ : first_;
    TNuDOMNode& attribute = *link;
    link = attribute.next_;
    attribute.next_ = nullptr;
}

} // namespace nu
