#pragma once

#include "host/dom/node.h"

/// \file
/// Elements and their attributes.

namespace host {

class IDOMElement;

/// An attribute. It is no child of its element, so it has no siblings.
class NUXML_API IDOMAttr : public IDOMNode {
public:
    using Base = IDOMNode;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50021};

    /// The qualified name.
    virtual ResultCode get_name(std::u16string& name) noexcept = 0;
    /// Whether the attribute was written in the document rather than taken from a default value.
    virtual ResultCode get_specified(bool& isSpecified) noexcept = 0;
    /// The value as it is meant, references resolved.
    virtual ResultCode get_value(std::u16string& value) noexcept = 0;
    /// Replaces the value; what has to be escaped is escaped where it is written.
    virtual ResultCode set_value(std::u16string_view value) noexcept = 0;
    /// The element that has the attribute; none for an attribute that is not in use.
    virtual ResultCode get_ownerElement(Ref<IDOMElement>& element) noexcept = 0;
};

/// An element: its name, its attributes, and the search below it.
class NUXML_API IDOMElement : public IDOMNode {
public:
    using Base = IDOMNode;
    static constexpr InterfaceId Id{0x2C85A6E1F7094D3B, 0x93D14B7A60E50022};

    /// The qualified name of the element, prefix included.
    virtual ResultCode get_tagName(std::u16string& name) noexcept = 0;

    /// The value of an attribute.
    virtual ResultCode getAttribute(std::u16string_view name, std::u16string& value) noexcept = 0;
    /// Sets the value of an attribute, which is made when there is none.
    virtual ResultCode setAttribute(std::u16string_view name,
                                    std::u16string_view value) noexcept = 0;
    /// Takes an attribute out; one that is not there is no failure.
    virtual ResultCode removeAttribute(std::u16string_view name) noexcept = 0;
    /// Whether there is an attribute of that qualified name.
    virtual ResultCode hasAttribute(std::u16string_view name, bool& isThere) noexcept = 0;

    /// The attribute as a node; none where there is none.
    virtual ResultCode getAttributeNode(std::u16string_view name,
                                        Ref<IDOMAttr>& attribute) noexcept = 0;
    /// Adds an attribute; one that had its name before leaves and is given back.
    virtual ResultCode setAttributeNode(IDOMAttr* attribute, Ref<IDOMAttr>& replaced) noexcept = 0;
    /// Takes an attribute out and gives it back.
    virtual ResultCode removeAttributeNode(IDOMAttr* attribute,
                                           Ref<IDOMAttr>& removed) noexcept = 0;

    /// The value by namespace and local name.
    virtual ResultCode getAttributeNS(std::u16string_view namespaceURI,
                                      std::u16string_view localName,
                                      std::u16string& value) noexcept = 0;
    /// Sets the value of the attribute of that namespace, which is made under the qualified name
    /// when there is none.
    virtual ResultCode setAttributeNS(std::u16string_view namespaceURI,
                                      std::u16string_view qualifiedName,
                                      std::u16string_view value) noexcept = 0;
    /// Takes an attribute out by namespace and local name.
    virtual ResultCode removeAttributeNS(std::u16string_view namespaceURI,
                                         std::u16string_view localName) noexcept = 0;
    /// Whether there is an attribute of that namespace and local name.
    virtual ResultCode hasAttributeNS(std::u16string_view namespaceURI,
                                      std::u16string_view localName, bool& isThere) noexcept = 0;
    /// The attribute as a node, by namespace and local name; none where there is none.
    virtual ResultCode getAttributeNodeNS(std::u16string_view namespaceURI,
                                          std::u16string_view localName,
                                          Ref<IDOMAttr>& attribute) noexcept = 0;
    /// Adds an attribute; one that had its namespace and local name before leaves and is given
    /// back.
    virtual ResultCode setAttributeNodeNS(IDOMAttr* attribute,
                                          Ref<IDOMAttr>& replaced) noexcept = 0;

    /// The elements with that name below this one, at any depth; "*" stands for every name.
    virtual ResultCode getElementsByTagName(std::u16string_view name,
                                            Ref<IDOMNodeList>& elements) noexcept = 0;
    /// The same by namespace and local name; "*" stands for every one of either.
    virtual ResultCode getElementsByTagNameNS(std::u16string_view namespaceURI,
                                              std::u16string_view localName,
                                              Ref<IDOMNodeList>& elements) noexcept = 0;
};

} // namespace host
