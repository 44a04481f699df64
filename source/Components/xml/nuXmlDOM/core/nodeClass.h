#pragma once

#include <string_view>

#include "host/dom/node.h"
#include "host/runtime/export.h"

class TNuDOMDocument;
class TNuDOMNode;

/// A class of nodes as a value: what messages call it, and how a node of it is made. Each class of
/// nodes has one as its static member Class, and its type as the constant Type.
struct TNuDOMNodeClass {
    /// The name of the class: "TNuDOMElement".
    std::u16string_view name;
    /// What get_nodeType of its nodes gives.
    host::DOMNodeType type;
    /// Makes a node outside of the tree, in the memory of the document; throws
    /// host::EAssertionFailed without a document. For the class of documents it throws
    /// ENuDomNotSupported: a document makes itself.
    TNuDOMNode* (*create)(TNuDOMDocument* document);
};
