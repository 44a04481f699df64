#include "nuXmlDOM/core/element.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/nodeAccess.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/nodes/nameTest.h"
#include "nuXmlDOM/upkeep/liveLists.h"

const TNuDOMNodeClass TNuDOMElement::Class{u"TNuDOMElement", host::ELEMENT_NODE,
                                           nu::createNode<TNuDOMElement>};

// Children coming and going

void TNuDOMElement::_addChild(TNuDOMNode& child, TNuDOMPosition position, TNuDOMNode* reference) {
    // 1. Everything that is refused is refused before anything changes.
    const bool isRelative = position == rdpBefore || position == rdpAfter;
    if (isRelative && reference == nullptr) {
        throw ENuDomException(nu::cReferenceRequired);
    }
    const bool isAttribute = child.get_nodeType() == host::ATTRIBUTE_NODE;
    const bool isKnown = reference != nullptr && reference != &child &&
                         reference->get_parentNode() == this &&
                         nu::NodeAccess::isLinked(*reference) &&
                         (reference->get_nodeType() == host::ATTRIBUTE_NODE) == isAttribute;
    auto* childElement = nu::NodeAccess::as<TNuDOMElement>(&child);
    const bool isBesideElement = isKnown && nu::NodeAccess::is<TNuDOMElement>(*reference);
    if (position == rdpBefore && (!isKnown || (childElement != nullptr && !isBesideElement))) {
        host::raiseListIndex(-1);
    }
    // 2. The place in the list of child elements, where that is not simply that in the tree.
    // Deliberate: an element behind a node that is no element becomes the first in that list.
    // Behind a reference that is not there, a child becomes the first in both.
    if (childElement != nullptr) {
        placeInElementOrder(*childElement, position, isBesideElement ? reference : nullptr,
                            isKnown);
    }
    // 3. The place among the children, or among the attributes.
    TNuDOMNode* const first = isAttribute ? attributes_.first() : children_.first();
    TNuDOMNode* place = nullptr;
    switch (position) {
    case rdpFirst:
        place = first;
        break;
    case rdpLast:
        break;
    case rdpBefore:
        place = reference;
        break;
    case rdpAfter:
        place = isKnown ? nu::NodeChain::next(*reference) : first;
        break;
    }
    if (isAttribute) {
        linkAttribute(child, place);
    } else {
        children_.insert(child, place);
        if (!nu::NodeAccess::is<TNuDOMCharacterData>(child) ||
            nu::NodeAccess::name(child).isNamed()) {
            setFlag(nu::hadNamedChild);
        }
    }
    if (nu::NodeLists* lists = listsIfAny()) {
        lists->childChanged(child, true, place == nullptr);
    }
}

/// Puts an attribute before `place`; at the end when it is null.
void TNuDOMElement::linkAttribute(TNuDOMNode& attribute, TNuDOMNode* place) noexcept {
    TNuDOMNode* const before = nu::attributeBefore(*this, place);
    attributes_.insertBehind(before, attribute);
    if (nu::NodeLists* lists = listsIfAny()) {
        lists->attributeIndex.linked(before, attribute);
    }
}

void TNuDOMElement::unlinkAttribute(TNuDOMNode& attribute) noexcept {
    TNuDOMNode* const before = nu::attributeBefore(*this, &attribute);
    TNuDOMNode* const next = nu::NodeChain::next(attribute);
    attributes_.removeBehind(before);
    if (nu::NodeLists* lists = listsIfAny()) {
        lists->attributeIndex.unlinked(before, attribute, next);
    }
}

void TNuDOMElement::keepElementOrder() {
    if (hasFlag(nu::hasElementOrder)) {
        return;
    }
    std::vector<TNuDOMElement*> order;
    for (TNuDOMElement& element : ChildElements()) {
        order.push_back(&element);
    }
    lists().elementOrder.swap(order);
    setFlag(nu::hasElementOrder);
}

void TNuDOMElement::placeInElementOrder(TNuDOMElement& child, TNuDOMPosition position,
                                        TNuDOMNode* besideElement, bool isReferenceKnown) {
    const bool becomesFirst = position == rdpAfter && besideElement == nullptr;
    if (!hasFlag(nu::hasElementOrder)) {
        // The order of the tree gives the same unless an element stands before the reference.
        if (!becomesFirst || !isReferenceKnown || FirstChildElement() == nullptr) {
            return;
        }
        keepElementOrder();
    }
    std::vector<TNuDOMElement*>& order = lists().elementOrder;
    auto place = order.end();
    if (becomesFirst || position == rdpFirst) {
        place = order.begin();
    } else if (besideElement != nullptr && position != rdpLast) {
        place =
            std::find(order.begin(), order.end(), besideElement) + (position == rdpAfter ? 1 : 0);
    }
    order.insert(place, &child);
}

void TNuDOMElement::_removeChild(TNuDOMNode& child) {
    if (child.get_nodeType() == host::ATTRIBUTE_NODE) {
        unlinkAttribute(child);
    } else {
        children_.remove(child);
    }
    nu::NodeLists* lists = listsIfAny();
    if (lists == nullptr) {
        return;
    }
    if (hasFlag(nu::hasElementOrder) && nu::NodeAccess::is<TNuDOMElement>(child)) {
        std::vector<TNuDOMElement*>& order = lists->elementOrder;
        // Children go from the end more often than from elsewhere.
        order.erase(order.back() == &child ? order.end() - 1
                                           : std::find(order.begin(), order.end(), &child));
        if (order.empty()) {
            clearFlag(nu::hasElementOrder);
        }
    }
    lists->childChanged(child, false, false);
}

void TNuDOMElement::appendChild(TNuDOMNode& child) { child._linkToParent(this, rdpLast, nullptr); }

void TNuDOMElement::insertBefore(TNuDOMNode& child, TNuDOMNode* reference) {
    child._linkToParent(this, rdpBefore, reference);
}

NuRef<TNuDOMNode> TNuDOMElement::removeChild(TNuDOMNode& child) {
    NuRef<TNuDOMNode> taken(&child);
    child._linkToParent(nullptr, rdpLast, nullptr);
    return taken;
}

// Neighbours

TNuDOMNode* TNuDOMElement::get_previousSibling() {
    TNuDOMNode* parent = get_parentNode();
    if (parent == nullptr || !nu::NodeAccess::isLinked(*this)) {
        return nullptr;
    }
    const nu::NodeChain& chain = *nu::NodeAccess::children(*parent);
    // The document element stands behind everything else in the document.
    return parent->get_nodeType() == host::DOCUMENT_NODE ? chain.last() : chain.previous(*this);
}

TNuDOMNode* TNuDOMElement::get_nextSibling() { return nu::NodeChain::next(*this); }

const TNuDOMElement* TNuDOMElement::FirstChildElement() const {
    return const_cast<TNuDOMElement&>(*this).FirstChildElement();
}

const nu::NodeName* TNuDOMElement::knownName(std::u16string_view name) const noexcept {
    return OwnerDocument()->names().find(name);
}

TNuDOMElement* TNuDOMElement::FirstChildElement() {
    return nu::findChildElement(*this, [](const TNuDOMElement&) { return true; });
}

const TNuDOMElement* TNuDOMElement::GetParentElement() const {
    return const_cast<TNuDOMElement&>(*this).GetParentElement();
}

TNuDOMElement* TNuDOMElement::GetParentElement() {
    TNuDOMNode* parent = get_parentNode();
    return parent != nullptr ? &nu::NodeAccess::cast<TNuDOMElement>(*parent) : nullptr;
}

std::ptrdiff_t TNuDOMElement::get_index() const {
    TNuDOMElement* parent = nu::NodeAccess::parentElement(*this);
    if (parent == nullptr) {
        return 0;
    }
    // Among a few it is found by looking; among many the list keeps a note of the positions.
    constexpr std::ptrdiff_t few = 16;
    std::ptrdiff_t index = 0;
    const TNuDOMElement* found =
        nu::findChildElement(*parent, [this, &index](const TNuDOMElement& sibling) {
            return &sibling == this || ++index == few;
        });
    return found == this ? index : parent->get_childElements().IndexOf(*this);
}

// Lists

TNuDOMNodeList& TNuDOMElement::get_childNodes() { return lists().childNodes(); }

TNuDOMElementList& TNuDOMElement::get_childElements() { return lists().childElements(); }

TNuDOMAttrList& TNuDOMElement::get_attributes() { return lists().attributes(); }

// Text

NuXmlString TNuDOMElement::get_nodeValue() const {
    NuXmlString value;
    for (const TNuDOMText& text : TNuDOMRange<TNuDOMText>(children_.first())) {
        nu::NodeAccess::appendValue(text, value);
    }
    return value;
}

void TNuDOMElement::set_nodeValue(std::u16string_view value) {
    const nu::DocumentLifetime::Work work(OwnerDocument()->lifetime());
    // 1. The first plain text keeps its place, if a text is wanted at all.
    TNuDOMText* kept = nullptr;
    if (!value.empty()) {
        for (TNuDOMText& text : TNuDOMRange<TNuDOMText>(children_.first())) {
            if (text.get_nodeType() == host::TEXT_NODE) {
                kept = &text;
                break;
            }
        }
        if (kept != nullptr) {
            kept->set_nodeValue(value);
        } else {
            kept = static_cast<TNuDOMText*>(&OwnerDocument()->_CreateCharacterData(
                TNuDOMText::Class, value, this, rdpLast, nullptr));
        }
    }
    // 2. All other text goes.
    for (TNuDOMNode* child = children_.first(); child != nullptr;) {
        TNuDOMNode* next = nu::NodeChain::next(*child);
        if (child != kept && nu::NodeAccess::is<TNuDOMText>(*child)) {
            child->_delete();
        }
        child = next;
    }
}

NuXmlString TNuDOMElement::GetCDATA() const {
    NuXmlString value;
    for (const TNuDOMCDATA& section : TNuDOMRange<TNuDOMCDATA>(children_.first())) {
        nu::NodeAccess::appendValue(section, value);
    }
    return value;
}

void TNuDOMElement::set_innerxml(std::u16string_view xml) {
    const nu::DocumentLifetime::Work work(OwnerDocument()->lifetime());
    while (TNuDOMNode* child = children_.last()) {
        child->_delete();
    }
    TNuDOMNode::set_innerxml(xml);
}
