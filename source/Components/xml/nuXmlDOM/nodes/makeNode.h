#pragma once

#include "host/runtime/exception.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domMessages.h"
#include "nuXmlDOM/core/elementLinks.h"
#include "nuXmlDOM/upkeep/documentParts.h"
#include "nuXmlDOM/upkeep/nodeMemory.h"

/// \file
/// For the files that define a class of nodes.

namespace nu {

/// What TNuDOMNodeClass::create is for a class of nodes.
template <class Node> TNuDOMNode* createNode(TNuDOMDocument* document) {
    if (document == nullptr) {
        host::failAssertion(messages::ownerRequired, messages::domLocation, __LINE__);
    }
    return &NodeMemory::make<Node>(*document, document->parts().names.nameless());
}

} // namespace nu
