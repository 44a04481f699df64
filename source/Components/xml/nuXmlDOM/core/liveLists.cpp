#include "nuXmlDOM/core/liveLists.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/element.h"

namespace nu {

void MemberIndex::appended(TNuDOMNode& node) {
    if (!isValid_) {
        return;
    }
    if (!positions_.empty()) {
        positions_.emplace(&node, members_.size());
    }
    members_.push_back(&node);
}

void MemberIndex::removed(const TNuDOMNode& node) noexcept {
    if (isValid_ && !members_.empty() && members_.back() == &node) {
        members_.pop_back();
        positions_.erase(&node);
    } else {
        drop();
    }
}

std::ptrdiff_t MemberIndex::positionOf(const TNuDOMNode& node) {
    if (positions_.empty()) {
        for (std::size_t index = 0; index < members_.size(); ++index) {
            positions_.emplace(members_[index], index);
        }
    }
    const auto found = positions_.find(&node);
    return found != positions_.end() ? static_cast<std::ptrdiff_t>(found->second) : -1;
}

template <class Base, LiveMembers shown>
bool LiveList<Base, shown>::isMember(const TNuDOMNode& node) const noexcept {
    const host::DOMNodeType type = node.get_nodeType();
    const bool isShown = shown == LiveMembers::childElements ? type == host::ELEMENT_NODE
                         : shown == LiveMembers::attributes  ? type == host::ATTRIBUTE_NODE
                                                             : type != host::ATTRIBUTE_NODE;
    return isShown && NodeAccess::parent(node) == this->Node() && NodeAccess::isLinked(node);
}

template <class Base, LiveMembers shown>
const std::vector<TNuDOMNode*>& LiveList<Base, shown>::members() const {
    if (index_.isValid()) {
        return index_.members();
    }
    std::vector<TNuDOMNode*> members;
    TNuDOMNode& owner = *this->Node();
    const auto* order = shown == LiveMembers::childElements && NodeAccess::is<TNuDOMElement>(owner)
                            ? NodeAccess::elementOrder(static_cast<TNuDOMElement&>(owner))
                            : nullptr;
    if (order != nullptr) {
        members.assign(order->begin(), order->end());
    } else {
        TNuDOMNode* const first = shown == LiveMembers::attributes
                                      ? NodeAccess::firstAttribute(owner)
                                      : NodeAccess::children(owner)->first();
        for (TNuDOMNode* node = first; node != nullptr; node = NodeChain::next(*node)) {
            if (isMember(*node)) {
                members.push_back(node);
            }
        }
        if (auto* document = NodeAccess::as<TNuDOMDocument>(&owner)) {
            if (TNuDOMElement* element = document->GetRootNode()) {
                members.push_back(element);
            }
        }
    }
    index_.rebuild(std::move(members));
    return index_.members();
}

template <class Base, LiveMembers shown>
TNuDOMNode* LiveList<Base, shown>::item(std::ptrdiff_t index) const {
    const std::vector<TNuDOMNode*>& nodes = members();
    host::checkListIndex(index, nodes.size());
    return nodes[static_cast<std::size_t>(index)];
}

template <class Base, LiveMembers shown>
std::ptrdiff_t LiveList<Base, shown>::IndexOf(const TNuDOMNode& node) const {
    if (!isMember(node)) {
        return -1;
    }
    static_cast<void>(members());
    return index_.positionOf(node);
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
    const DocumentLifetime::Work work(this->OwnerDocument()->lifetime());
    while (!members().empty()) {
        TNuDOMNode* node = members().back();
        if (NodeAccess::isSubtreeHeld(*node)) {
            throw host::EInvalidPointer(cStillHeld);
        }
        node->_delete();
    }
}

template <class Base, LiveMembers shown>
void LiveList<Base, shown>::reorder(std::vector<TNuDOMNode*> order) {
    NodeAccess::reorder(*this->Node(), shown, order);
    index_.drop();
}

template <class Base, LiveMembers shown>
void LiveList<Base, shown>::changed(TNuDOMNode& node, bool isAdded, bool isAtEnd) noexcept {
    if (!isAdded) {
        index_.removed(node);
    } else if (isAtEnd) {
        try {
            index_.appended(node);
        } catch (...) {
            index_.drop();
        }
    } else {
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
        if (attributes_) {
            attributes_->changed(child, isAdded, isAtEnd);
        }
        return;
    }
    if (childNodes_) {
        childNodes_->changed(child, isAdded, isAtEnd);
    }
    if (childElements_ && type == host::ELEMENT_NODE) {
        const bool isLast = elementOrder.empty() ? isAtEnd : elementOrder.back() == &child;
        childElements_->changed(child, isAdded, isLast);
    }
}

std::int64_t NodeLists::heldCount() const noexcept {
    const auto held = [](const auto& list) { return list && list->RefCount() != 0 ? 1 : 0; };
    return held(childNodes_) + held(childElements_) + held(attributes_);
}

} // namespace nu
