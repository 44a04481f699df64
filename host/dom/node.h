#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/com/ref.h"
#include "host/com/unknown.h"
#include "host/runtime/export.h"

/// \file
/// Nodes and lists of the W3C Document Object Model (DOM) Level 2 Core.
///
/// All interfaces of the model keep the same rules:
/// - An operation does not throw. It gives a host::ResultCode, below 0 for a failure, whose
///   description is then the error information of the thread (host/com/errorInfo.h).
///   host::checkResult turns such a code back into an exception.
/// - A result comes through the last parameter, which is cleared before any work and stays so after
///   a failure: an empty text, false, 0 or an empty handle. A handle may be the one that the call
///   is made through (`node->get_parentNode(node)`); a text must be no other parameter's.
/// - What is looked for and not there is an empty handle or text and no failure.
/// - A node that is passed in stays the caller's; it is a raw pointer that may be null where an
///   operation says so. A node that comes out is a counted handle.
/// - Text is UTF-16. Lengths, offsets and counts are in UTF-16 code units, and indexes count from
/// 0.
/// - Names with the ending NS take a namespace URI and a local name, or a qualified name where
///   something is made. The other names are qualified names.

namespace host {

/// A length, a count or an index.
using DOMLength = std::ptrdiff_t;

/// The kind of a node, with the numbers of the standard.
enum DOMNodeType : std::uint16_t {
    ELEMENT_NODE = 1,
    ATTRIBUTE_NODE = 2,
    TEXT_NODE = 3,
    CDATA_SECTION_NODE = 4,
    ENTITY_REFERENCE_NODE = 5,
    ENTITY_NODE = 6,
    PROCESSING_INSTRUCTION_NODE = 7,
    COMMENT_NODE = 8,
    DOCUMENT_NODE = 9,
    DOCUMENT_TYPE_NODE = 10,
    DOCUMENT_FRAGMENT_NODE = 11,
    NOTATION_NODE = 12,
};

class IDOMDocument;
class IDOMNamedNodeMap;
class IDOMNodeList;

/// A node of a document: what all kinds of nodes have in common.
class NUXML_API IDOMNode : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50001};

    /// The name, which depends on the kind: tag name, attribute name, target, or a fixed name such
    /// as "#text".
    virtual ResultCode get_nodeName(std::u16string& name) noexcept = 0;
    /// The value, which depends on the kind: the text of character data, the value of an attribute,
    /// the data of an instruction.
    virtual ResultCode get_nodeValue(std::u16string& value) noexcept = 0;
    /// Replaces the value; fails for kinds that have none.
    virtual ResultCode set_nodeValue(std::u16string_view value) noexcept = 0;
    /// The kind, which never changes.
    virtual ResultCode get_nodeType(DOMNodeType& type) noexcept = 0;

    /// The node that has this one as a child; none for a node outside the tree.
    virtual ResultCode get_parentNode(Ref<IDOMNode>& parent) noexcept = 0;
    /// The children as a list that follows the changes of the tree.
    virtual ResultCode get_childNodes(Ref<IDOMNodeList>& children) noexcept = 0;
    /// The first child of any kind; none without children.
    virtual ResultCode get_firstChild(Ref<IDOMNode>& child) noexcept = 0;
    /// The last child of any kind; none without children.
    virtual ResultCode get_lastChild(Ref<IDOMNode>& child) noexcept = 0;
    /// The node right before this one below the same parent.
    virtual ResultCode get_previousSibling(Ref<IDOMNode>& sibling) noexcept = 0;
    /// The node right behind this one below the same parent.
    virtual ResultCode get_nextSibling(Ref<IDOMNode>& sibling) noexcept = 0;
    /// The attributes of an element.
    virtual ResultCode get_attributes(Ref<IDOMNamedNodeMap>& attributes) noexcept = 0;
    /// The document that made the node.
    virtual ResultCode get_ownerDocument(Ref<IDOMDocument>& document) noexcept = 0;

    /// The namespace that the node is in; "" for none, and for kinds without namespaces.
    virtual ResultCode get_namespaceURI(std::u16string& namespaceURI) noexcept = 0;
    /// The part of the qualified name before the colon.
    virtual ResultCode get_prefix(std::u16string& prefix) noexcept = 0;
    /// Changes the part of the name before the colon; "" takes it away. Fails for what is no name.
    virtual ResultCode set_prefix(std::u16string_view prefix) noexcept = 0;
    /// The part of the qualified name behind the colon, or all of it when there is none.
    virtual ResultCode get_localName(std::u16string& localName) noexcept = 0;

    /// Puts `child` before `reference`, one of the children; takes it out of its old place first.
    virtual ResultCode insertBefore(IDOMNode* child, IDOMNode* reference,
                                    Ref<IDOMNode>& inserted) noexcept = 0;
    /// Puts `child` in the place of `former`, one of the children, which is given back.
    virtual ResultCode replaceChild(IDOMNode* child, IDOMNode* former,
                                    Ref<IDOMNode>& replaced) noexcept = 0;
    /// Takes one of the children out of the tree and gives it back.
    virtual ResultCode removeChild(IDOMNode* child, Ref<IDOMNode>& removed) noexcept = 0;
    /// Puts `child` behind the last child; takes it out of its old place first.
    virtual ResultCode appendChild(IDOMNode* child, Ref<IDOMNode>& appended) noexcept = 0;
    /// Whether the node has a child of any kind; attributes are none.
    virtual ResultCode hasChildNodes(bool& hasChildren) noexcept = 0;

    /// A copy without a parent; with everything below the node when `deep`.
    virtual ResultCode cloneNode(bool deep, Ref<IDOMNode>& clone) noexcept = 0;
    /// Joins neighbouring texts below the node and takes empty ones out.
    virtual ResultCode normalize() noexcept = 0;
    /// Whether the implementation has a feature ("XML") in a version ("1.0", "2.0") for this node.
    virtual ResultCode supports(std::u16string_view feature, std::u16string_view version,
                                bool& isSupported) noexcept = 0;
};

/// Nodes in order.
class NUXML_API IDOMNodeList : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50002};

    /// The node at that index; an index outside of the list is a failure.
    virtual ResultCode get_item(DOMLength index, Ref<IDOMNode>& node) noexcept = 0;
    /// How many nodes there are now; a list that follows the tree changes with it.
    virtual ResultCode get_length(DOMLength& length) noexcept = 0;
};

/// Nodes that are found by name; the order in which they are numbered means nothing.
class NUXML_API IDOMNamedNodeMap : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50003};

    /// The node at that index; an index outside of the map is a failure.
    virtual ResultCode get_item(DOMLength index, Ref<IDOMNode>& node) noexcept = 0;
    /// How many nodes there are now.
    virtual ResultCode get_length(DOMLength& length) noexcept = 0;

    /// The node of that qualified name.
    virtual ResultCode getNamedItem(std::u16string_view name, Ref<IDOMNode>& node) noexcept = 0;
    /// Enters a node under its name; a node that had this name before leaves and is given back.
    virtual ResultCode setNamedItem(IDOMNode* node, Ref<IDOMNode>& replaced) noexcept = 0;
    /// Takes a node out and gives it back.
    virtual ResultCode removeNamedItem(std::u16string_view name,
                                       Ref<IDOMNode>& removed) noexcept = 0;

    /// The node of that namespace and local name.
    virtual ResultCode getNamedItemNS(std::u16string_view namespaceURI,
                                      std::u16string_view localName,
                                      Ref<IDOMNode>& node) noexcept = 0;
    /// The same under namespace and local name.
    virtual ResultCode setNamedItemNS(IDOMNode* node, Ref<IDOMNode>& replaced) noexcept = 0;
    /// Takes a node out by namespace and local name and gives it back.
    virtual ResultCode removeNamedItemNS(std::u16string_view namespaceURI,
                                         std::u16string_view localName,
                                         Ref<IDOMNode>& removed) noexcept = 0;
};

} // namespace host
