#include "nuXmlDOM/core/document.h"

#include <algorithm>

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/core/implementation.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/heldNodes.h"
#include "nuXmlDOM/upkeep/liveLists.h"
#include "nuXmlParser/conversionErrors.h"

namespace {

TNuDOMNode* refuseDocument(TNuDOMDocument* /*document*/) {
    throw ENuDomNotSupported(nu::messages::operationNotSupported);
}

} // namespace

const TNuDOMNodeClass TNuDOMDocument::Class{u"TNuDOMDocument", host::DOCUMENT_NODE, refuseDocument};

// Coming and going

TNuDOMDocument::TNuDOMDocument()
    : TNuDOMNode(nullptr, host::DOCUMENT_NODE), parts_(new nu::DocumentParts(*this)) {
    nu::NodeContext::setName(*this, parts_->names.nameless());
}

TNuDOMDocument::~TNuDOMDocument() {
    parts_->snapshots.end(); // they ask for the parts while they go
}

NuRef<TNuDOMDocument> TNuDOMDocument::Create() { return {new TNuDOMDocument}; }

void TNuDOMDocument::Destroy() {
    if (parts_->lifetime.held() != 0) {
        throw host::EInvalidPointer(nu::messages::stillHeld);
    }
    delete this;
}

void TNuDOMDocument::Clear() {
    // Without this the document could go with the last held node that is taken out.
    const NuRef<TNuDOMDocument> self(this);
    const nu::DocumentLifetime::Work work(parts_->lifetime);
    if (documentElement_ != nullptr) {
        documentElement_->_delete();
    }
    if (documentElement_ != nullptr) {
        host::failAssertion(nu::messages::assertionFailure, nu::messages::domLocation, __LINE__);
    }
    while (TNuDOMNode* node = parts_->topLevel.last()) {
        if (nu::heldCount(*node) != 0) {
            throw host::EInvalidPointer(nu::messages::stillHeld);
        }
        node->_delete();
    }
}

bool TNuDOMDocument::IsLoading() const noexcept { return parts_->isLoading; }

const TNuDOMLimits& TNuDOMDocument::Limits() const noexcept { return parts_->limits; }

void TNuDOMDocument::SetLimits(const TNuDOMLimits& limits) noexcept { parts_->limits = limits; }

// Children

void TNuDOMDocument::_addChild(TNuDOMNode& child, TNuDOMPosition position, TNuDOMNode* reference) {
    // 1. The document element; its position is its own.
    if (auto* element = nu::as<TNuDOMElement>(&child)) {
        if (documentElement_ != nullptr) {
            throw ENuDomHierarchyRequest(nu::messages::oneRootNode);
        }
        documentElement_ = element;
    } else if (nu::is<TNuDOMComment>(child) || nu::is<TNuDOMProcessingInstruction>(child)) {
        // 2. Instructions and comments; those at the document element go to the end.
        TNuDOMNode* place = nullptr;
        if (position == rdpFirst) {
            place = parts_->topLevel.first();
        } else if (position != rdpLast && reference == nullptr) {
            throw ENuDomException(nu::messages::referenceRequired);
        } else if (position != rdpLast && reference != documentElement_) {
            const bool isKnown = reference != &child && reference->get_parentNode() == this &&
                                 nu::NodeLinks::isLinked(*reference);
            if (!isKnown && position == rdpBefore) {
                host::raiseListIndex(-1);
            }
            // Deliberate: behind a reference that is not there, a node becomes the first.
            place = !isKnown                ? parts_->topLevel.first()
                    : position == rdpBefore ? reference
                                            : nu::NodeLinks::next(*reference);
        }
        parts_->topLevel.insert(child, place);
    } else {
        raiseNoParentOf(child);
    }
    if (nu::NodeLists* lists = nu::NodeContext::listsIfAny(*this)) {
        lists->childChanged(child, true, false);
    }
}

void TNuDOMDocument::_removeChild(TNuDOMNode& child) {
    if (&child == documentElement_) {
        documentElement_ = nullptr;
    } else {
        parts_->topLevel.remove(child);
    }
    if (nu::NodeLists* lists = nu::NodeContext::listsIfAny(*this)) {
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
        throw ENuDomNoModificationAllowed(nu::messages::rootNodeIsFixed);
    }
    element._linkToParent(this, rdpLast, nullptr);
}

NuXmlString TNuDOMDocument::get_nodeName() const { return u"#document"; }

TNuDOMNodeList& TNuDOMDocument::get_childNodes() {
    return nu::NodeContext::lists(*this).childNodes();
}

TNuDOMNode* TNuDOMDocument::get_firstChild() {
    return !parts_->topLevel.empty() ? parts_->topLevel.first() : documentElement_;
}

TNuDOMNode* TNuDOMDocument::get_lastChild() {
    return documentElement_ != nullptr ? documentElement_ : parts_->topLevel.last();
}

NuRef<TNuDOMImplementation> TNuDOMDocument::get_domImplementation() const {
    return TNuDOMImplementation::Create();
}
