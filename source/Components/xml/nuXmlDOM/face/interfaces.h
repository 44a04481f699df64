#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/dom/document.h"
#include "host/dom/extensions.h"
#include "host/runtime/dateTime.h"
#include "host/runtime/stream.h"
#include "host/runtime/variant.h"
#include "nuXmlDOM/core/domObject.h"
#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/core/selectOptions.h"

/// \file
/// The interfaces of this library's own: what its nodes and documents offer beyond the interfaces
/// of the host. Ask any interface of an object for them. They keep the rules of host/dom/node.h,
/// and the operations do what the operations of the same name of the class do, where each is
/// described in full.

class INuDOMElement;

/// The way from an interface back to the object. Every object of the tree has it.
class NUXML_API INuDomObject : public host::IUnknown {
public:
    using Base = host::IUnknown;
    static constexpr host::InterfaceId Id{0x7B1D94E65A0C4F82, 0xA6E3580F2CD70001};

    /// The object behind the interface; never null. It is no reference of its own: it is good as
    /// long as the interface is held.
    virtual TNuDOMObject* AsObject() noexcept = 0;
};

/// What every node offers; see TNuDOMNode.
class NUXML_API INuDOMNode : public host::IDOMNodeEx {
public:
    using Base = host::IDOMNodeEx;
    static constexpr host::InterfaceId Id{0x7B1D94E65A0C4F82, 0xA6E3580F2CD70002};

    /// Names a node that has no name yet.
    virtual host::ResultCode set_nodeName(std::u16string_view name) noexcept = 0;
    /// The parent as this interface; none for a node outside of the tree.
    virtual host::ResultCode get_parentNodeEx(host::Ref<INuDOMNode>& parent) noexcept = 0;
    /// The names from the document element down to the node: "/library/book".
    virtual host::ResultCode NodePath(bool localNamesOnly, std::u16string& path) noexcept = 0;

    /// The node as XML with line breaks and indentation.
    virtual host::ResultCode get_formattedXml(std::u16string& xml) noexcept = 0;
    /// The child elements as XML, one behind the other.
    virtual host::ResultCode get_innerxml(std::u16string& xml) noexcept = 0;
    /// The same as get_innerxml with line breaks and indentation.
    virtual host::ResultCode get_formattedInnerXml(std::u16string& xml) noexcept = 0;
    /// Puts what the text holds in the place of the children.
    virtual host::ResultCode set_innerxml(std::u16string_view xml) noexcept = 0;

    /// The only node at the path; none when there is none, or more than one.
    virtual host::ResultCode selectNode(std::u16string_view path, TNuDOMSelectOptions options,
                                        host::Ref<host::IDOMNode>& node) noexcept = 0;
    /// The nodes at the path as a list that does not follow the changes of the tree.
    virtual host::ResultCode selectNodes(std::u16string_view path, TNuDOMSelectOptions options,
                                         host::Ref<host::IDOMNodeList>& nodes) noexcept = 0;

    /// Writes the node as XML to a stream of the caller's, from its position on: UTF-16, but a
    /// document in the encoding that it declares.
    virtual host::ResultCode SaveToStream(host::TStream& stream) noexcept = 0;
};

/// An attribute; see TNuDOMAttribute.
class NUXML_API INuDOMAttribute : public INuDOMNode {
public:
    using Base = INuDOMNode;
    static constexpr host::InterfaceId Id{0x7B1D94E65A0C4F82, 0xA6E3580F2CD70003};

    /// Whether the attribute declares a namespace.
    virtual host::ResultCode get_IsNamespace(bool& isNamespace) noexcept = 0;
};

/// An element; see TNuDOMElement. What is looked for by name and not there is made, or is a
/// failure, or is an empty handle, as the options say.
class NUXML_API INuDOMElement : public INuDOMNode {
public:
    using Base = INuDOMNode;
    static constexpr host::InterfaceId Id{0x7B1D94E65A0C4F82, 0xA6E3580F2CD70004};

    /// The first declaration of the namespace on this element or, when `recursive`, on the nearest
    /// element around it.
    virtual host::ResultCode FindNamespace(std::u16string_view uri, bool recursive,
                                           host::Ref<INuDOMAttribute>& declaration) noexcept = 0;
    /// The same for the declaration of that prefix; "" is the default namespace.
    virtual host::ResultCode FindNamespace(std::u16string_view uri, std::u16string_view prefix,
                                           bool recursive,
                                           host::Ref<INuDOMAttribute>& declaration) noexcept = 0;

    /// The attribute of that qualified name.
    virtual host::ResultCode AttribNodeByName(std::u16string_view name, TNuDOMSelectOptions options,
                                              host::Ref<INuDOMAttribute>& attribute) noexcept = 0;
    /// The value of the attribute of that qualified name; "" where there is none.
    virtual host::ResultCode AttributeByName(std::u16string_view name, TNuDOMSelectOptions options,
                                             std::u16string& value) noexcept = 0;
    /// The same by local name and namespace.
    virtual host::ResultCode AttributeByName(std::u16string_view localName,
                                             std::u16string_view namespaceURI,
                                             TNuDOMSelectOptions options,
                                             std::u16string& value) noexcept = 0;

    /// \name Making children
    /// Right below this element: behind all others, or at a position, for which `reference` may
    /// have to name one of them.
    /// @{

    /// A new element behind the other children.
    virtual host::ResultCode AddElement(std::u16string_view name,
                                        host::Ref<INuDOMElement>& element) noexcept = 0;
    /// The same; the URI is only noted on the element and not declared.
    virtual host::ResultCode AddElement(std::u16string_view name, std::u16string_view namespaceURI,
                                        host::Ref<INuDOMElement>& element) noexcept = 0;
    /// A new element at a position.
    virtual host::ResultCode InsertElement(std::u16string_view name, TNuDOMPosition position,
                                           host::IDOMNode* reference,
                                           host::Ref<INuDOMElement>& element) noexcept = 0;
    /// The same; the URI is only noted on the element and not declared.
    virtual host::ResultCode InsertElement(std::u16string_view name,
                                           std::u16string_view namespaceURI,
                                           TNuDOMPosition position, host::IDOMNode* reference,
                                           host::Ref<INuDOMElement>& element) noexcept = 0;
    /// A comment behind the other children; fails for what TNuDOMComment::set_nodeValue refuses.
    virtual host::ResultCode AddComment(std::u16string_view text,
                                        host::Ref<host::IDOMComment>& comment) noexcept = 0;
    /// A comment at a position.
    virtual host::ResultCode InsertComment(std::u16string_view text, TNuDOMPosition position,
                                           host::IDOMNode* reference,
                                           host::Ref<host::IDOMComment>& comment) noexcept = 0;
    /// A CDATA section behind the other children; fails for what TNuDOMCDATA::set_nodeValue
    /// refuses.
    virtual host::ResultCode AddCDATA(std::u16string_view text,
                                      host::Ref<host::IDOMCDATASection>& section) noexcept = 0;
    /// A CDATA section at a position.
    virtual host::ResultCode InsertCDATA(std::u16string_view text, TNuDOMPosition position,
                                         host::IDOMNode* reference,
                                         host::Ref<host::IDOMCDATASection>& section) noexcept = 0;
    /// @}

    /// \name Finding and removing
    /// @{

    /// The first child element of that qualified name.
    virtual host::ResultCode GetChildElement(std::u16string_view name, TNuDOMSelectOptions options,
                                             host::Ref<INuDOMElement>& element) noexcept = 0;
    /// The first child element of that local name and namespace.
    virtual host::ResultCode GetChildElement(std::u16string_view name,
                                             std::u16string_view namespaceURI,
                                             TNuDOMSelectOptions options,
                                             host::Ref<INuDOMElement>& element) noexcept = 0;
    /// The only element at the path, without regard to letter case and namespace; fails without.
    virtual host::ResultCode GetChildElementEx(std::u16string_view path,
                                               host::Ref<INuDOMElement>& element) noexcept = 0;
    /// The only element at the path; fails when there are more.
    virtual host::ResultCode SelectSingleElement(std::u16string_view path,
                                                 TNuDOMSelectOptions options,
                                                 host::Ref<INuDOMElement>& element) noexcept = 0;
    /// Takes the first child element of that name out of the tree and gives it back.
    virtual host::ResultCode RemoveElement(std::u16string_view name,
                                           host::Ref<INuDOMElement>& removed) noexcept = 0;
    /// The same by local name and namespace.
    virtual host::ResultCode RemoveElement(std::u16string_view name,
                                           std::u16string_view namespaceURI,
                                           host::Ref<INuDOMElement>& removed) noexcept = 0;
    /// Takes the element out of the tree, whatever its parent is.
    virtual host::ResultCode RemoveElement(INuDOMElement* element,
                                           host::Ref<INuDOMElement>& removed) noexcept = 0;
    /// The first child that is an element; none when there is none.
    virtual host::ResultCode FirstChildElement(host::Ref<INuDOMElement>& element) noexcept = 0;
    /// Fails when the parent is the document.
    virtual host::ResultCode GetParentElement(host::Ref<INuDOMElement>& parent) noexcept = 0;
    /// The position among the child elements of the parent; 0 when that is no element.
    virtual host::ResultCode get_index(host::DOMLength& index) noexcept = 0;
    /// The child elements as a list that follows the changes of the tree.
    virtual host::ResultCode
    get_childElements(host::Ref<host::IDOMNodeList>& elements) noexcept = 0;
    /// @}

    /// The CDATA sections right below the element, joined.
    virtual host::ResultCode GetCDATA(std::u16string& text) noexcept = 0;
    /// Whether xml:space, here or further up, says "preserve" for this element.
    virtual host::ResultCode GetPreserveSpace(bool& preserve) noexcept = 0;
    /// Writes the attribute xml:space: "preserve" or "default".
    virtual host::ResultCode SetPreseveSpace(bool preserve) noexcept = 0;

    /// \name Typed values
    /// @{

    /// The text as a value of the type that the type attribute names. Fails for an unknown type and
    /// for text that is no such value.
    virtual host::ResultCode GetVarValue(host::Variant& value) noexcept = 0;
    /// Writes a value with its type; null and empty as nil.
    virtual host::ResultCode SetVarValue(const host::Variant& value) noexcept = 0;
    /// The value of the only element at the path.
    virtual host::ResultCode GetValueEx(std::u16string_view path,
                                        host::Variant& value) noexcept = 0;
    /// The texts and CDATA sections right below the element, joined.
    virtual host::ResultCode GetAsString(std::u16string& value) noexcept = 0;
    /// Replaces the text; "string" is the type that is named.
    virtual host::ResultCode SetAsString(std::u16string_view value) noexcept = 0;
    /// The text as a number; 0 where it is none.
    virtual host::ResultCode GetAsInteger(std::int32_t& value) noexcept = 0;
    /// Decimal digits.
    virtual host::ResultCode SetAsInteger(std::int32_t value) noexcept = 0;
    /// The text as a number of 64 bits; 0 where it is none.
    virtual host::ResultCode GetAsInt64(std::int64_t& value) noexcept = 0;
    /// Decimal digits, of 64 bits.
    virtual host::ResultCode SetAsInt64(std::int64_t value) noexcept = 0;
    /// The text as a boolean; fails where it is none.
    virtual host::ResultCode GetAsBoolean(bool& value) noexcept = 0;
    /// Writes "true" or "false".
    virtual host::ResultCode SetAsBoolean(bool value) noexcept = 0;
    /// The text as a number with decimals; 0 where it is none.
    virtual host::ResultCode GetAsDouble(double& value) noexcept = 0;
    /// The fewest digits that lead back to the same number.
    virtual host::ResultCode SetAsDouble(double value) noexcept = 0;
    /// The text as a moment of local time; 0 where it is none.
    virtual host::ResultCode GetAsDateTime(host::TDateTime& value) noexcept = 0;
    /// Writes local time without a zone.
    virtual host::ResultCode SetAsDateTime(host::TDateTime value) noexcept = 0;
    /// @}
};

/// A document; see TNuDOMDocument.
class NUXML_API INuDOMDocument : public INuDOMNode {
public:
    using Base = INuDOMNode;
    static constexpr host::InterfaceId Id{0x7B1D94E65A0C4F82, 0xA6E3580F2CD70005};

    /// The document element; none in an empty document.
    virtual host::ResultCode get_rootNode(host::Ref<INuDOMElement>& element) noexcept = 0;
    /// Makes the document element; fails when there is one.
    virtual host::ResultCode CreateRootNode(std::u16string_view name,
                                            host::Ref<INuDOMElement>& element) noexcept = 0;
    /// The same; the URI is only noted on the element and not declared.
    virtual host::ResultCode CreateRootNode(std::u16string_view name,
                                            std::u16string_view namespaceURI,
                                            host::Ref<INuDOMElement>& element) noexcept = 0;
    /// Takes everything out of the document.
    virtual host::ResultCode Clear() noexcept = 0;
    /// The only element at the path; fails when there are more.
    virtual host::ResultCode SelectSingleElement(std::u16string_view path,
                                                 TNuDOMSelectOptions options,
                                                 host::Ref<INuDOMElement>& element) noexcept = 0;

    /// The data of the first instruction of that target right below the document.
    virtual host::ResultCode GetProcessingInstruction(std::u16string_view target,
                                                      std::u16string& data) noexcept = 0;
    /// Sets the data of that instruction; makes it when there is none.
    virtual host::ResultCode SetProcessingInstruction(std::u16string_view target,
                                                      std::u16string_view data) noexcept = 0;
    /// The same as SetProcessingInstruction.
    virtual host::ResultCode AddProcessingInstruction(std::u16string_view target,
                                                      std::u16string_view data) noexcept = 0;

    /// Loads from a file; a file that is not there or cannot be read is a failure.
    virtual host::ResultCode LoadFromFile(std::u16string_view fileName,
                                          bool& isLoaded) noexcept = 0;
    /// Loads from a stream of the caller's, from its position on.
    virtual host::ResultCode LoadFromStream(host::TStream& stream, bool& isLoaded) noexcept = 0;
    /// The encoding that the XML declaration names, in lower case.
    virtual host::ResultCode GetEncoding(std::u16string& encoding) noexcept = 0;
    using INuDOMNode::SaveToStream;
    /// The same, with the form named: with line breaks and indentation, and with a byte-order mark
    /// in front.
    virtual host::ResultCode SaveToStream(host::TStream& stream, bool formatted,
                                          bool writeByteOrderMark) noexcept = 0;
    /// Writes the document to the file of that name, in place of what was there.
    virtual host::ResultCode SaveToFile(std::u16string_view fileName, bool formatted) noexcept = 0;
};
