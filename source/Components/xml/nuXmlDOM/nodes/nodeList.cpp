#include "nuXmlDOM/core/nodeList.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/nodes/nameTest.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/heldNodes.h"

TNuDOMNodeList::TNuDOMNodeList(TNuDOMNode* node, TNuDOMDocument* document, bool ownsItems)
    : TNuDOMObject(document), node_(node), ownsItems_(ownsItems) {
    // Who selects again and again, and looks at no member, would otherwise fill the memory.
    document->parts().lifetime.reclaimLists();
    if (node != nullptr) {
        receive(*node);
    }
    document->parts().snapshots.enter(*this);
    setFlag(nu::selfOwned);
}

TNuDOMNodeList::TNuDOMNodeList(TNuDOMNode& node)
    : TNuDOMObject(&nu::NodeContext::extras(node)), node_(&node), ownsItems_(true) {}

TNuDOMNodeList::~TNuDOMNodeList() {
    if (hasFlag(nu::selfOwned)) {
        OwnerDocument()->parts().snapshots.leave(*this);
        OwnerDocument()->parts().keepRoom(std::move(items_));
    }
}

NuRef<TNuDOMNodeList> TNuDOMNodeList::Create(TNuDOMNode* node, TNuDOMDocument* document,
                                             bool ownsItems) {
    return {new TNuDOMNodeList(node, document, ownsItems)};
}

void TNuDOMNodeList::_GC() noexcept {
    nu::DocumentLifetime& lifetime = OwnerDocument()->parts().lifetime;
    if (ownsItems_) {
        lifetime.ask(); // stays, with its items, until the document goes
    } else {
        lifetime.discard(*this);
    }
}

nu::Face& TNuDOMNodeList::face() {
    if (!face_) {
        face_.reset(nu::makeFace(*this));
    }
    return *face_;
}

std::ptrdiff_t TNuDOMNodeList::Add(TNuDOMNode& node) {
    if (!OwnerDocument()->IsLoading()) {
        if (const std::ptrdiff_t index = IndexOf(node); index >= 0) {
            return index;
        }
    }
    append(node);
    return static_cast<std::ptrdiff_t>(items_.size()) - 1;
}

std::ptrdiff_t TNuDOMNodeList::Insert(std::ptrdiff_t index, TNuDOMNode& node) {
    if (const std::ptrdiff_t known = IndexOf(node); known >= 0) {
        return known;
    }
    host::checkListIndex(index, items_.size() + 1);
    receive(node);
    items_.insert(items_.begin() + index, &node);
    places_.clear();
    return index;
}

std::ptrdiff_t TNuDOMNodeList::Remove(TNuDOMNode& node) {
    const std::ptrdiff_t index = IndexOf(node);
    if (index >= 0) {
        items_.erase(items_.begin() + index);
        places_.clear();
    }
    return index;
}

std::ptrdiff_t TNuDOMNodeList::IndexOf(const TNuDOMNode& node) const {
    OwnerDocument()->parts().lifetime.reclaim();
    const auto found = std::find(items_.begin(), items_.end(), &node);
    return found != items_.end() ? found - items_.begin() : -1;
}

void TNuDOMNodeList::Clear() {
    OwnerDocument()->parts().lifetime.reclaim();
    while (ownsItems_ && !items_.empty()) {
        TNuDOMNode* node = items_.back();
        if (node != nullptr) {
            if (nu::isSubtreeHeld(*node)) {
                throw host::EInvalidPointer(nu::messages::stillHeld);
            }
            node->_delete(); // empties every entry that it has
        }
        items_.pop_back();
    }
    items_.clear();
    places_.clear();
}

std::size_t TNuDOMNodeList::Count() const { return items_.size(); }

TNuDOMNode* TNuDOMNodeList::item(std::ptrdiff_t index) const {
    host::checkListIndex(index, items_.size());
    return read(items_[static_cast<std::size_t>(index)]);
}

TNuDOMNode* TNuDOMNodeList::Node() const noexcept {
    return hasFlag(nu::selfOwned) ? read(node_) : node_;
}

TNuDOMNode* TNuDOMNodeList::read(TNuDOMNode* const& entry) const noexcept {
    OwnerDocument()->parts().lifetime.reclaim();
    if (entry != nullptr && entry->OwnerDocument() != OwnerDocument()) {
        entry->OwnerDocument()->parts().lifetime.reclaim();
    }
    return entry;
}

TNuDOMNode* TNuDOMNodeList::Last() const {
    return GetItem(static_cast<std::ptrdiff_t>(Count()) - 1);
}

void TNuDOMNodeList::reorder(std::vector<TNuDOMNode*> order) {
    items_ = std::move(order);
    places_.clear();
}

void TNuDOMNodeList::append(TNuDOMNode& node) {
    receive(node);
    items_.push_back(&node);
    places_.clear();
}

void TNuDOMNodeList::receive(TNuDOMNode& node) {
    TNuDOMDocument& document = *node.OwnerDocument();
    if (&document != OwnerDocument()) {
        document.parts().snapshots.invite(*this);
    }
    if (marksMembers_) {
        nu::NodeFlags::set(node, nu::isInResultList);
    }
}

void TNuDOMNodeList::markMembers() noexcept {
    marksMembers_ = true;
    if (node_ != nullptr) {
        nu::NodeFlags::set(*node_, nu::isInResultList);
    }
    for (TNuDOMNode* node : items_) {
        if (node != nullptr) {
            nu::NodeFlags::set(*node, nu::isInResultList);
        }
    }
}

void TNuDOMNodeList::forgetNode(const TNuDOMNode& node) noexcept {
    if (node_ == &node) {
        node_ = nullptr;
    }
    if (!findPlaces()) {
        std::replace(items_.begin(), items_.end(), const_cast<TNuDOMNode*>(&node),
                     static_cast<TNuDOMNode*>(nullptr));
        return;
    }
    const std::pair<const TNuDOMNode*, std::size_t> lowest(&node, 0);
    for (auto place = std::lower_bound(places_.begin(), places_.end(), lowest);
         place != places_.end() && place->first == &node; ++place) {
        if (place->second < items_.size() && items_[place->second] == &node) {
            items_[place->second] = nullptr;
        }
    }
}

void TNuDOMNodeList::forgetNodesOf(const TNuDOMDocument& document) noexcept {
    if (!ownsItems_ && RefCount() == 0) {
        return; // about to go itself, and its other nodes may be another thread's
    }
    if (node_ != nullptr && node_->OwnerDocument() == &document) {
        node_ = nullptr;
    }
    for (TNuDOMNode*& node : items_) {
        if (node != nullptr && node->OwnerDocument() == &document) {
            node = nullptr;
        }
    }
}

bool TNuDOMNodeList::refersTo(const TNuDOMNode& node) noexcept {
    if (node_ == &node) {
        return true;
    }
    if (!findPlaces()) {
        return std::find(items_.begin(), items_.end(), &node) != items_.end();
    }
    const std::pair<const TNuDOMNode*, std::size_t> lowest(&node, 0);
    const auto place = std::lower_bound(places_.begin(), places_.end(), lowest);
    return place != places_.end() && place->first == &node;
}

bool TNuDOMNodeList::findPlaces() noexcept {
    // Many nodes of a list may go one after the other: after the first their places are known.
    if (places_.empty()) {
        try {
            places_.reserve(items_.size());
        } catch (...) {
            return false;
        }
        for (std::size_t index = 0; index < items_.size(); ++index) {
            places_.emplace_back(items_[index], index);
        }
        std::sort(places_.begin(), places_.end());
    }
    return true;
}

// Lists of one kind of nodes

NuRef<TNuDOMElementList> TNuDOMElementList::Create(TNuDOMNode* node, TNuDOMDocument* document,
                                                   bool ownsItems) {
    return {new TNuDOMElementList(node, document, ownsItems)};
}

TNuDOMElement* TNuDOMElementList::GetItem(std::ptrdiff_t index) const {
    TNuDOMNode* node = item(index);
    return node != nullptr ? &nu::cast<TNuDOMElement>(*node) : nullptr;
}

NuRef<TNuDOMAttrList> TNuDOMAttrList::Create(TNuDOMNode* node, TNuDOMDocument* document,
                                             bool ownsItems) {
    return {new TNuDOMAttrList(node, document, ownsItems)};
}

TNuDOMAttribute* TNuDOMAttrList::GetItem(std::ptrdiff_t index) const {
    TNuDOMNode* node = item(index);
    return node != nullptr ? &nu::cast<TNuDOMAttribute>(*node) : nullptr;
}

template <class Test> TNuDOMAttribute* TNuDOMAttrList::findIf(Test&& test) const {
    const auto count = static_cast<std::ptrdiff_t>(Count());
    for (std::ptrdiff_t index = 0; index < count; ++index) {
        TNuDOMAttribute* attribute = GetItem(index);
        if (attribute != nullptr && test(*attribute)) {
            return attribute;
        }
    }
    return nullptr;
}

TNuDOMAttribute* TNuDOMAttrList::getNamedItem(std::u16string_view name) const {
    if (!hasFlag(nu::selfOwned)) {
        return static_cast<TNuDOMElement*>(Node())->getAttributeNode(name);
    }
    return findIf(nu::NameTest(name, {}, *OwnerDocument()));
}

TNuDOMAttribute* TNuDOMAttrList::getNamedItemNS(std::u16string_view namespaceURI,
                                                std::u16string_view localName) const {
    if (!hasFlag(nu::selfOwned)) {
        return static_cast<TNuDOMElement*>(Node())->getAttributeNodeNS(namespaceURI, localName);
    }
    return findIf([&](const TNuDOMAttribute& attribute) {
        return attribute.get_localName() == localName &&
               attribute.get_namespaceURI() == namespaceURI;
    });
}

namespace {

NuRef<TNuDOMAttribute> takeOut(TNuDOMAttribute* attribute) {
    NuRef<TNuDOMAttribute> taken(attribute);
    if (attribute != nullptr) {
        attribute->_linkToParent(nullptr, rdpLast, nullptr);
    }
    return taken;
}

} // namespace

NuRef<TNuDOMAttribute> TNuDOMAttrList::removeNamedItem(std::u16string_view name) {
    return takeOut(getNamedItem(name));
}

NuRef<TNuDOMAttribute> TNuDOMAttrList::removeNamedItem(const TNuUtf8Text& name) {
    return removeNamedItem(name.view());
}

NuRef<TNuDOMAttribute> TNuDOMAttrList::removeNamedItemNS(std::u16string_view namespaceURI,
                                                         std::u16string_view localName) {
    return takeOut(getNamedItemNS(namespaceURI, localName));
}

NuRef<TNuDOMAttribute> TNuDOMAttrList::removeNamedItemNS(const TNuUtf8Text& namespaceURI,
                                                         const TNuUtf8Text& localName) {
    return removeNamedItemNS(namespaceURI.view(), localName.view());
}

void TNuDOMAttrList::setNamedItem(TNuDOMNode& /*node*/) {
    throw ENuDomNotSupported(nu::messages::notImplemented);
}

void TNuDOMAttrList::setNamedItemNS(TNuDOMNode& /*node*/) {
    throw ENuDomNotSupported(nu::messages::notImplemented);
}
