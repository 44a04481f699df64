#include "nuXmlDOM/core/nodeAccess.h"

#include <algorithm>
#include <new>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/upkeep/liveLists.h"
#include "nuXmlParser/unescape.h"

namespace nu {

void raiseInvalidCast(std::u16string_view className) {
    throw host::EInvalidCast(host::formatMessage(cInvalidCast, {className}));
}

TNuDOMElement* NodeAccess::parentElement(const TNuDOMNode& node) noexcept {
    return as<TNuDOMElement>(parent(node));
}

NodeChain* NodeAccess::children(TNuDOMNode& node) noexcept {
    if (auto* element = as<TNuDOMElement>(&node)) {
        return &element->children_;
    }
    auto* document = as<TNuDOMDocument>(&node);
    return document != nullptr ? &document->topLevel_ : nullptr;
}

const NodeChain* NodeAccess::children(const TNuDOMNode& node) noexcept {
    return children(const_cast<TNuDOMNode&>(node));
}

TNuDOMNode* NodeAccess::firstAttribute(const TNuDOMNode& node) noexcept {
    return is<TNuDOMElement>(node) ? static_cast<const TNuDOMElement&>(node).attributes_.first()
                                   : nullptr;
}

const std::vector<TNuDOMElement*>* NodeAccess::elementOrder(const TNuDOMElement& element) noexcept {
    return element.hasFlag(hasElementOrder) ? &element.listsIfAny()->elementOrder : nullptr;
}

StoredText* NodeAccess::text(TNuDOMNode& node) noexcept {
    switch (node.get_nodeType()) {
    case host::ATTRIBUTE_NODE:
        return &static_cast<TNuDOMAttribute&>(node).text_;
    case host::TEXT_NODE:
    case host::CDATA_SECTION_NODE:
    case host::COMMENT_NODE:
        return &static_cast<TNuDOMCharacterData&>(node).text_;
    case host::PROCESSING_INSTRUCTION_NODE:
        return &static_cast<TNuDOMProcessingInstruction&>(node).text_;
    default:
        return nullptr;
    }
}

const StoredText* NodeAccess::text(const TNuDOMNode& node) noexcept {
    return text(const_cast<TNuDOMNode&>(node));
}

void NodeAccess::appendValue(const TNuDOMNode& node, NuXmlString& target) {
    const StoredText* stored = text(node);
    if (stored == nullptr) {
        return;
    }
    const host::DOMNodeType type = node.get_nodeType();
    const bool isEscaped = type == host::TEXT_NODE || type == host::ATTRIBUTE_NODE;
    if (isEscaped && stored->contains(cNuAmp)) {
        target += NuXMLToStr(stored->toString());
    } else {
        stored->appendTo(target);
    }
}

void NodeAccess::copyText(const TNuDOMNode& source, TNuDOMNode& target) {
    text(target)->copy(target.OwnerDocument()->memory(), *text(source));
    if (source.hasFlag(isCanonicalText)) {
        target.setFlag(isCanonicalText);
    }
}

NodeExtras* NodeAccess::extrasIfAny(const TNuDOMNode& node) noexcept {
    // Names are shared and never change; the extras of a node are its own.
    return node.hasFlag(hasExtras)
               ? const_cast<NodeExtras*>(static_cast<const NodeExtras*>(node.context_))
               : nullptr;
}

void NodeAccess::setName(TNuDOMNode& node, const NodeName* name) noexcept {
    if (NodeExtras* extras = extrasIfAny(node)) {
        extras->name = name;
    } else {
        node.context_ = name;
    }
}

void NodeAccess::fill(TNuDOMNodeList& list, std::vector<TNuDOMNode*> nodes) {
    if (nodes.size() < nodes.capacity() / 2) {
        // Much room for few nodes is better kept for a list that needs it.
        list.items_.assign(nodes.begin(), nodes.end());
        list.OwnerDocument()->keepRoom(std::move(nodes));
    } else {
        list.items_ = std::move(nodes);
    }
    if (list.marksMembers_) {
        list.markMembers();
    }
}

void NodeAccess::reorder(TNuDOMNode& owner, LiveMembers shown,
                         const std::vector<TNuDOMNode*>& order) {
    auto* element = as<TNuDOMElement>(&owner);
    if (shown != LiveMembers::attributes && element != nullptr) {
        element->keepElementOrder();
    }
    if (shown == LiveMembers::childElements && element != nullptr) {
        std::transform(order.begin(), order.end(), element->lists().elementOrder.begin(),
                       [](TNuDOMNode* node) { return static_cast<TNuDOMElement*>(node); });
        return;
    }
    // The chain is taken apart and put together again; the document element stands in none.
    if (shown == LiveMembers::attributes) {
        element->lists().attributeIndex.drop();
        element->attributes_.clear();
        TNuDOMNode* last = nullptr;
        for (TNuDOMNode* attribute : order) {
            element->attributes_.insertBehind(last, *attribute);
            last = attribute;
        }
        return;
    }
    NodeChain& chain = *children(owner);
    for (TNuDOMNode* node : order) {
        if (as<TNuDOMDocument>(node->parent_) == nullptr || !is<TNuDOMElement>(*node)) {
            chain.remove(*node);
            chain.append(*node);
        }
    }
}

namespace {

std::size_t sizeOf(host::DOMNodeType type) noexcept {
    switch (type) {
    case host::ELEMENT_NODE:
        return sizeof(TNuDOMElement);
    case host::ATTRIBUTE_NODE:
        return sizeof(TNuDOMAttribute);
    case host::TEXT_NODE:
        return sizeof(TNuDOMText);
    case host::CDATA_SECTION_NODE:
        return sizeof(TNuDOMCDATA);
    case host::COMMENT_NODE:
        return sizeof(TNuDOMComment);
    default:
        return sizeof(TNuDOMProcessingInstruction);
    }
}

} // namespace

void NodeAccess::destroy(TNuDOMNode& node) noexcept {
    TNuDOMDocument& document = *node.OwnerDocument();
    DocumentMemory& memory = document.memory();
    document.forgetNode(node);
    if (NodeExtras* extras = extrasIfAny(node)) {
        document.freeExtras(*extras);
    }
    if (StoredText* stored = text(node)) {
        stored->clear(memory);
    }
    memory.release(&node, sizeOf(node.get_nodeType()));
}

void NodeAccess::destroySubtree(TNuDOMNode& root) noexcept {
    // Down to the last node without children, which goes, and on from its parent: what is still to
    // be done is the tree itself, however deep it is.
    TNuDOMNode* node = &root;
    for (;;) {
        if (auto* element = as<TNuDOMElement>(node)) {
            if (TNuDOMNode* child = element->children_.last()) {
                element->children_.remove(*child);
                node = child;
                continue;
            }
            while (TNuDOMNode* attribute = element->attributes_.first()) {
                element->attributes_.removeBehind(nullptr);
                destroy(*attribute);
            }
        }
        TNuDOMNode* parent = node->parent_;
        const bool isLast = node == &root;
        destroy(*node);
        if (isLast) {
            return;
        }
        node = parent;
    }
}

std::int64_t NodeAccess::heldCount(const TNuDOMNode& node) noexcept {
    const NodeExtras* extras = extrasIfAny(node);
    const std::int64_t lists =
        extras != nullptr && extras->lists != nullptr ? extras->lists->heldCount() : 0;
    return lists + (node.count_.load() != 0 ? 1 : 0);
}

bool NodeAccess::isHeld(const TNuDOMNode& node) noexcept { return heldCount(node) != 0; }

const TNuDOMNode* NodeAccess::firstHeld(const TNuDOMNode& root) noexcept {
    return firstInSubtree(root, isHeld);
}

const TNuDOMNode* NodeAccess::firstHeld(const TNuDOMNode& root, const TNuDOMNode& start) noexcept {
    const TNuDOMNode* held = firstFrom(start, root, isHeld);
    return held != nullptr ? held : firstHeld(root);
}

bool NodeAccess::isSubtreeHeld(const TNuDOMNode& root) noexcept {
    return firstHeld(root) != nullptr;
}

} // namespace nu
