#include "nuXmlDOM/core/node.h"

#include <algorithm>
#include <vector>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/nodes/features.h"
#include "nuXmlDOM/storage/nameTable.h"
#include "nuXmlDOM/upkeep/adoption.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/liveLists.h"
#include "nuXmlDOM/upkeep/treeWalk.h"

const TNuDOMNodeClass& TNuDOMNode::NodeClass() const noexcept {
    switch (get_nodeType()) {
    case host::ELEMENT_NODE:
        return TNuDOMElement::Class;
    case host::ATTRIBUTE_NODE:
        return TNuDOMAttribute::Class;
    case host::TEXT_NODE:
        return TNuDOMText::Class;
    case host::CDATA_SECTION_NODE:
        return TNuDOMCDATA::Class;
    case host::PROCESSING_INSTRUCTION_NODE:
        return TNuDOMProcessingInstruction::Class;
    case host::COMMENT_NODE:
        return TNuDOMComment::Class;
    default:
        return TNuDOMDocument::Class;
    }
}

bool TNuDOMNode::supports(std::u16string_view feature, std::u16string_view version) const {
    return nu::hasFeature(feature, version);
}

// Names

NuXmlString TNuDOMNode::get_nodeName() const {
    return NuXmlString(nu::NodeContext::name(*this).qualified());
}

NuXmlString TNuDOMNode::get_prefix() const {
    return NuXmlString(nu::NodeContext::name(*this).prefix());
}

NuXmlString TNuDOMNode::get_localName() const {
    return NuXmlString(nu::NodeContext::name(*this).local());
}

NuXmlString TNuDOMNode::get_namespaceURI() const { return {}; }

NuXmlString TNuDOMNode::GetCreationNamespaceURI() const {
    return NuXmlString(nu::NodeContext::name(*this).creationURI());
}

void TNuDOMNode::set_nodeName(std::u16string_view name) {
    // 1. A node is named once, and not by nothing.
    const nu::NodeName& named = nu::NodeContext::name(*this);
    if (named.isNamed()) {
        throw ENuDomNoModificationAllowed(nu::messages::nameIsFixed);
    }
    if (name.empty()) {
        throw ENuDomSyntax(nu::messages::emptyName);
    }
    // 2. Deliberate: the name is taken up to a character that is refused, and the node is named
    // then; a name is built character by character.
    const std::size_t refused = name.find(cNuSpace);
    rename(OwnerDocument()->parts().names.get(name.substr(0, refused), *named.uri));
    if (refused != std::u16string_view::npos) {
        throw ENuDomInvalidCharacter(nu::messages::invalidName);
    }
}

void TNuDOMNode::set_prefix(std::u16string_view prefix) {
    const bool isRefused = prefix.find_first_of(u" :") != std::u16string_view::npos;
    const std::u16string_view taken = isRefused ? std::u16string_view() : prefix;
    const nu::NodeName& name = nu::NodeContext::name(*this);
    rename(OwnerDocument()->parts().names.get(!prefix.empty(), taken, name.hasLocal, name.local(),
                                              *name.uri));
    if (isRefused) {
        throw ENuDomInvalidCharacter(nu::messages::invalidName);
    }
}

void TNuDOMNode::Rename(const TNuText& name) {
    if (nodeType_ != host::ELEMENT_NODE && nodeType_ != host::ATTRIBUTE_NODE &&
        nodeType_ != host::PROCESSING_INSTRUCTION_NODE) {
        raiseNotSupported();
    }
    if (name.view().empty()) {
        throw ENuDomSyntax(nu::messages::emptyName);
    }
    if (name.view().find(cNuSpace) != std::u16string_view::npos) {
        throw ENuDomInvalidCharacter(nu::messages::invalidName);
    }
    rename(OwnerDocument()->parts().names.get(name.view()));
}

void TNuDOMNode::rename(const nu::NodeName* name) noexcept {
    nu::NodeContext::setName(*this, name);
    TNuDOMNode* parent = nu::NodeLinks::parent(*this);
    if (parent == nullptr) {
        return;
    }
    parent->setFlag(nu::hadNamedChild);
    if (nu::NodeLists* lists = nu::NodeContext::listsIfAny(*parent)) {
        lists->attributeIndex.drop();
    }
}

NuXmlString TNuDOMNode::NodePath(bool localNamesOnly) const {
    std::vector<const TNuDOMNode*> nodes;
    const TNuDOMNode* node = this;
    for (; node != nullptr && node->nodeType_ != host::DOCUMENT_NODE;
         node = nu::NodeLinks::parent(*node)) {
        nodes.push_back(node);
    }
    const bool isInDocument = node != nullptr;
    NuXmlString path;
    for (std::size_t index = nodes.size(); index > 0; --index) {
        if (isInDocument || index < nodes.size()) {
            path += cNuSlash;
        }
        path +=
            localNamesOnly ? nodes[index - 1]->get_localName() : nodes[index - 1]->get_nodeName();
    }
    return path;
}

// What only some kinds of nodes provide

void TNuDOMNode::raiseNotSupported() {
    throw ENuDomNotSupported(nu::messages::operationNotSupported);
}

void TNuDOMNode::raiseNoParentOf(const TNuDOMNode& child) const {
    throw ENuDomHierarchyRequest(
        host::formatMessage(nu::messages::noParentOf, {NodeClass().name, child.NodeClass().name}));
}

NuXmlString TNuDOMNode::get_nodeValue() const { return {}; }
void TNuDOMNode::set_nodeValue(std::u16string_view /*value*/) { raiseNotSupported(); }
NuXmlString TNuDOMNode::get_text() const { raiseNotSupported(); }
void TNuDOMNode::set_text(std::u16string_view /*text*/) { raiseNotSupported(); }
TNuDOMNodeList& TNuDOMNode::get_childNodes() { raiseNotSupported(); }
TNuDOMNode* TNuDOMNode::get_firstChild() { raiseNotSupported(); }
TNuDOMNode* TNuDOMNode::get_lastChild() { raiseNotSupported(); }
TNuDOMNode* TNuDOMNode::get_previousSibling() { raiseNotSupported(); }
TNuDOMNode* TNuDOMNode::get_nextSibling() { raiseNotSupported(); }
TNuDOMAttrList& TNuDOMNode::get_attributes() { raiseNotSupported(); }
bool TNuDOMNode::hasChildNodes() const { return false; }
TNuDOMNode* TNuDOMNode::FirstChild() { raiseNotSupported(); }
TNuDOMNode* TNuDOMNode::LastChild() { raiseNotSupported(); }
void TNuDOMNode::appendChild(TNuDOMNode& /*child*/) { raiseNotSupported(); }
void TNuDOMNode::insertBefore(TNuDOMNode& /*child*/, TNuDOMNode* /*reference*/) {
    raiseNotSupported();
}
NuRef<TNuDOMNode> TNuDOMNode::removeChild(TNuDOMNode& /*child*/) { raiseNotSupported(); }
NuRef<TNuDOMNode> TNuDOMNode::replaceChild(TNuDOMNode& /*child*/, TNuDOMNode& /*former*/) {
    raiseNotSupported();
}
NuRef<TNuDOMNode> TNuDOMNode::cloneNode(bool /*deep*/) const { raiseNotSupported(); }
void TNuDOMNode::normalize() { raiseNotSupported(); }
NuXmlString TNuDOMNode::transformNode(TNuDOMNode& /*stylesheet*/) const { raiseNotSupported(); }
void TNuDOMNode::transformNode(TNuDOMNode& /*stylesheet*/, TNuDOMDocument& /*output*/) const {
    raiseNotSupported();
}
NuRef<TNuDOMNodeList> TNuDOMNode::CreateNodeList(std::u16string_view /*path*/,
                                                 TNuDOMSelectOptions /*options*/) {
    raiseNotSupported();
}
TNuDOMNode* TNuDOMNode::SelectSingleNode(std::u16string_view /*path*/,
                                         TNuDOMSelectOptions /*options*/) {
    raiseNotSupported();
}

// Places in the tree

void TNuDOMNode::_addChild(TNuDOMNode& child, TNuDOMPosition /*position*/,
                           TNuDOMNode* /*reference*/) {
    raiseNoParentOf(child);
}

void TNuDOMNode::_removeChild(TNuDOMNode& child) { raiseNoParentOf(child); }

void TNuDOMNode::_linkToParent(TNuDOMNode* parent, TNuDOMPosition position, TNuDOMNode* reference) {
    // 1. What can stand nowhere, or would stand below itself, stays where it is.
    if (parent != nullptr) {
        checkCanStandBelow(*parent, position, reference);
    }
    const bool wasWaiting = OwnerDocument()->parts().lifetime.reclaimBut(*this);
    // 2. It leaves its old place.
    TNuDOMNode* const former = nu::NodeLinks::parent(*this);
    TNuDOMNode* const formerNext = former != nullptr ? next_ : nullptr;
    unlink();
    // 3. The new parent may refuse it.
    if (parent != nullptr) {
        try {
            if (parent->OwnerDocument() != OwnerDocument()) {
                // A reference there may go with its document; the node itself is none either.
                if (reference != nullptr && reference->OwnerDocument() == OwnerDocument()) {
                    reference = this;
                }
                if (former != nullptr && hasFlag(nu::leadsToWitness)) {
                    OwnerDocument()->parts().lifetime.departed(*this, *former, formerNext);
                }
                nu::adopt(*this, *parent->OwnerDocument());
            }
            linkBelow(*parent, position, reference);
        } catch (...) {
            settle(former, formerNext, wasWaiting);
            throw;
        }
    }
    // 4. What was left may go now.
    settle(former, formerNext, wasWaiting);
}

void TNuDOMNode::linkBelow(TNuDOMNode& parent, TNuDOMPosition position, TNuDOMNode* reference) {
    parent_ = &parent;
    setFlag(nu::isRefused);
    try {
        parent._addChild(*this, position, reference);
    } catch (...) {
        OwnerDocument()->parts().refused.note(*this);
        throw;
    }
    clearFlag(nu::isRefused);
}

void TNuDOMNode::settle(TNuDOMNode* former, TNuDOMNode* formerNext, bool wasWaiting) noexcept {
    nu::DocumentLifetime& lifetime = OwnerDocument()->parts().lifetime;
    const bool isLinked = nu::NodeLinks::isLinked(*this);
    if (former != nullptr && hasFlag(nu::leadsToWitness) &&
        nu::NodeLinks::parent(*this) != former) {
        lifetime.departed(*this, *former, formerNext);
    }
    if (isLinked && hasFlag(nu::isCandidate)) {
        lifetime.withdraw(*this);
    } else if (!isLinked && wasWaiting) {
        lifetime.note(*this);
    }
    lifetime.reclaim();
}

void TNuDOMNode::unlink() {
    if (parent_ == nullptr) {
        return;
    }
    if (hasFlag(nu::isRefused)) {
        OwnerDocument()->parts().refused.forget(*this);
    } else {
        parent_->_removeChild(*this);
    }
    parent_ = nullptr;
}

void TNuDOMNode::checkCanStandBelow(const TNuDOMNode& parent, TNuDOMPosition position,
                                    const TNuDOMNode* reference) const {
    const bool isDocument = nodeType_ == host::DOCUMENT_NODE;
    const nu::NodeChain* below = isDocument ? nullptr : nu::childrenOf(*this);
    const bool mayHoldParent = below != nullptr && (!below->empty() || parent.parent_ == this);
    bool isInside = isDocument || &parent == this;
    for (const TNuDOMNode* node = mayHoldParent ? &parent : nullptr; node != nullptr && !isInside;
         node = nu::NodeLinks::parent(*node)) {
        isInside = node == this;
    }
    if (!isInside) {
        return;
    }
    // An element asks for the reference before it looks at the kind.
    if (parent.nodeType_ == host::ELEMENT_NODE && reference == nullptr &&
        (position == rdpBefore || position == rdpAfter)) {
        throw ENuDomException(nu::messages::referenceRequired);
    }
    parent.raiseNoParentOf(*this);
}

void TNuDOMNode::_delete() {
    nu::DocumentLifetime& lifetime = OwnerDocument()->parts().lifetime;
    if (nodeType_ == host::DOCUMENT_NODE) {
        lifetime.ask();
        return;
    }
    const nu::DocumentLifetime::Work work(lifetime);
    _linkToParent(nullptr, rdpLast, nullptr);
    lifetime.collect(*this);
}

// What only few nodes have

nu::NodeExtras& nu::NodeContext::extras(TNuDOMNode& node) {
    if (!node.hasFlag(hasExtras)) {
        TNuDOMDocument* document = node.OwnerDocument();
        void* memory = document->parts().memory.allocate(sizeof(NodeExtras));
        auto* own = new (memory) NodeExtras;
        own->document = document;
        own->name = &name(node);
        node.context_ = own;
        node.setFlag(hasExtras);
    }
    return *extrasIfAny(node);
}

nu::NodeLists& nu::NodeContext::lists(TNuDOMNode& node) {
    NodeExtras& own = extras(node);
    if (own.lists == nullptr) {
        own.lists = own.document->parts().makeLists(node);
    }
    return *own.lists;
}

TNuDOMElement* nu::NodeLinks::parentElement(const TNuDOMNode& node) noexcept {
    return as<TNuDOMElement>(parent(node));
}

void nu::raiseInvalidCast(std::u16string_view className) {
    throw host::EInvalidCast(host::formatMessage(messages::invalidCast, {className}));
}

nu::Face& TNuDOMNode::face() {
    nu::NodeExtras& own = nu::NodeContext::extras(*this);
    if (own.face == nullptr) {
        own.face = nu::makeFace(*this, own.document->parts().memory);
    }
    return *own.face;
}
