#pragma once

#include "host/dom/characterData.h"
#include "host/dom/element.h"
#include "host/dom/node.h"

/// \file
/// Documents, which make nodes, and the implementation, which makes documents.

namespace host {

class IDOMImplementation;

/// Nodes without a document of their own that are moved together.
class NUXML_API IDOMDocumentFragment : public IDOMNode {
public:
    using Base = IDOMNode;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50031};
};

/// A reference to an entity that stays in the tree unexpanded.
class NUXML_API IDOMEntityReference : public IDOMNode {
public:
    using Base = IDOMNode;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50032};
};

/// The document type declaration.
class NUXML_API IDOMDocumentType : public IDOMNode {
public:
    using Base = IDOMNode;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50033};

    /// The name behind "<!DOCTYPE", which is that of the document element.
    virtual ResultCode get_name(std::u16string& name) noexcept = 0;
    /// The general entities by name, those of the internal subset first.
    virtual ResultCode get_entities(Ref<IDOMNamedNodeMap>& entities) noexcept = 0;
    /// The notations by name.
    virtual ResultCode get_notations(Ref<IDOMNamedNodeMap>& notations) noexcept = 0;
    /// The public identifier of the external subset; "" without one.
    virtual ResultCode get_publicId(std::u16string& publicId) noexcept = 0;
    /// The system identifier of the external subset; "" without one.
    virtual ResultCode get_systemId(std::u16string& systemId) noexcept = 0;
    /// What stands between the brackets of the declaration.
    virtual ResultCode get_internalSubset(std::u16string& internalSubset) noexcept = 0;
};

/// A document: the root of its tree and the maker of its nodes. What it makes stands outside the
/// tree until it is linked.
class NUXML_API IDOMDocument : public IDOMNode {
public:
    using Base = IDOMNode;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50034};

    /// The document type declaration; none in a document without one.
    virtual ResultCode get_doctype(Ref<IDOMDocumentType>& doctype) noexcept = 0;
    /// The implementation that made the document.
    virtual ResultCode get_domImplementation(Ref<IDOMImplementation>& implementation) noexcept = 0;
    /// The element that all others are below; none in an empty document.
    virtual ResultCode get_documentElement(Ref<IDOMElement>& element) noexcept = 0;
    /// Sets the document element of a document that has none; fails where there is one.
    virtual ResultCode set_documentElement(IDOMElement* element) noexcept = 0;

    /// An element of that qualified name without attributes. Fails for what is no name.
    virtual ResultCode createElement(std::u16string_view tagName,
                                     Ref<IDOMElement>& element) noexcept = 0;
    /// The same in a namespace; the prefix is part of the name.
    virtual ResultCode createElementNS(std::u16string_view namespaceURI,
                                       std::u16string_view qualifiedName,
                                       Ref<IDOMElement>& element) noexcept = 0;
    /// An attribute of that qualified name without a value. IDOMElement::setAttributeNode puts it
    /// on an element.
    virtual ResultCode createAttribute(std::u16string_view name,
                                       Ref<IDOMAttr>& attribute) noexcept = 0;
    /// The same in a namespace; the prefix is part of the name.
    virtual ResultCode createAttributeNS(std::u16string_view namespaceURI,
                                         std::u16string_view qualifiedName,
                                         Ref<IDOMAttr>& attribute) noexcept = 0;
    /// A text; `data` is what is meant and is escaped where it is written.
    virtual ResultCode createTextNode(std::u16string_view data, Ref<IDOMText>& text) noexcept = 0;
    /// A comment; fails for "--" in it.
    virtual ResultCode createComment(std::u16string_view data,
                                     Ref<IDOMComment>& comment) noexcept = 0;
    /// A CDATA section; fails for "]]>" in it.
    virtual ResultCode createCDATASection(std::u16string_view data,
                                          Ref<IDOMCDATASection>& section) noexcept = 0;
    /// A processing instruction with that target.
    virtual ResultCode
    createProcessingInstruction(std::u16string_view target, std::u16string_view data,
                                Ref<IDOMProcessingInstruction>& instruction) noexcept = 0;
    /// An empty fragment; putting it somewhere puts its children there.
    virtual ResultCode createDocumentFragment(Ref<IDOMDocumentFragment>& fragment) noexcept = 0;
    /// A reference that stays one in the tree; the name is without "&" and ";".
    virtual ResultCode createEntityReference(std::u16string_view name,
                                             Ref<IDOMEntityReference>& reference) noexcept = 0;
    /// A copy, for this document, of a node of another one; with everything below it when `deep`.
    virtual ResultCode importNode(IDOMNode* node, bool deep, Ref<IDOMNode>& imported) noexcept = 0;

    /// The elements of the document with that name, at any depth; "*" stands for every name.
    virtual ResultCode getElementsByTagName(std::u16string_view name,
                                            Ref<IDOMNodeList>& elements) noexcept = 0;
    /// The same by namespace and local name; "*" stands for every one of either.
    virtual ResultCode getElementsByTagNameNS(std::u16string_view namespaceURI,
                                              std::u16string_view localName,
                                              Ref<IDOMNodeList>& elements) noexcept = 0;
    /// The element that is identified by `id`.
    virtual ResultCode getElementById(std::u16string_view id,
                                      Ref<IDOMElement>& element) noexcept = 0;
};

/// What does not depend on a document: features, and new documents.
class NUXML_API IDOMImplementation : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50035};

    /// Whether the implementation has a feature ("XML") in a version ("1.0", "2.0").
    virtual ResultCode hasFeature(std::u16string_view feature, std::u16string_view version,
                                  bool& hasIt) noexcept = 0;
    /// A document type without entities and notations, for createDocument.
    virtual ResultCode createDocumentType(std::u16string_view qualifiedName,
                                          std::u16string_view publicId,
                                          std::u16string_view systemId,
                                          Ref<IDOMDocumentType>& doctype) noexcept = 0;
    /// A new document with its document element. `doctype` may be null.
    virtual ResultCode createDocument(std::u16string_view namespaceURI,
                                      std::u16string_view qualifiedName, IDOMDocumentType* doctype,
                                      Ref<IDOMDocument>& document) noexcept = 0;
};

} // namespace host
