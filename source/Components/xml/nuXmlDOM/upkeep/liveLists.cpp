#include "nuXmlDOM/upkeep/liveLists.h"

#include <algorithm>

#include "common/expects.h"
#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/element.h"
#include "nuXmlDOM/core/elementLinks.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/elementOrder.h"
#include "nuXmlDOM/upkeep/heldNodes.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

namespace nu {

void MemberIndex::rebuild(std::vector<TNuDOMNode*> members) noexcept {
    entries_ = std::move(members);
    positions_.clear();
    gapBegin_ = gapSize_ = recent_ = passed_ = 0;
    isValid_ = true;
}

void MemberIndex::inserted(TNuDOMNode& node, const TNuDOMNode* next) {
    if (!isValid_) {
        return;
    }
    if (next == nullptr) {
        if (!positions_.empty()) {
            positions_.emplace(&node, size());
        }
        entries_.push_back(&node);
        return;
    }
    const std::ptrdiff_t found = searchNear(*next);
    if (found < 0) {
        drop();
        return;
    }
    openGap(static_cast<std::size_t>(found));
    entries_[gapBegin_++] = &node;
    --gapSize_;
}

void MemberIndex::removed(const TNuDOMNode& node) noexcept {
    if (!isValid_) {
        return;
    }
    if (size() != 0 && entry(size() - 1) == &node) {
        positions_.erase(&node);
        removeLast();
        return;
    }
    const std::ptrdiff_t found = searchNear(node);
    if (found < 0) {
        drop();
        return;
    }
    moveGap(static_cast<std::size_t>(found));
    ++gapSize_;
}

std::ptrdiff_t MemberIndex::positionOf(const TNuDOMNode& node) {
    // A place in the table takes as long to make as many entries to pass.
    constexpr std::size_t passedForOne = 32;
    if (positions_.empty() && passed_ / passedForOne <= size()) {
        return searchNear(node);
    }
    gatherPositions();
    const auto found = positions_.find(&node);
    return found != positions_.end() ? static_cast<std::ptrdiff_t>(found->second) : -1;
}

/// Looks at both ends, then on both sides of the recent place, nearest first, and makes what it
/// finds there the recent one.
std::ptrdiff_t MemberIndex::searchNear(const TNuDOMNode& node) noexcept {
    const std::size_t count = size();
    if (count != 0 && entry(0) == &node) {
        return 0;
    }
    if (count != 0 && entry(count - 1) == &node) {
        return static_cast<std::ptrdiff_t>(count) - 1;
    }
    std::size_t above = std::min(recent_, count);
    std::size_t below = above; // the entries from here up to `above` are others
    while (above < count || below > 0) {
        if (above < count) {
            if (entry(above) == &node) {
                recent_ = above;
                return static_cast<std::ptrdiff_t>(above);
            }
            ++above;
        }
        if (below > 0 && entry(--below) == &node) {
            recent_ = below;
            return static_cast<std::ptrdiff_t>(below);
        }
        passed_ += 2;
    }
    return -1;
}

void MemberIndex::gatherPositions() {
    if (positions_.empty()) {
        for (std::size_t index = 0; index < size(); ++index) {
            positions_.emplace(entry(index), index);
        }
    }
}

/// Makes room for one more entry at `index`.
void MemberIndex::openGap(std::size_t index) {
    if (gapSize_ != 0) {
        moveGap(index);
        return;
    }
    const std::size_t added = entries_.size() / 8 + 16;
    entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(index), added, nullptr);
    gapBegin_ = index;
    gapSize_ = added;
    positions_.clear();
    passed_ = 0;
}

void MemberIndex::moveGap(std::size_t index) noexcept {
    TNuDOMNode** const entries = entries_.data();
    if (index < gapBegin_) {
        std::move_backward(entries + index, entries + gapBegin_, entries + gapBegin_ + gapSize_);
    } else {
        std::move(entries + gapBegin_ + gapSize_, entries + index + gapSize_, entries + gapBegin_);
    }
    gapBegin_ = index;
    positions_.clear(); // what moves it changes what stands behind
    passed_ = 0;
}

void MemberIndex::removeLast() noexcept {
    if (gapBegin_ + gapSize_ == entries_.size()) {
        entries_.resize(gapBegin_);
        gapSize_ = 0;
    }
    entries_.pop_back();
    gapBegin_ = std::min(gapBegin_, entries_.size());
}

template <class Base, LiveMembers shown>
bool LiveList<Base, shown>::isMember(const TNuDOMNode& node) const noexcept {
    const host::DOMNodeType type = node.get_nodeType();
    const bool isShown = shown == LiveMembers::childElements ? type == host::ELEMENT_NODE
                         : shown == LiveMembers::attributes  ? type == host::ATTRIBUTE_NODE
                                                             : type != host::ATTRIBUTE_NODE;
    return isShown && NodeLinks::parent(node) == this->Node() && NodeLinks::isLinked(node);
}

template <class Base, LiveMembers shown> MemberIndex& LiveList<Base, shown>::gathered() const {
    if (index_.isValid()) {
        return index_;
    }
    std::vector<TNuDOMNode*> members;
    TNuDOMNode& owner = *this->Node();
    const auto* order = shown == LiveMembers::childElements && is<TNuDOMElement>(owner)
                            ? elementOrder(static_cast<TNuDOMElement&>(owner))
                            : nullptr;
    if (order != nullptr) {
        members.assign(order->begin(), order->end());
    } else {
        TNuDOMNode* const first =
            shown == LiveMembers::attributes ? firstAttributeOf(owner) : childrenOf(owner)->first();
        for (TNuDOMNode* node = first; node != nullptr; node = NodeLinks::next(*node)) {
            if (isMember(*node)) {
                members.push_back(node);
            }
        }
        if (auto* document = as<TNuDOMDocument>(&owner)) {
            if (TNuDOMElement* element = document->GetRootNode()) {
                members.push_back(element);
            }
        }
    }
    index_.rebuild(std::move(members));
    return index_;
}

template <class Base, LiveMembers shown>
TNuDOMNode* LiveList<Base, shown>::item(std::ptrdiff_t index) const {
    MemberIndex& nodes = gathered();
    host::checkListIndex(index, nodes.size());
    return nodes.at(static_cast<std::size_t>(index));
}

template <class Base, LiveMembers shown>
std::ptrdiff_t LiveList<Base, shown>::IndexOf(const TNuDOMNode& node) const {
    return isMember(node) ? gathered().positionOf(node) : -1;
}

template <class Base, LiveMembers shown>
std::ptrdiff_t LiveList<Base, shown>::Add(TNuDOMNode& node) {
    if (!isMember(node)) {
        node._linkToParent(this->Node(), rdpLast, nullptr);
    }
    return IndexOf(node);
}

template <class Base, LiveMembers shown>
std::ptrdiff_t LiveList<Base, shown>::Insert(std::ptrdiff_t index, TNuDOMNode& node) {
    if (!isMember(node)) {
        host::checkListIndex(index, Count() + 1);
        const bool isLast = static_cast<std::size_t>(index) == Count();
        node._linkToParent(this->Node(), isLast ? rdpLast : rdpBefore,
                           isLast ? nullptr : item(index));
    }
    return IndexOf(node);
}

template <class Base, LiveMembers shown>
std::ptrdiff_t LiveList<Base, shown>::Remove(TNuDOMNode& node) {
    const std::ptrdiff_t index = IndexOf(node);
    if (index >= 0) {
        node._linkToParent(nullptr, rdpLast, nullptr);
    }
    return index;
}

template <class Base, LiveMembers shown> void LiveList<Base, shown>::Clear() {
    const DocumentLifetime::Work work(this->OwnerDocument()->parts().lifetime);
    while (const std::size_t count = gathered().size()) {
        TNuDOMNode* node = gathered().at(count - 1);
        if (isSubtreeHeld(*node)) {
            throw host::EInvalidPointer(messages::stillHeld);
        }
        node->_delete();
    }
}

namespace {

/// The order of the child elements, and of the tree when `isTree`, becomes this one.
void reorderChildren(TNuDOMElement& element, bool isTree, const std::vector<TNuDOMNode*>& order) {
    std::vector<TNuDOMElement*>& kept = keepElementOrder(element);
    if (!isTree) {
        expects(order.size() == kept.size());
        std::transform(order.begin(), order.end(), kept.begin(), [](TNuDOMNode* node) {
            expects(is<TNuDOMElement>(*node));
            return static_cast<TNuDOMElement*>(node);
        });
        return;
    }
    NodeChain& chain = *childrenOf(element);
    for (TNuDOMNode* node : order) {
        expects(is<TNuDOMElement>(*node));
        chain.remove(*node);
        chain.append(*node);
    }
}

} // namespace

template <class Base, LiveMembers shown>
void LiveList<Base, shown>::reorder(std::vector<TNuDOMNode*> order) {
    // The paths to the keys begin at elements, so the members are some, and their parent is one,
    // as a document has but one of them.
    expects(is<TNuDOMElement>(*this->Node()));
    reorderChildren(static_cast<TNuDOMElement&>(*this->Node()), shown == LiveMembers::childNodes,
                    order);
    index_.drop();
}

template <class Base, LiveMembers shown>
void LiveList<Base, shown>::added(TNuDOMNode& node, const TNuDOMNode* next) noexcept {
    try {
        index_.inserted(node, next);
    } catch (...) {
        index_.drop();
    }
}

template class LiveList<TNuDOMNodeList, LiveMembers::childNodes>;
template class LiveList<TNuDOMElementList, LiveMembers::childElements>;
template class LiveList<TNuDOMAttrList, LiveMembers::attributes>;

namespace {

template <class List> List& madeOnce(std::unique_ptr<List>& list, TNuDOMNode& node) {
    if (!list) {
        list = std::make_unique<List>(node);
    }
    return *list;
}

} // namespace

ChildNodeList& NodeLists::childNodes() { return madeOnce(childNodes_, node_); }

ChildElementList& NodeLists::childElements() { return madeOnce(childElements_, node_); }

AttributeMap& NodeLists::attributes() { return madeOnce(attributes_, node_); }

void NodeLists::childChanged(TNuDOMNode& child, bool isAdded, bool isAtEnd) noexcept {
    const host::DOMNodeType type = child.get_nodeType();
    if (type == host::ATTRIBUTE_NODE) {
        attributeIndex.changed(static_cast<TNuDOMAttribute&>(child), isAdded, isAtEnd);
        if (attributes_ && isAdded) {
            attributes_->added(child, NodeLinks::next(child));
        } else if (attributes_) {
            attributes_->removed(child);
        }
        return;
    }
    if (isAdded) {
        childAdded(child);
        return;
    }
    if (childNodes_) {
        childNodes_->removed(child);
    }
    if (childElements_ && type == host::ELEMENT_NODE) {
        childElements_->removed(child);
    }
}

void NodeLists::childAdded(TNuDOMNode& child) noexcept {
    // The document element stands behind everything else in the document, whatever the order there
    // was.
    auto* document = as<TNuDOMDocument>(&node_);
    TNuDOMNode* const documentElement = document != nullptr ? document->GetRootNode() : nullptr;
    const bool isElement = is<TNuDOMElement>(child);
    TNuDOMNode* next = &child != documentElement ? NodeLinks::next(child) : nullptr;
    if (childNodes_) {
        const bool isBeforeElement = next == nullptr && &child != documentElement;
        childNodes_->added(child, isBeforeElement ? documentElement : next);
    }
    if (!childElements_ || !isElement) {
        return;
    }
    if (!elementOrder.empty() && elementOrder.back() != &child) {
        childElements_->drop();
        return;
    }
    while (elementOrder.empty() && next != nullptr && !is<TNuDOMElement>(*next)) {
        next = NodeLinks::next(*next);
    }
    childElements_->added(child, elementOrder.empty() ? next : nullptr);
}

std::int64_t NodeLists::heldCount() const noexcept {
    const auto held = [](const auto& list) { return list && list->RefCount() != 0 ? 1 : 0; };
    return held(childNodes_) + held(childElements_) + held(attributes_);
}

} // namespace nu
