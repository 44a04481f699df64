#include "nuXmlDOM/core/element.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/nodes/makeNode.h"
#include "nuXmlDOM/nodes/nameTest.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/elementOrder.h"
#include "nuXmlDOM/upkeep/liveLists.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

const TNuDOMNodeClass TNuDOMElement::Class{u"TNuDOMElement", host::ELEMENT_NODE,
                                           nu::createNode<TNuDOMElement>};

// Children coming and going

void TNuDOMElement::_addChild(TNuDOMNode& child, TNuDOMPosition position, TNuDOMNode* reference) {
    // 1. Everything that is refused is refused before anything changes.
    const bool isRelative = position == rdpBefore || position == rdpAfter;
    if (isRelative && reference == nullptr) {
        throw ENuDomException(nu::messages::referenceRequired);
    }
    const bool isAttribute = child.get_nodeType() == host::ATTRIBUTE_NODE;
    const bool isKnown = reference != nullptr && reference != &child &&
                         reference->get_parentNode() == this &&
                         nu::NodeLinks::isLinked(*reference) &&
                         (reference->get_nodeType() == host::ATTRIBUTE_NODE) == isAttribute;
    auto* childElement = nu::as<TNuDOMElement>(&child);
    const bool isBesideElement = isKnown && nu::is<TNuDOMElement>(*reference);
    if (position == rdpBefore && (!isKnown || (childElement != nullptr && !isBesideElement))) {
        host::raiseListIndex(-1);
    }
    // 2. The place in the list of child elements, where that is not simply that in the tree.
    // Deliberate: an element behind a node that is no element becomes the first in that list.
    // Behind a reference that is not there, a child becomes the first in both.
    if (childElement != nullptr) {
        nu::placeInElementOrder(*this, *childElement, position,
                                isBesideElement ? reference : nullptr, isKnown);
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
        place = isKnown ? nu::NodeLinks::next(*reference) : first;
        break;
    }
    if (isAttribute) {
        linkAttribute(child, place);
    } else {
        children_.insert(child, place);
        if (!nu::is<TNuDOMCharacterData>(child) || nu::NodeContext::name(child).isNamed()) {
            setFlag(nu::hadNamedChild);
        }
    }
    if (nu::NodeLists* lists = nu::NodeContext::listsIfAny(*this)) {
        lists->childChanged(child, true, place == nullptr);
    }
}

/// Puts an attribute before `place`; at the end when it is null.
void TNuDOMElement::linkAttribute(TNuDOMNode& attribute, TNuDOMNode* place) noexcept {
    TNuDOMNode* const before = nu::attributeBefore(*this, place);
    attributes_.insertBehind(before, attribute);
    if (nu::NodeLists* lists = nu::NodeContext::listsIfAny(*this)) {
        lists->attributeIndex.linked(before, attribute);
    }
}

void TNuDOMElement::unlinkAttribute(TNuDOMNode& attribute) noexcept {
    TNuDOMNode* const before = nu::attributeBefore(*this, &attribute);
    TNuDOMNode* const next = nu::NodeLinks::next(attribute);
    attributes_.removeBehind(before);
    if (nu::NodeLists* lists = nu::NodeContext::listsIfAny(*this)) {
        lists->attributeIndex.unlinked(before, attribute, next);
    }
}

void TNuDOMElement::_removeChild(TNuDOMNode& child) {
    if (child.get_nodeType() == host::ATTRIBUTE_NODE) {
        unlinkAttribute(child);
    } else {
        children_.remove(child);
    }
    nu::NodeLists* lists = nu::NodeContext::listsIfAny(*this);
    if (lists == nullptr) {
        return;
    }
    if (nu::is<TNuDOMElement>(child)) {
        nu::removeFromElementOrder(*this, static_cast<TNuDOMElement&>(child));
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
    if (parent == nullptr || !nu::NodeLinks::isLinked(*this)) {
        return nullptr;
    }
    const nu::NodeChain& chain = *nu::childrenOf(*parent);
    // The document element stands behind everything else in the document.
    return parent->get_nodeType() == host::DOCUMENT_NODE ? chain.last() : chain.previous(*this);
}

TNuDOMNode* TNuDOMElement::get_nextSibling() { return nu::NodeLinks::next(*this); }

const TNuDOMElement* TNuDOMElement::FirstChildElement() const {
    return const_cast<TNuDOMElement&>(*this).FirstChildElement();
}

const nu::NodeName* TNuDOMElement::knownName(std::u16string_view name) const noexcept {
    return OwnerDocument()->parts().names.find(name);
}

TNuDOMElement* TNuDOMElement::FirstChildElement() {
    return nu::findChildElement(*this, [](const TNuDOMElement&) { return true; });
}

const TNuDOMElement* TNuDOMElement::GetParentElement() const {
    return const_cast<TNuDOMElement&>(*this).GetParentElement();
}

TNuDOMElement* TNuDOMElement::GetParentElement() {
    TNuDOMNode* parent = get_parentNode();
    return parent != nullptr ? &nu::cast<TNuDOMElement>(*parent) : nullptr;
}

std::ptrdiff_t TNuDOMElement::get_index() const {
    TNuDOMElement* parent = nu::NodeLinks::parentElement(*this);
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

TNuDOMNodeList& TNuDOMElement::get_childNodes() {
    return nu::NodeContext::lists(*this).childNodes();
}

TNuDOMElementList& TNuDOMElement::get_childElements() {
    return nu::NodeContext::lists(*this).childElements();
}

TNuDOMAttrList& TNuDOMElement::get_attributes() {
    return nu::NodeContext::lists(*this).attributes();
}

// Text

NuXmlString TNuDOMElement::get_nodeValue() const {
    NuXmlString value;
    for (const TNuDOMText& text : TNuDOMRange<TNuDOMText>(children_.first())) {
        nu::NodeText::appendValue(text, value);
    }
    return value;
}

void TNuDOMElement::set_nodeValue(std::u16string_view value) {
    const nu::DocumentLifetime::Work work(OwnerDocument()->parts().lifetime);
    // 1. The first text node keeps its place, if a text is wanted at all.
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
        TNuDOMNode* next = nu::NodeLinks::next(*child);
        if (child != kept && nu::is<TNuDOMText>(*child)) {
            child->_delete();
        }
        child = next;
    }
}

NuXmlString TNuDOMElement::GetCDATA() const {
    NuXmlString value;
    for (const TNuDOMCDATA& section : TNuDOMRange<TNuDOMCDATA>(children_.first())) {
        nu::NodeText::appendValue(section, value);
    }
    return value;
}

void TNuDOMElement::set_innerxml(std::u16string_view xml) {
    const nu::DocumentLifetime::Work work(OwnerDocument()->parts().lifetime);
    while (TNuDOMNode* child = children_.last()) {
        child->_delete();
    }
    TNuDOMNode::set_innerxml(xml);
}
