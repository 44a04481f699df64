#pragma once

#include <cstddef>
#include <string_view>

#include "host/runtime/dateTime.h"
#include "host/runtime/variant.h"
#include "nuXmlDOM/core/attribute.h"
#include "nuXmlDOM/core/attributeChain.h"
#include "nuXmlDOM/core/cdata.h"
#include "nuXmlDOM/core/comment.h"
#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/core/nodeChain.h"
#include "nuXmlDOM/core/nodeList.h"
#include "nuXmlDOM/core/nodeRange.h"

/// \file
/// The element.

/// An element: the only kind of node with attributes, and with children of all kinds.
///
/// Lookups by name take the first match in order. Their options (TNuDOMSelectOptions) say whether
/// letter case and prefix count and what happens when nothing matches; without soCreate and soRaise
/// the result is then null.
class NUXML_API TNuDOMElement final : public TNuDOMChildNode {
public:
    /// What stands for this kind of node in _CreateNode; its name is what messages call an element.
    static const TNuDOMNodeClass Class;
    /// The kind as a constant, for templates over kinds of nodes.
    static constexpr host::DOMNodeType Type = host::ELEMENT_NODE;

    /// \name Names and namespaces
    /// @{

    /// The qualified name, prefix included.
    [[nodiscard]] NuXmlString get_tagName() const { return get_nodeName(); }
    [[nodiscard]] NuXmlString get_namespaceURI() const override;
    /// The first declaration of the namespace `uri` on this element or, when `recursive`, on the
    /// nearest element around it; null when there is none.
    [[nodiscard]] TNuDOMAttribute* FindNamespace(std::u16string_view uri, bool recursive);
    /// The same in UTF-8.
    [[nodiscard]] TNuDOMAttribute* FindNamespace(const TNuUtf8Text& uri, bool recursive) {
        return FindNamespace(uri.view(), recursive);
    }
    /// The same on a constant element.
    [[nodiscard]] const TNuDOMAttribute* FindNamespace(std::u16string_view uri,
                                                       bool recursive) const {
        return const_cast<TNuDOMElement&>(*this).FindNamespace(uri, recursive);
    }
    /// The same for the declaration of that prefix; "" is the default namespace.
    [[nodiscard]] TNuDOMAttribute* FindNamespace(std::u16string_view uri,
                                                 std::u16string_view prefix, bool recursive);
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMAttribute*
    FindNamespace(std::u16string_view uri, std::u16string_view prefix, bool recursive) const {
        return const_cast<TNuDOMElement&>(*this).FindNamespace(uri, prefix, recursive);
    }
    /// The same in UTF-8.
    [[nodiscard]] TNuDOMAttribute* FindNamespace(const TNuUtf8Text& uri, const TNuUtf8Text& prefix,
                                                 bool recursive) {
        return FindNamespace(uri.view(), prefix.view(), recursive);
    }
    /// @}

    /// \name Attributes
    /// soCreate makes the attribute under the name as given; soRaise throws ENuDomNotFound.
    /// @{

    /// The attribute of that qualified name; with soIgnoreNamespace prefixes are not compared.
    TNuDOMAttribute* getAttributeNodeObj(std::u16string_view name,
                                         TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    TNuDOMAttribute* getAttributeNodeObj(const TNuUtf8Text& name,
                                         TNuDOMSelectOptions options = {}) {
        return getAttributeNodeObj(name.view(), options);
    }
    /// By local name and resolved namespace. soIgnoreNamespace changes nothing.
    TNuDOMAttribute* getAttributeNodeObj(std::u16string_view localName,
                                         std::u16string_view namespaceURI,
                                         TNuDOMSelectOptions options);
    /// The same in UTF-8.
    TNuDOMAttribute* getAttributeNodeObj(const TNuUtf8Text& localName,
                                         const TNuUtf8Text& namespaceURI,
                                         TNuDOMSelectOptions options) {
        return getAttributeNodeObj(localName.view(), namespaceURI.view(), options);
    }
    /// As getAttributeNodeObj.
    TNuDOMAttribute* AttribNodeByName(std::u16string_view name, TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    TNuDOMAttribute* AttribNodeByName(const TNuUtf8Text& name, TNuDOMSelectOptions options = {}) {
        return AttribNodeByName(name.view(), options);
    }
    /// The value, "" without the attribute.
    NuXmlString AttributeByName(std::u16string_view name, TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    std::string AttributeByName(const TNuUtf8Text& name, TNuDOMSelectOptions options = {});
    /// The value of the attribute of that local name and resolved namespace, "" without it.
    NuXmlString AttributeByName(std::u16string_view localName, std::u16string_view namespaceURI,
                                TNuDOMSelectOptions options);
    /// The same in UTF-8.
    std::string AttributeByName(const TNuUtf8Text& localName, const TNuUtf8Text& namespaceURI,
                                TNuDOMSelectOptions options) {
        return textOf(getAttributeNodeObj(localName, namespaceURI, options));
    }

    /// The value, references resolved; "" without the attribute, see HasAttribute.
    [[nodiscard]] NuXmlString getAttribute(std::u16string_view name) const;
    /// The same in UTF-8.
    [[nodiscard]] std::string getAttribute(const TNuUtf8Text& name) const;
    /// The attribute of exactly that qualified name; null without it.
    [[nodiscard]] TNuDOMAttribute* getAttributeNode(std::u16string_view name);
    /// The same in UTF-8.
    [[nodiscard]] TNuDOMAttribute* getAttributeNode(const TNuUtf8Text& name) {
        return getAttributeNode(name.view());
    }
    /// The same on a constant element.
    [[nodiscard]] const TNuDOMAttribute* getAttributeNode(std::u16string_view name) const;
    /// The same in UTF-8.
    [[nodiscard]] const TNuDOMAttribute* getAttributeNode(const TNuUtf8Text& name) const {
        return getAttributeNode(name.view());
    }
    /// The value of the attribute of that local name and namespace, "" without it. As in
    /// get_namespaceURI, "" stands for no namespace.
    [[nodiscard]] NuXmlString getAttributeNS(std::u16string_view namespaceURI,
                                             std::u16string_view localName) const;
    /// The same in UTF-8.
    [[nodiscard]] std::string getAttributeNS(const TNuUtf8Text& namespaceURI,
                                             const TNuUtf8Text& localName) const {
        return textOf(getAttributeNodeNS(namespaceURI, localName));
    }
    /// The attribute of that local name and namespace; null without it. Which namespace an
    /// attribute is in the declarations in scope decide, see TNuDOMAttribute::get_namespaceURI.
    [[nodiscard]] TNuDOMAttribute* getAttributeNodeNS(std::u16string_view namespaceURI,
                                                      std::u16string_view localName);
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMAttribute* getAttributeNodeNS(std::u16string_view namespaceURI,
                                                            std::u16string_view localName) const;
    /// The same in UTF-8.
    [[nodiscard]] TNuDOMAttribute* getAttributeNodeNS(const TNuUtf8Text& namespaceURI,
                                                      const TNuUtf8Text& localName) {
        return getAttributeNodeNS(namespaceURI.view(), localName.view());
    }
    /// The same in UTF-8.
    [[nodiscard]] const TNuDOMAttribute* getAttributeNodeNS(const TNuUtf8Text& namespaceURI,
                                                            const TNuUtf8Text& localName) const {
        return getAttributeNodeNS(namespaceURI.view(), localName.view());
    }
    /// Whether there is an attribute of exactly that qualified name.
    [[nodiscard]] bool HasAttribute(std::u16string_view name) const;
    /// The same in UTF-8.
    [[nodiscard]] bool HasAttribute(const TNuUtf8Text& name) const {
        return HasAttribute(name.view());
    }
    /// Whether there is an attribute of that local name and namespace.
    [[nodiscard]] bool HasAttributeNS(std::u16string_view namespaceURI,
                                      std::u16string_view localName) const;
    /// The same in UTF-8.
    [[nodiscard]] bool HasAttributeNS(const TNuUtf8Text& namespaceURI,
                                      const TNuUtf8Text& localName) const {
        return HasAttributeNS(namespaceURI.view(), localName.view());
    }
    /// Sets the value of the attribute of exactly that qualified name, which is made behind the
    /// others where it is missing. Throws for a name as set_nodeName does.
    void setAttribute(std::u16string_view name, std::u16string_view value);
    /// A number, a boolean or a date is written as TNuValue says: `setAttribute("year", 1999)`.
    void setAttribute(const TNuUtf8Text& name, const TNuValue& value) {
        setAttribute(name.view(), value.view());
    }
    /// The same with the name in UTF-16 and a value of another kind.
    template <class Value>
    requires nu::Utf8Text<Value> || nu::TypedValue<Value>
    void setAttribute(std::u16string_view name, const Value& value) {
        setAttribute(name, TNuValue(value).view());
    }
    /// Sets the attribute of that namespace and local name, else the one of that qualified name;
    /// makes it without either.
    void setAttributeNS(std::u16string_view namespaceURI, std::u16string_view qualifiedName,
                        std::u16string_view value);
    /// The same in UTF-8.
    void setAttributeNS(const TNuUtf8Text& namespaceURI, const TNuUtf8Text& qualifiedName,
                        const TNuValue& value) {
        setAttributeNS(namespaceURI.view(), qualifiedName.view(), value.view());
    }
    /// Puts an attribute behind the others.
    /// Deliberate: one of the same name is not replaced; both are there and written.
    void setAttributeNode(TNuDOMAttribute& attribute);
    /// As setAttributeNode: names and namespaces are not compared.
    void setAttributeNodeNS(TNuDOMAttribute& attribute) { setAttributeNode(attribute); }
    /// Takes out the attribute of exactly that qualified name; nothing happens without it.
    void removeAttribute(std::u16string_view name);
    /// The same in UTF-8.
    void removeAttribute(const TNuUtf8Text& name) { removeAttribute(name.view()); }
    /// Takes out the attribute of that local name and namespace; nothing happens without it.
    void removeAttributeNS(std::u16string_view namespaceURI, std::u16string_view localName);
    /// The same in UTF-8.
    void removeAttributeNS(const TNuUtf8Text& namespaceURI, const TNuUtf8Text& localName) {
        removeAttributeNS(namespaceURI.view(), localName.view());
    }
    /// Deliberate: takes away the first attribute of this one's name, even if that is another.
    void removeAttributeNode(const TNuDOMAttribute& attribute);

    /// The attributes, namespace declarations included, as a list that follows the changes of the
    /// element and belongs to it.
    [[nodiscard]] TNuDOMAttrList& get_attributes() override;
    /// The attributes for a range-based for loop; constant ones of a constant element.
    [[nodiscard]] TNuDOMRange<TNuDOMAttribute> Attributes() noexcept {
        return TNuDOMRange<TNuDOMAttribute>(attributes_.first());
    }
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] TNuDOMRange<const TNuDOMAttribute> Attributes() const noexcept {
        return TNuDOMRange<const TNuDOMAttribute>(attributes_.first());
    }
    /// @}

    /// \name Making children
    /// @{

    /// A new element behind the other children. Throws for a name as set_nodeName does, and leaves
    /// the tree as it was then.
    TNuDOMElement& AddElement(std::u16string_view name);
    /// The same in UTF-8.
    TNuDOMElement& AddElement(const TNuUtf8Text& name) { return AddElement(name.view()); }
    /// The same; `namespaceURI` is only noted on the element (GetCreationNamespaceURI). No
    /// declaration is written: that is what setAttribute(u"xmlns", …) is for.
    TNuDOMElement& AddElement(std::u16string_view name, std::u16string_view namespaceURI);
    /// The same in UTF-8.
    TNuDOMElement& AddElement(const TNuUtf8Text& name, const TNuUtf8Text& namespaceURI) {
        return AddElement(name.view(), namespaceURI.view());
    }
    /// A new element at a position; for rdpBefore and rdpAfter `reference` has to be a child, for
    /// the others it is not looked at and may be null. Throws ENuDomException without a reference,
    /// and host::EListError before one that is no child.
    TNuDOMElement& InsertElement(std::u16string_view name, TNuDOMPosition position,
                                 TNuDOMNode* reference);
    /// The same in UTF-8.
    TNuDOMElement& InsertElement(const TNuUtf8Text& name, TNuDOMPosition position,
                                 TNuDOMNode* reference) {
        return InsertElement(name.view(), position, reference);
    }
    /// The same; `namespaceURI` is noted as AddElement does.
    TNuDOMElement& InsertElement(std::u16string_view name, std::u16string_view namespaceURI,
                                 TNuDOMPosition position, TNuDOMNode* reference);
    /// The same in UTF-8.
    TNuDOMElement& InsertElement(const TNuUtf8Text& name, const TNuUtf8Text& namespaceURI,
                                 TNuDOMPosition position, TNuDOMNode* reference) {
        return InsertElement(name.view(), namespaceURI.view(), position, reference);
    }
    /// A comment behind the other children. Throws for its text as TNuDOMComment::set_nodeValue
    /// does.
    TNuDOMComment& AddComment(std::u16string_view text);
    /// The same in UTF-8.
    TNuDOMComment& AddComment(const TNuUtf8Text& text) { return AddComment(text.view()); }
    /// A comment at a position, see InsertElement. Throws for its text as
    /// TNuDOMComment::set_nodeValue does.
    TNuDOMComment& InsertComment(std::u16string_view text, TNuDOMPosition position,
                                 TNuDOMNode* reference);
    /// The same in UTF-8.
    TNuDOMComment& InsertComment(const TNuUtf8Text& text, TNuDOMPosition position,
                                 TNuDOMNode* reference) {
        return InsertComment(text.view(), position, reference);
    }
    /// A CDATA section behind the other children. Throws for its text as TNuDOMCDATA::set_nodeValue
    /// does.
    TNuDOMCDATA& AddCDATA(std::u16string_view text);
    /// The same in UTF-8.
    TNuDOMCDATA& AddCDATA(const TNuUtf8Text& text) { return AddCDATA(text.view()); }
    /// A CDATA section at a position, see InsertElement. Throws for its text as
    /// TNuDOMCDATA::set_nodeValue does.
    TNuDOMCDATA& InsertCDATA(std::u16string_view text, TNuDOMPosition position,
                             TNuDOMNode* reference);
    /// The same in UTF-8.
    TNuDOMCDATA& InsertCDATA(const TNuUtf8Text& text, TNuDOMPosition position,
                             TNuDOMNode* reference) {
        return InsertCDATA(text.view(), position, reference);
    }
    /// A text behind the children that are there: for elements that hold texts and elements.
    TNuDOMText& AddText(const TNuText& text);
    /// @}

    /// \name Finding and removing children
    /// soCreate makes the element under the name as given; soRaise throws ENuDomException.
    /// @{

    /// The first child element of that qualified name; with soIgnoreNamespace prefixes are not
    /// compared.
    TNuDOMElement* GetChildElement(std::u16string_view name, TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    TNuDOMElement* GetChildElement(const TNuUtf8Text& name, TNuDOMSelectOptions options = {}) {
        return GetChildElement(name.view(), options);
    }
    /// By local name and resolved namespace.
    /// Deliberate: soCreate adds no declaration. Unless `namespaceURI` is declared in scope for the
    /// name, the new element is in another namespace and is not found again.
    TNuDOMElement* GetChildElement(std::u16string_view name, std::u16string_view namespaceURI,
                                   TNuDOMSelectOptions options);
    /// The same in UTF-8.
    TNuDOMElement* GetChildElement(const TNuUtf8Text& name, const TNuUtf8Text& namespaceURI,
                                   TNuDOMSelectOptions options) {
        return GetChildElement(name.view(), namespaceURI.view(), options);
    }
    /// The only element at `path`, without regard to letter case and namespace. Throws when there
    /// is none, or more than one.
    TNuDOMElement& GetChildElementEx(std::u16string_view path);
    /// The same in UTF-8.
    TNuDOMElement& GetChildElementEx(const TNuUtf8Text& path) {
        return GetChildElementEx(path.view());
    }
    /// The typed value of that element, see GetVarValue.
    host::Variant GetValueEx(std::u16string_view path);
    /// The same in UTF-8.
    host::Variant GetValueEx(const TNuUtf8Text& path) { return GetValueEx(path.view()); }
    /// Takes the first child element of that name out of the tree; an empty handle without one.
    NuRef<TNuDOMElement> RemoveElement(std::u16string_view name);
    /// The same in UTF-8.
    NuRef<TNuDOMElement> RemoveElement(const TNuUtf8Text& name) {
        return RemoveElement(name.view());
    }
    /// The same by local name and resolved namespace.
    NuRef<TNuDOMElement> RemoveElement(std::u16string_view name, std::u16string_view namespaceURI);
    /// The same in UTF-8.
    NuRef<TNuDOMElement> RemoveElement(const TNuUtf8Text& name, const TNuUtf8Text& namespaceURI) {
        return RemoveElement(name.view(), namespaceURI.view());
    }
    /// Takes the element out of the tree, whatever its parent is.
    NuRef<TNuDOMElement> RemoveElement(TNuDOMElement& element);

    /// The first child that is an element; null when there is none.
    [[nodiscard]] TNuDOMElement* FirstChildElement();
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMElement* FirstChildElement() const;
    /// Throws host::EInvalidCast when the parent is the document; null without a parent.
    [[nodiscard]] TNuDOMElement* GetParentElement();
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMElement* GetParentElement() const;
    /// The position among the child elements of the parent; 0 when that is no element.
    [[nodiscard]] std::ptrdiff_t get_index() const;
    /// The child elements as a list that follows the changes of the tree.
    [[nodiscard]] TNuDOMElementList& get_childElements();
    /// The children for a range-based for loop; constant ones of a constant element.
    [[nodiscard]] TNuDOMRange<TNuDOMNode> ChildNodes() noexcept {
        return TNuDOMRange<TNuDOMNode>(children_.first());
    }
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] TNuDOMRange<const TNuDOMNode> ChildNodes() const noexcept {
        return TNuDOMRange<const TNuDOMNode>(children_.first());
    }
    /// The child elements for a range-based for loop, in the order of the document.
    [[nodiscard]] TNuDOMRange<TNuDOMElement> ChildElements() noexcept {
        return TNuDOMRange<TNuDOMElement>(children_.first());
    }
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] TNuDOMRange<const TNuDOMElement> ChildElements() const noexcept {
        return TNuDOMRange<const TNuDOMElement>(children_.first());
    }
    /// Those of that qualified name.
    [[nodiscard]] TNuDOMNamedRange<TNuDOMElement> ChildElements(const TNuText& name) {
        return childElements<TNuDOMElement>(name);
    }
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] TNuDOMNamedRange<const TNuDOMElement> ChildElements(const TNuText& name) const {
        return childElements<const TNuDOMElement>(name);
    }
    /// The elements below this one of that name, in the order of a path "//name"; "*" is any name.
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagName(std::u16string_view name);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagName(const TNuUtf8Text& name) {
        return getElementsByTagName(name.view());
    }
    /// The elements below this one of that local name and resolved namespace.
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagNameNS(std::u16string_view namespaceURI,
                                                                  std::u16string_view localName);
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagNameNS(const TNuUtf8Text& namespaceURI,
                                                                  const TNuUtf8Text& localName) {
        return getElementsByTagNameNS(namespaceURI.view(), localName.view());
    }
    /// @}

    /// \name Text
    /// @{

    /// The texts and CDATA sections right below the element, joined.
    [[nodiscard]] NuXmlString get_nodeValue() const override;
    /// Puts one text in place of all texts and CDATA sections right below the element; none when
    /// `value` is empty.
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;
    /// The same as get_nodeValue.
    [[nodiscard]] NuXmlString get_text() const override { return get_nodeValue(); }
    using TNuDOMNode::set_text;
    /// The same as set_nodeValue.
    void set_text(std::u16string_view text) override { set_nodeValue(text); }
    /// The CDATA sections right below the element, joined.
    [[nodiscard]] NuXmlString GetCDATA() const;
    /// Whether white space is to be kept: the nearest attribute xml:space, here or further up, is
    /// "preserve" in any letter case.
    [[nodiscard]] bool GetPreserveSpace() const;
    /// Writes xml:space="preserve" or "default".
    /// Deliberate: the name lacks an r; applications know it so.
    void SetPreseveSpace(bool preserve);
    /// @}

    /// \name Typed values
    /// The text of the element as a value, with the attributes type and nil of XML Schema instances
    /// where their namespace is declared on the element or around it.
    /// @{

    /// The value of the type that the type attribute names; null when nil is "true" and where
    /// neither a type nor a text is; else the text. Throws ENuDomException for a type that is empty
    /// or unknown, and host::EConvertError for text that is no such value.
    [[nodiscard]] host::Variant GetVarValue() const;
    /// Writes a value with its type; null and empty as nil, beside which an old type stays. Where
    /// the namespace is not declared, text goes without a type and other values have an attribute
    /// "type" without a prefix. Throws host::EConvertError, and changes nothing, for values that
    /// have no text.
    void SetVarValue(const host::Variant& value);
    /// The getters look at the text alone; numbers and dates are 0 for text that is none.
    [[nodiscard]] NuXmlString GetAsString() const;
    /// See NuXMLToInt for what is a number; one out of range is 0, too.
    [[nodiscard]] std::int32_t GetAsInteger() const;
    /// The same in 64 bits.
    [[nodiscard]] std::int64_t GetAsInt64() const;
    /// Throws host::EConvertError for text that is no boolean.
    [[nodiscard]] bool GetAsBoolean() const;
    /// See NuXMLToDouble for what is a number; the locale plays no part.
    [[nodiscard]] double GetAsDouble() const;
    /// A date, a time or both, in local time; see NuXMLToDateTime.
    [[nodiscard]] host::TDateTime GetAsDateTime() const;
    /// The setters name the type where the namespace of XML Schema instances is declared, and set
    /// nothing but the text elsewhere.
    void SetAsString(std::u16string_view value);
    /// The same in UTF-8.
    void SetAsString(const TNuUtf8Text& value) { SetAsString(value.view()); }
    /// Decimal digits.
    void SetAsInteger(std::int32_t value);
    /// Decimal digits, of 64 bits.
    void SetAsInt64(std::int64_t value);
    /// Writes "true" or "false".
    void SetAsBoolean(bool value);
    /// The fewest digits that lead back to the same number, see NuDoubleToXML.
    void SetAsDouble(double value);
    /// Local time without a zone: "2024-05-06T07:08:09".
    void SetAsDateTime(host::TDateTime value);
    /// @}

    /// \name What TNuDOMNode describes
    /// @{

    using TNuDOMNode::CreateNodeList;
    using TNuDOMNode::FirstChild;
    using TNuDOMNode::get_firstChild;
    using TNuDOMNode::get_lastChild;
    using TNuDOMNode::get_nextSibling;
    using TNuDOMNode::get_previousSibling;
    using TNuDOMNode::LastChild;
    using TNuDOMNode::SelectSingleNode;
    using TNuDOMNode::set_innerxml;
    void set_innerxml(std::u16string_view xml) override;
    [[nodiscard]] TNuDOMNodeList& get_childNodes() override;
    [[nodiscard]] TNuDOMNode* get_firstChild() override { return children_.first(); }
    [[nodiscard]] TNuDOMNode* get_lastChild() override { return children_.last(); }
    [[nodiscard]] TNuDOMNode* get_previousSibling() override;
    [[nodiscard]] TNuDOMNode* get_nextSibling() override;
    [[nodiscard]] bool hasChildNodes() const override { return !children_.empty(); }
    [[nodiscard]] TNuDOMNode* FirstChild() override { return children_.first(); }
    [[nodiscard]] TNuDOMNode* LastChild() override { return children_.last(); }
    void appendChild(TNuDOMNode& child) override;
    void insertBefore(TNuDOMNode& child, TNuDOMNode* reference) override;
    NuRef<TNuDOMNode> removeChild(TNuDOMNode& child) override;
    NuRef<TNuDOMNodeList> CreateNodeList(std::u16string_view path,
                                         TNuDOMSelectOptions options = {}) override;
    TNuDOMNode* SelectSingleNode(std::u16string_view path,
                                 TNuDOMSelectOptions options = {}) override;
    /// @}

    /// \name Selecting elements by path
    /// @{

    /// A new list of the elements at `path`, in the order of selection.
    [[nodiscard]] NuRef<TNuDOMElementList> CreateElementList(std::u16string_view path,
                                                             TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMElementList> CreateElementList(const TNuUtf8Text& path,
                                                             TNuDOMSelectOptions options = {}) {
        return CreateElementList(path.view(), options);
    }
    /// The only element at `path`; null without one. Throws ENuDomException when there are more.
    TNuDOMElement* SelectSingleElement(std::u16string_view path, TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    TNuDOMElement* SelectSingleElement(const TNuUtf8Text& path, TNuDOMSelectOptions options = {}) {
        return SelectSingleElement(path.view(), options);
    }
    /// @}

private:
    using TNuDOMChildNode::TNuDOMChildNode;
    ~TNuDOMElement() = default;
    friend class nu::ElementLinks;

    /// The value in UTF-8, "" without an attribute.
    [[nodiscard]] static std::string textOf(const TNuDOMAttribute* attribute) {
        return attribute != nullptr ? attribute->Text() : std::string();
    }
    NUXML_LOCAL void _addChild(TNuDOMNode& child, TNuDOMPosition position,
                               TNuDOMNode* reference) override;
    NUXML_LOCAL void _removeChild(TNuDOMNode& child) override;
    NUXML_LOCAL void linkAttribute(TNuDOMNode& attribute, TNuDOMNode* place) noexcept;
    NUXML_LOCAL void unlinkAttribute(TNuDOMNode& attribute) noexcept;

    /// The name as the document has it; null where no node of it ever had that name.
    [[nodiscard]] const nu::NodeName* knownName(std::u16string_view name) const noexcept;
    template <class Element>
    [[nodiscard]] TNuDOMNamedRange<Element> childElements(std::u16string_view name) const noexcept {
        const nu::NodeName* known = knownName(name);
        return TNuDOMNamedRange<Element>(known != nullptr ? children_.first() : nullptr,
                                         nu::SameName(known));
    }

    nu::NodeChain children_;
    nu::AttributeChain attributes_;
};
