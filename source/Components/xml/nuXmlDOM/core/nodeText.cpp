#include "nuXmlDOM/core/nodeText.h"

#include "nuXmlDOM/core/nodeLinks.h"
#include "nuXmlParser/unescape.h"

namespace nu {

StoredText* NodeText::storedIfAny(TNuDOMNode& node) noexcept {
    switch (node.get_nodeType()) {
    case host::ATTRIBUTE_NODE:
        return &stored(static_cast<TNuDOMAttribute&>(node));
    case host::TEXT_NODE:
    case host::CDATA_SECTION_NODE:
    case host::COMMENT_NODE:
        return &stored(static_cast<TNuDOMCharacterData&>(node));
    case host::PROCESSING_INSTRUCTION_NODE:
        return &stored(static_cast<TNuDOMProcessingInstruction&>(node));
    default:
        return nullptr;
    }
}

void NodeText::appendValue(const TNuDOMNode& node, NuXmlString& target) {
    const StoredText* text = storedIfAny(node);
    if (text == nullptr) {
        return;
    }
    const host::DOMNodeType type = node.get_nodeType();
    const bool isEscaped = type == host::TEXT_NODE || type == host::ATTRIBUTE_NODE;
    if (isEscaped && text->contains(cNuAmp)) {
        target += NuXMLToStr(text->toString());
    } else {
        text->appendTo(target);
    }
}

void NodeText::copy(const TNuDOMNode& source, TNuDOMNode& target, DocumentMemory& memory) {
    storedIfAny(target)->copy(memory, *storedIfAny(source));
    if (NodeFlags::has(source, isCanonicalText)) {
        NodeFlags::set(target, isCanonicalText);
    }
}

} // namespace nu
