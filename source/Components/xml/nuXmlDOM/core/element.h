#pragma once

#include <cstddef>
#include <string_view>

#include "host/runtime/dateTime.h"
#include "host/runtime/variant.h"
#include "nuXmlDOM/core/attribute.h"
#include "nuXmlDOM/core/characterData.h"
#include "nuXmlDOM/core/node.h"
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
    static const TNuDOMNodeClass Class;
    static constexpr host::DOMNodeType Type = host::ELEMENT_NODE;

    /// \name Names and namespaces
    /// @{
    [[nodiscard]] NuXmlString get_tagName() const { return get_nodeName(); }
    [[nodiscard]] NuXmlString get_namespaceURI() const override;
    /// The first declaration of the namespace `uri` on this element or, when `recursive`, on the
    /// nearest element around it; null when there is none.
    [[nodiscard]] TNuDOMAttribute* FindNamespace(std::u16string_view uri, bool recursive);
    [[nodiscard]] TNuDOMAttribute* FindNamespace(const TNuUtf8Text& uri, bool recursive) {
        return FindNamespace(uri.view(), recursive);
    }
    [[nodiscard]] const TNuDOMAttribute* FindNamespace(std::u16string_view uri,
                                                       bool recursive) const {
        return const_cast<TNuDOMElement&>(*this).FindNamespace(uri, recursive);
    }
    /// The same for the declaration of that prefix; "" is the default namespace.
    [[nodiscard]] TNuDOMAttribute* FindNamespace(std::u16string_view uri,
                                                 std::u16string_view prefix, bool recursive);
    [[nodiscard]] const TNuDOMAttribute*
    FindNamespace(std::u16string_view uri, std::u16string_view prefix, bool recursive) const {
        return const_cast<TNuDOMElement&>(*this).FindNamespace(uri, prefix, recursive);
    }
    /// @}

    /// \name Attributes
    /// soCreate makes the attribute under the name as given; soRaise throws ENuDomNotFound.
    /// @{
    TNuDOMAttribute* getAttributeNodeObj(std::u16string_view name,
                                         TNuDOMSelectOptions options = {});
    /// By local name and resolved namespace. soIgnoreNamespace changes nothing.
    TNuDOMAttribute* getAttributeNodeObj(std::u16string_view localName,
                                         std::u16string_view namespaceURI,
                                         TNuDOMSelectOptions options);
    TNuDOMAttribute* AttribNodeByName(std::u16string_view name, TNuDOMSelectOptions options = {});
    /// The value, "" without the attribute.
    NuXmlString AttributeByName(std::u16string_view name, TNuDOMSelectOptions options = {});
    std::string AttributeByName(const TNuUtf8Text& name, TNuDOMSelectOptions options = {});
    NuXmlString AttributeByName(std::u16string_view localName, std::u16string_view namespaceURI,
                                TNuDOMSelectOptions options);

    [[nodiscard]] NuXmlString getAttribute(std::u16string_view name) const;
    [[nodiscard]] std::string getAttribute(const TNuUtf8Text& name) const;
    [[nodiscard]] TNuDOMAttribute* getAttributeNode(std::u16string_view name);
    [[nodiscard]] TNuDOMAttribute* getAttributeNode(const TNuUtf8Text& name) {
        return getAttributeNode(name.view());
    }
    [[nodiscard]] const TNuDOMAttribute* getAttributeNode(std::u16string_view name) const;
    [[nodiscard]] const TNuDOMAttribute* getAttributeNode(const TNuUtf8Text& name) const {
        return getAttributeNode(name.view());
    }
    [[nodiscard]] NuXmlString getAttributeNS(std::u16string_view namespaceURI,
                                             std::u16string_view localName) const;
    [[nodiscard]] TNuDOMAttribute* getAttributeNodeNS(std::u16string_view namespaceURI,
                                                      std::u16string_view localName);
    [[nodiscard]] const TNuDOMAttribute* getAttributeNodeNS(std::u16string_view namespaceURI,
                                                            std::u16string_view localName) const;
    [[nodiscard]] bool HasAttribute(std::u16string_view name) const;
    [[nodiscard]] bool HasAttribute(const TNuUtf8Text& name) const {
        return HasAttribute(name.view());
    }
    [[nodiscard]] bool HasAttributeNS(std::u16string_view namespaceURI,
                                      std::u16string_view localName) const;
    void setAttribute(std::u16string_view name, std::u16string_view value);
    /// A number, a boolean or a date is written as TNuValue says: `setAttribute("year", 1999)`.
    void setAttribute(const TNuUtf8Text& name, const TNuValue& value) {
        setAttribute(name.view(), value.view());
    }
    template <class Value>
    requires nu::Utf8Text<Value> || nu::TypedValue<Value>
    void setAttribute(std::u16string_view name, const Value& value) {
        setAttribute(name, TNuValue(value).view());
    }
    /// Sets the attribute of that namespace and local name, else the one of that qualified name;
    /// makes it without either.
    void setAttributeNS(std::u16string_view namespaceURI, std::u16string_view qualifiedName,
                        std::u16string_view value);
    void setAttributeNS(const TNuUtf8Text& namespaceURI, const TNuUtf8Text& qualifiedName,
                        const TNuValue& value) {
        setAttributeNS(namespaceURI.view(), qualifiedName.view(), value.view());
    }
    /// Puts an attribute behind the others.
    /// Deliberate: one of the same name is not replaced; both are there and written.
    void setAttributeNode(TNuDOMAttribute& attribute);
    void setAttributeNodeNS(TNuDOMAttribute& attribute) { setAttributeNode(attribute); }
    void removeAttribute(std::u16string_view name);
    void removeAttribute(const TNuUtf8Text& name) { removeAttribute(name.view()); }
    void removeAttributeNS(std::u16string_view namespaceURI, std::u16string_view localName);
    /// Deliberate: takes away the first attribute of this one's name, even if that is another.
    void removeAttributeNode(const TNuDOMAttribute& attribute);

    [[nodiscard]] TNuDOMAttrList& get_attributes() override;
    /// The attributes for a range-based for loop; constant ones of a constant element.
    [[nodiscard]] TNuDOMRange<TNuDOMAttribute> Attributes() noexcept {
        return TNuDOMRange<TNuDOMAttribute>(attributes_.first());
    }
    [[nodiscard]] TNuDOMRange<const TNuDOMAttribute> Attributes() const noexcept {
        return TNuDOMRange<const TNuDOMAttribute>(attributes_.first());
    }
    /// @}

    /// \name Making children
    /// @{
    TNuDOMElement& AddElement(std::u16string_view name);
    TNuDOMElement& AddElement(const TNuUtf8Text& name) { return AddElement(name.view()); }
    TNuDOMElement& AddElement(std::u16string_view name, std::u16string_view namespaceURI);
    TNuDOMElement& AddElement(const TNuUtf8Text& name, const TNuUtf8Text& namespaceURI) {
        return AddElement(name.view(), namespaceURI.view());
    }
    TNuDOMElement& InsertElement(std::u16string_view name, TNuDOMPosition position,
                                 TNuDOMNode* reference);
    TNuDOMElement& InsertElement(const TNuUtf8Text& name, TNuDOMPosition position,
                                 TNuDOMNode* reference) {
        return InsertElement(name.view(), position, reference);
    }
    TNuDOMElement& InsertElement(std::u16string_view name, std::u16string_view namespaceURI,
                                 TNuDOMPosition position, TNuDOMNode* reference);
    TNuDOMComment& AddComment(std::u16string_view text);
    TNuDOMComment& AddComment(const TNuUtf8Text& text) { return AddComment(text.view()); }
    TNuDOMComment& InsertComment(std::u16string_view text, TNuDOMPosition position,
                                 TNuDOMNode* reference);
    TNuDOMCDATA& AddCDATA(std::u16string_view text);
    TNuDOMCDATA& AddCDATA(const TNuUtf8Text& text) { return AddCDATA(text.view()); }
    TNuDOMCDATA& InsertCDATA(std::u16string_view text, TNuDOMPosition position,
                             TNuDOMNode* reference);
    /// A text behind the children that are there: for elements that hold texts and elements.
    TNuDOMText& AddText(const TNuText& text);
    /// @}

    /// \name Finding and removing children
    /// soCreate makes the element under the name as given; soRaise throws ENuDomException.
    /// @{
    TNuDOMElement* GetChildElement(std::u16string_view name, TNuDOMSelectOptions options = {});
    TNuDOMElement* GetChildElement(const TNuUtf8Text& name, TNuDOMSelectOptions options = {}) {
        return GetChildElement(name.view(), options);
    }
    /// By local name and resolved namespace.
    /// Deliberate: soCreate adds no declaration. Unless `namespaceURI` is declared in scope for the
    /// name, the new element is in another namespace and is not found again.
    TNuDOMElement* GetChildElement(std::u16string_view name, std::u16string_view namespaceURI,
                                   TNuDOMSelectOptions options);
    /// The only element at `path`, without regard to letter case and namespace. Throws when there
    /// is none, or more than one.
    TNuDOMElement& GetChildElementEx(std::u16string_view path);
    TNuDOMElement& GetChildElementEx(const TNuUtf8Text& path) {
        return GetChildElementEx(path.view());
    }
    /// The typed value of that element, see GetVarValue.
    host::Variant GetValueEx(std::u16string_view path);
    /// Takes the first child element of that name out of the tree; an empty handle without one.
    NuRef<TNuDOMElement> RemoveElement(std::u16string_view name);
    NuRef<TNuDOMElement> RemoveElement(const TNuUtf8Text& name) {
        return RemoveElement(name.view());
    }
    NuRef<TNuDOMElement> RemoveElement(std::u16string_view name, std::u16string_view namespaceURI);
    /// Takes the element out of the tree, whatever its parent is.
    NuRef<TNuDOMElement> RemoveElement(TNuDOMElement& element);

    [[nodiscard]] TNuDOMElement* FirstChildElement();
    [[nodiscard]] const TNuDOMElement* FirstChildElement() const;
    /// Throws host::EInvalidCast when the parent is the document; null without a parent.
    [[nodiscard]] TNuDOMElement* GetParentElement();
    [[nodiscard]] const TNuDOMElement* GetParentElement() const;
    /// The position among the child elements of the parent; 0 when that is no element.
    [[nodiscard]] std::ptrdiff_t get_index() const;
    /// The child elements as a list that follows the changes of the tree.
    [[nodiscard]] TNuDOMElementList& get_childElements();
    /// The children for a range-based for loop; constant ones of a constant element.
    [[nodiscard]] TNuDOMRange<TNuDOMNode> ChildNodes() noexcept {
        return TNuDOMRange<TNuDOMNode>(children_.first());
    }
    [[nodiscard]] TNuDOMRange<const TNuDOMNode> ChildNodes() const noexcept {
        return TNuDOMRange<const TNuDOMNode>(children_.first());
    }
    /// The child elements for a range-based for loop, in the order of the document.
    [[nodiscard]] TNuDOMRange<TNuDOMElement> ChildElements() noexcept {
        return TNuDOMRange<TNuDOMElement>(children_.first());
    }
    [[nodiscard]] TNuDOMRange<const TNuDOMElement> ChildElements() const noexcept {
        return TNuDOMRange<const TNuDOMElement>(children_.first());
    }
    /// Those of that qualified name.
    [[nodiscard]] TNuDOMNamedRange<TNuDOMElement> ChildElements(const TNuText& name) {
        return childElements<TNuDOMElement>(name);
    }
    [[nodiscard]] TNuDOMNamedRange<const TNuDOMElement> ChildElements(const TNuText& name) const {
        return childElements<const TNuDOMElement>(name);
    }
    /// The elements below this one of that name, in the order of a path "//name"; "*" is any name.
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagName(std::u16string_view name);
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagName(const TNuUtf8Text& name) {
        return getElementsByTagName(name.view());
    }
    [[nodiscard]] NuRef<TNuDOMElementList> getElementsByTagNameNS(std::u16string_view namespaceURI,
                                                                  std::u16string_view localName);
    /// @}

    /// \name Text
    /// @{
    /// The texts and CDATA sections right below the element, joined.
    [[nodiscard]] NuXmlString get_nodeValue() const override;
    /// Puts one text in place of all texts and CDATA sections right below the element; none when
    /// `value` is empty.
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;
    [[nodiscard]] NuXmlString get_text() const override { return get_nodeValue(); }
    using TNuDOMNode::set_text;
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
    [[nodiscard]] std::int32_t GetAsInteger() const;
    [[nodiscard]] std::int64_t GetAsInt64() const;
    /// Throws host::EConvertError for text that is no boolean.
    [[nodiscard]] bool GetAsBoolean() const;
    [[nodiscard]] double GetAsDouble() const;
    [[nodiscard]] host::TDateTime GetAsDateTime() const;
    /// The setters name the type where the namespace of XML Schema instances is declared, and set
    /// nothing but the text elsewhere.
    void SetAsString(std::u16string_view value);
    void SetAsString(const TNuUtf8Text& value) { SetAsString(value.view()); }
    void SetAsInteger(std::int32_t value);
    void SetAsInt64(std::int64_t value);
    void SetAsBoolean(bool value);
    void SetAsDouble(double value);
    void SetAsDateTime(host::TDateTime value);
    /// @}

    // TNuDOMNode
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
    /// A new list of the elements at `path`, in the order of selection.
    [[nodiscard]] NuRef<TNuDOMElementList> CreateElementList(std::u16string_view path,
                                                             TNuDOMSelectOptions options = {});
    [[nodiscard]] NuRef<TNuDOMElementList> CreateElementList(const TNuUtf8Text& path,
                                                             TNuDOMSelectOptions options = {}) {
        return CreateElementList(path.view(), options);
    }
    /// The only element at `path`; null without one. Throws ENuDomException when there are more.
    TNuDOMElement* SelectSingleElement(std::u16string_view path, TNuDOMSelectOptions options = {});
    TNuDOMElement* SelectSingleElement(const TNuUtf8Text& path, TNuDOMSelectOptions options = {}) {
        return SelectSingleElement(path.view(), options);
    }

private:
    using TNuDOMChildNode::TNuDOMChildNode;
    ~TNuDOMElement() = default;
    friend class nu::NodeAccess;

    void _addChild(TNuDOMNode& child, TNuDOMPosition position, TNuDOMNode* reference) override;
    void _removeChild(TNuDOMNode& child) override;
    void linkAttribute(TNuDOMNode& attribute, TNuDOMNode* place) noexcept;
    void unlinkAttribute(TNuDOMNode& attribute) noexcept;
    /// From now on the child elements have an order of their own, whatever moves in the tree.
    void keepElementOrder();
    void placeInElementOrder(TNuDOMElement& child, TNuDOMPosition position,
                             TNuDOMNode* besideElement, bool isReferenceKnown);

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
