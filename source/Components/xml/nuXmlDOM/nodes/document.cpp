#include "nuXmlDOM/core/document.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/core/implementation.h"
#include "nuXmlDOM/core/nodeAccess.h"
#include "nuXmlDOM/upkeep/liveLists.h"

namespace {

TNuDOMNode* refuseDocument(TNuDOMDocument* /*document*/) {
    throw ENuDomNotSupported(nu::cNotSupported);
}

} // namespace

const TNuDOMNodeClass TNuDOMDocument::Class{u"TNuDOMDocument", host::DOCUMENT_NODE, refuseDocument};

// Coming and going

TNuDOMDocument::TNuDOMDocument()
    : TNuDOMNode(nullptr, host::DOCUMENT_NODE), names_(memory_, *this), lifetime_(*this),
      snapshots_(*this) {
    nu::NodeAccess::setName(*this, names_.nameless());
}

TNuDOMDocument::~TNuDOMDocument() {
    // Nodes, names and texts are in the memory of the document and go with it.
    snapshots_.end();
    while (firstLists_ != nullptr) {
        nu::NodeLists* lists = firstLists_;
        firstLists_ = lists->next;
        delete lists;
    }
}

NuRef<TNuDOMDocument> TNuDOMDocument::Create() { return {new TNuDOMDocument}; }

void TNuDOMDocument::Destroy() {
    if (lifetime_.held() != 0) {
        throw host::EInvalidPointer(nu::cStillHeld);
    }
    delete this;
}

void TNuDOMDocument::Clear() {
    // Without this the document could go with the last held node that is taken out.
    const NuRef<TNuDOMDocument> self(this);
    const nu::DocumentLifetime::Work work(lifetime_);
    if (documentElement_ != nullptr) {
        documentElement_->_delete();
    }
    if (documentElement_ != nullptr) {
        host::failAssertion(nu::cAssertionFailure, nu::cDomLocation, __LINE__);
    }
    while (TNuDOMNode* node = topLevel_.last()) {
        if (nu::NodeAccess::heldCount(*node) != 0) {
            throw host::EInvalidPointer(nu::cStillHeld);
        }
        node->_delete();
    }
}

nu::NodeLists* TNuDOMDocument::makeLists(TNuDOMNode& node) {
    auto* lists = new nu::NodeLists(node);
    enterLists(*lists);
    return lists;
}

void TNuDOMDocument::enterLists(nu::NodeLists& lists) noexcept {
    lists.previous = nullptr;
    lists.next = firstLists_;
    if (firstLists_ != nullptr) {
        firstLists_->previous = &lists;
    }
    firstLists_ = &lists;
}

void TNuDOMDocument::removeLists(nu::NodeLists& lists) noexcept {
    (lists.previous != nullptr ? lists.previous->next : firstLists_) = lists.next;
    if (lists.next != nullptr) {
        lists.next->previous = lists.previous;
    }
}

void TNuDOMDocument::keepRoom(std::vector<TNuDOMNode*> nodes) noexcept {
    const std::size_t size = nodes.capacity() * sizeof(void*);
    if (nodes.capacity() > room_.capacity() && size <= memory_.size() / 8) {
        nodes.clear();
        room_.swap(nodes);
    }
}

void TNuDOMDocument::freeExtras(nu::NodeExtras& extras) noexcept {
    if (extras.lists != nullptr) {
        removeLists(*extras.lists);
        delete extras.lists;
    }
    if (extras.face != nullptr) {
        memory_.release(extras.face, extras.face->size());
    }
    memory_.release(&extras, sizeof(nu::NodeExtras));
}

void TNuDOMDocument::take(TNuDOMNode& node, const nu::NodeName* name) noexcept {
    nu::NodeAccess::setName(node, name);
    nu::NodeExtras* extras = nu::NodeAccess::extrasIfAny(node);
    if (extras == nullptr) {
        return;
    }
    if (extras->lists != nullptr) {
        extras->lists->attributeIndex.drop();
        extras->document->removeLists(*extras->lists);
        enterLists(*extras->lists);
    }
    extras->document = this;
}

void TNuDOMDocument::noteRefused(TNuDOMNode& node) noexcept {
    try {
        refused_.emplace(node.get_parentNode(), &node);
        node.get_parentNode()->setFlag(nu::hasRefused);
    } catch (...) {
        nu::NodeAccess::setParent(node, nullptr); // what is not noted must not point anywhere
        node.clearFlag(nu::isRefused);
    }
}

void TNuDOMDocument::forgetRefused(TNuDOMNode& node) noexcept {
    refused_.erase({node.get_parentNode(), &node});
    node.clearFlag(nu::isRefused);
}

void TNuDOMDocument::forgetNode(TNuDOMNode& node) noexcept {
    snapshots_.forgetNode(node);
    leaveNode(node);
}

void TNuDOMDocument::leaveNode(TNuDOMNode& node) noexcept {
    lifetime_.withdraw(node);
    if (node.hasFlag(nu::isRefused)) {
        forgetRefused(node);
    }
    if (node.hasFlag(nu::hasRefused)) {
        auto place = refused_.lower_bound({&node, nullptr});
        while (place != refused_.end() && place->first == &node) {
            nu::NodeAccess::setParent(*place->second, nullptr);
            place->second->clearFlag(nu::isRefused);
            place = refused_.erase(place);
        }
        node.clearFlag(nu::hasRefused);
    }
}

// Children

void TNuDOMDocument::_addChild(TNuDOMNode& child, TNuDOMPosition position, TNuDOMNode* reference) {
    // 1. The document element; its position is its own.
    if (auto* element = nu::NodeAccess::as<TNuDOMElement>(&child)) {
        if (documentElement_ != nullptr) {
            throw ENuDomHierarchyRequest(nu::cOneRootNode);
        }
        documentElement_ = element;
    } else if (nu::NodeAccess::is<TNuDOMComment>(child) ||
               nu::NodeAccess::is<TNuDOMProcessingInstruction>(child)) {
        // 2. Instructions and comments; those at the document element go to the end.
        TNuDOMNode* place = nullptr;
        if (position == rdpFirst) {
            place = topLevel_.first();
        } else if (position != rdpLast && reference == nullptr) {
            throw ENuDomException(nu::cReferenceRequired);
        } else if (position != rdpLast && reference != documentElement_) {
            const bool isKnown = reference != &child && reference->get_parentNode() == this &&
                                 nu::NodeAccess::isLinked(*reference);
            if (!isKnown && position == rdpBefore) {
                host::raiseListIndex(-1);
            }
            // Deliberate: behind a reference that is not there, a node becomes the first.
            place = !isKnown                ? topLevel_.first()
                    : position == rdpBefore ? reference
                                            : nu::NodeChain::next(*reference);
        }
        topLevel_.insert(child, place);
    } else {
        raiseNoParentOf(child);
    }
    if (nu::NodeLists* lists = listsIfAny()) {
        lists->childChanged(child, true, false);
    }
}

void TNuDOMDocument::_removeChild(TNuDOMNode& child) {
    if (&child == documentElement_) {
        documentElement_ = nullptr;
    } else {
        topLevel_.remove(child);
    }
    if (nu::NodeLists* lists = listsIfAny()) {
        lists->childChanged(child, false, false);
    }
}

void TNuDOMDocument::appendChild(TNuDOMNode& child) { child._linkToParent(this, rdpLast, nullptr); }

void TNuDOMDocument::insertBefore(TNuDOMNode& child, TNuDOMNode* reference) {
    child._linkToParent(this, rdpBefore, reference);
}

NuRef<TNuDOMNode> TNuDOMDocument::removeChild(TNuDOMNode& child) {
    NuRef<TNuDOMNode> taken(&child);
    child._linkToParent(nullptr, rdpLast, nullptr);
    return taken;
}

void TNuDOMDocument::set_documentElement(TNuDOMElement& element) {
    if (documentElement_ != nullptr) {
        throw ENuDomNoModificationAllowed(nu::cRootNodeIsFixed);
    }
    element._linkToParent(this, rdpLast, nullptr);
}

NuXmlString TNuDOMDocument::get_nodeName() const { return u"#document"; }

TNuDOMNodeList& TNuDOMDocument::get_childNodes() { return lists().childNodes(); }

TNuDOMNode* TNuDOMDocument::get_firstChild() {
    return !topLevel_.empty() ? topLevel_.first() : documentElement_;
}

TNuDOMNode* TNuDOMDocument::get_lastChild() {
    return documentElement_ != nullptr ? documentElement_ : topLevel_.last();
}

NuRef<TNuDOMImplementation> TNuDOMDocument::get_domImplementation() const {
    return TNuDOMImplementation::Create();
}
