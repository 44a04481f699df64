#include "nuXmlDOM/upkeep/nodeMemory.h"

#include "nuXmlDOM/core/elementLinks.h"
#include "nuXmlDOM/core/nodeContext.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeText.h"
#include "nuXmlDOM/upkeep/documentParts.h"

namespace nu {

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

void NodeMemory::destroy(TNuDOMNode& node) noexcept {
    DocumentParts& parts = node.OwnerDocument()->parts();
    parts.forgetNode(node);
    if (NodeExtras* extras = NodeContext::extrasIfAny(node)) {
        parts.freeExtras(*extras);
    }
    if (StoredText* text = NodeText::storedIfAny(node)) {
        text->clear(parts.memory);
    }
    parts.memory.release(&node, sizeOf(node.get_nodeType()));
}

void NodeMemory::destroySubtree(TNuDOMNode& root) noexcept {
    // Down to the last node without children, which goes, and on from its parent: what is still to
    // be done is the tree itself, however deep it is.
    TNuDOMNode* node = &root;
    for (;;) {
        if (auto* element = as<TNuDOMElement>(node)) {
            NodeChain& children = ElementLinks::children(*element);
            if (TNuDOMNode* child = children.last()) {
                children.remove(*child);
                node = child;
                continue;
            }
            AttributeChain& attributes = ElementLinks::attributes(*element);
            while (TNuDOMNode* attribute = attributes.first()) {
                attributes.removeBehind(nullptr);
                destroy(*attribute);
            }
        }
        TNuDOMNode* parent = node->get_parentNode();
        const bool isLast = node == &root;
        destroy(*node);
        if (isLast) {
            return;
        }
        node = parent;
    }
}

} // namespace nu
