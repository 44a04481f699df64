#include <new>
#include <type_traits>

#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/face/documentFace.h"
#include "nuXmlDOM/face/elementFace.h"
#include "nuXmlDOM/face/listFaces.h"
#include "nuXmlDOM/face/textFaces.h"
#include "nuXmlDOM/storage/documentMemory.h"

namespace nu {

namespace {

template <class NodeFace, class Object> Face* makeFaceOf(TNuDOMNode& node, DocumentMemory& memory) {
    static_assert(sizeof(NodeFace) == sizeof(typename NodeFace::Whole),
                  "Face::size speaks for derived classes too");
    void* const place = memory.allocate(sizeof(NodeFace));
    return new (place) NodeFace(static_cast<Object&>(node));
}

} // namespace

Face* makeFace(TNuDOMNode& node, DocumentMemory& memory) {
    switch (node.get_nodeType()) {
    case host::ELEMENT_NODE:
        return makeFaceOf<ElementFace, TNuDOMElement>(node, memory);
    case host::ATTRIBUTE_NODE:
        return makeFaceOf<AttributeFace, TNuDOMAttribute>(node, memory);
    case host::TEXT_NODE:
        return makeFaceOf<TextFace<TNuDOMText>, TNuDOMText>(node, memory);
    case host::CDATA_SECTION_NODE:
        return makeFaceOf<TextFace<TNuDOMCDATA>, TNuDOMCDATA>(node, memory);
    case host::COMMENT_NODE:
        return makeFaceOf<CommentFace, TNuDOMComment>(node, memory);
    case host::PROCESSING_INSTRUCTION_NODE:
        return makeFaceOf<InstructionFace, TNuDOMProcessingInstruction>(node, memory);
    default:
        return makeFaceOf<DocumentFace, TNuDOMDocument>(node, memory);
    }
}

Face* makeFace(TNuDOMNodeList& list) {
    if (auto* const map = dynamic_cast<TNuDOMAttrList*>(&list)) {
        return new AttributeMapFace(*map);
    }
    return new NodeListFace(list);
}

Face* makeFace(TNuDOMImplementation& implementation) {
    return new ImplementationFace(implementation);
}

} // namespace nu
