#pragma once

#include "nuXmlDOM/face/nodeFace.h"

/// \file
/// The faces of elements and attributes.

namespace nu {

class AttributeFace final : public NodeFace<TNuDOMAttribute> {
public:
    using NodeFace<TNuDOMAttribute>::NodeFace;

    Result get_name(std::u16string& name) noexcept override {
        return host::guardCall(name, [&] { return object_.get_name(); });
    }
    Result get_specified(bool& isSpecified) noexcept override {
        return host::guardCall(isSpecified, [&] { return object_.get_specified(); });
    }
    Result get_value(std::u16string& value) noexcept override {
        return host::guardCall(value, [&] { return object_.get_value(); });
    }
    Result set_value(std::u16string_view value) noexcept override {
        return host::guardCall([&] { object_.set_value(value); });
    }
    Result get_ownerElement(host::Ref<host::IDOMElement>& element) noexcept override {
        return giveInterface(element, [&] { return object_.get_ownerElement(); });
    }
    Result get_IsNamespace(bool& isNamespace) noexcept override {
        return host::guardCall(isNamespace, [&] { return object_.get_IsNamespace(); });
    }
};

class ElementFace final : public NodeFace<TNuDOMElement> {
public:
    using NodeFace<TNuDOMElement>::NodeFace;
    using AttributeResult = host::Ref<host::IDOMAttr>;
    using ElementResult = host::Ref<INuDOMElement>;
    using ListResult = host::Ref<host::IDOMNodeList>;
    using Text = std::u16string_view;

    Result get_tagName(std::u16string& name) noexcept override {
        return host::guardCall(name, [&] { return object_.get_tagName(); });
    }
    Result FindNamespace(Text uri, bool recursive,
                         host::Ref<INuDOMAttribute>& declaration) noexcept override {
        return giveInterface(declaration, [&] { return object_.FindNamespace(uri, recursive); });
    }
    Result FindNamespace(Text uri, Text prefix, bool recursive,
                         host::Ref<INuDOMAttribute>& declaration) noexcept override {
        return giveInterface(declaration,
                             [&] { return object_.FindNamespace(uri, prefix, recursive); });
    }

    // Attributes

    Result getAttribute(Text name, std::u16string& value) noexcept override {
        return host::guardCall(value, [&] { return object_.getAttribute(name); });
    }
    Result setAttribute(Text name, Text value) noexcept override {
        return host::guardCall([&] { object_.setAttribute(name, value); });
    }
    Result removeAttribute(Text name) noexcept override {
        return host::guardCall([&] { object_.removeAttribute(name); });
    }
    Result hasAttribute(Text name, bool& isThere) noexcept override {
        return host::guardCall(isThere, [&] { return object_.HasAttribute(name); });
    }
    Result getAttributeNode(Text name, AttributeResult& attribute) noexcept override {
        return giveInterface(attribute, [&] { return object_.getAttributeNode(name); });
    }
    /// Deliberate: nothing is replaced, so nothing is given back; see the class.
    Result setAttributeNode(host::IDOMAttr* attribute,
                            AttributeResult& replaced) noexcept override {
        return guardWithoutResult(
            replaced, [&] { object_.setAttributeNode(toObject<TNuDOMAttribute>(attribute)); });
    }
    /// Gives back the attribute that left, which may be another of the same name; see the class.
    Result removeAttributeNode(host::IDOMAttr* attribute,
                               AttributeResult& removed) noexcept override {
        return giveInterface(removed, [&] {
            const auto& named = toObject<TNuDOMAttribute>(attribute);
            NuRef<TNuDOMAttribute> leaving(object_.getAttributeNode(named.get_name()));
            object_.removeAttributeNode(named);
            return leaving;
        });
    }
    Result getAttributeNS(Text namespaceURI, Text localName,
                          std::u16string& value) noexcept override {
        return host::guardCall(value,
                               [&] { return object_.getAttributeNS(namespaceURI, localName); });
    }
    Result setAttributeNS(Text namespaceURI, Text qualifiedName, Text value) noexcept override {
        return host::guardCall([&] { object_.setAttributeNS(namespaceURI, qualifiedName, value); });
    }
    Result removeAttributeNS(Text namespaceURI, Text localName) noexcept override {
        return host::guardCall([&] { object_.removeAttributeNS(namespaceURI, localName); });
    }
    Result hasAttributeNS(Text namespaceURI, Text localName, bool& isThere) noexcept override {
        return host::guardCall(isThere,
                               [&] { return object_.HasAttributeNS(namespaceURI, localName); });
    }
    Result getAttributeNodeNS(Text namespaceURI, Text localName,
                              AttributeResult& attribute) noexcept override {
        return giveInterface(attribute,
                             [&] { return object_.getAttributeNodeNS(namespaceURI, localName); });
    }
    /// Deliberate: gives nothing back, as setAttributeNode.
    Result setAttributeNodeNS(host::IDOMAttr* attribute,
                              AttributeResult& replaced) noexcept override {
        return guardWithoutResult(
            replaced, [&] { object_.setAttributeNodeNS(toObject<TNuDOMAttribute>(attribute)); });
    }
    Result AttribNodeByName(Text name, TNuDOMSelectOptions options,
                            host::Ref<INuDOMAttribute>& attribute) noexcept override {
        return giveInterface(attribute, [&] { return object_.AttribNodeByName(name, options); });
    }
    Result AttributeByName(Text name, TNuDOMSelectOptions options,
                           std::u16string& value) noexcept override {
        return host::guardCall(value, [&] { return object_.AttributeByName(name, options); });
    }
    Result AttributeByName(Text localName, Text namespaceURI, TNuDOMSelectOptions options,
                           std::u16string& value) noexcept override {
        return host::guardCall(
            value, [&] { return object_.AttributeByName(localName, namespaceURI, options); });
    }

    // Making children

    Result AddElement(Text name, ElementResult& element) noexcept override {
        return giveInterface(
            element, [&]() -> auto& { return object_.AddElement(name); });
    }
    Result AddElement(Text name, Text namespaceURI, ElementResult& element) noexcept override {
        return giveInterface(
            element, [&]() -> auto& { return object_.AddElement(name, namespaceURI); });
    }
    Result InsertElement(Text name, TNuDOMPosition position, host::IDOMNode* reference,
                         ElementResult& element) noexcept override {
        return giveInterface(
            element, [&]() -> auto& {
                return object_.InsertElement(name, position, nodeBehind(reference));
            });
    }
    Result InsertElement(Text name, Text namespaceURI, TNuDOMPosition position,
                         host::IDOMNode* reference, ElementResult& element) noexcept override {
        return giveInterface(
            element, [&]() -> auto& {
                return object_.InsertElement(name, namespaceURI, position, nodeBehind(reference));
            });
    }
    Result AddComment(Text text, host::Ref<host::IDOMComment>& comment) noexcept override {
        return giveInterface(
            comment, [&]() -> auto& { return object_.AddComment(text); });
    }
    Result InsertComment(Text text, TNuDOMPosition position, host::IDOMNode* reference,
                         host::Ref<host::IDOMComment>& comment) noexcept override {
        return giveInterface(
            comment, [&]() -> auto& {
                return object_.InsertComment(text, position, nodeBehind(reference));
            });
    }
    Result AddCDATA(Text text, host::Ref<host::IDOMCDATASection>& section) noexcept override {
        return giveInterface(
            section, [&]() -> auto& { return object_.AddCDATA(text); });
    }
    Result InsertCDATA(Text text, TNuDOMPosition position, host::IDOMNode* reference,
                       host::Ref<host::IDOMCDATASection>& section) noexcept override {
        return giveInterface(
            section, [&]() -> auto& {
                return object_.InsertCDATA(text, position, nodeBehind(reference));
            });
    }

    // Finding and removing

    Result GetChildElement(Text name, TNuDOMSelectOptions options,
                           ElementResult& element) noexcept override {
        return giveInterface(element, [&] { return object_.GetChildElement(name, options); });
    }
    Result GetChildElement(Text name, Text namespaceURI, TNuDOMSelectOptions options,
                           ElementResult& element) noexcept override {
        return giveInterface(element,
                             [&] { return object_.GetChildElement(name, namespaceURI, options); });
    }
    Result GetChildElementEx(Text path, ElementResult& element) noexcept override {
        return giveInterface(
            element, [&]() -> auto& { return object_.GetChildElementEx(path); });
    }
    Result SelectSingleElement(Text path, TNuDOMSelectOptions options,
                               ElementResult& element) noexcept override {
        return giveInterface(element, [&] { return object_.SelectSingleElement(path, options); });
    }
    Result RemoveElement(Text name, ElementResult& removed) noexcept override {
        return giveInterface(removed, [&] { return object_.RemoveElement(name); });
    }
    Result RemoveElement(Text name, Text namespaceURI, ElementResult& removed) noexcept override {
        return giveInterface(removed, [&] { return object_.RemoveElement(name, namespaceURI); });
    }
    Result RemoveElement(INuDOMElement* element, ElementResult& removed) noexcept override {
        return giveInterface(
            removed, [&] { return object_.RemoveElement(toObject<TNuDOMElement>(element)); });
    }
    Result FirstChildElement(ElementResult& element) noexcept override {
        return giveInterface(element, [&] { return object_.FirstChildElement(); });
    }
    Result GetParentElement(ElementResult& parent) noexcept override {
        return giveInterface(parent, [&] { return object_.GetParentElement(); });
    }
    Result get_index(host::DOMLength& index) noexcept override {
        return host::guardCall(index, [&] { return object_.get_index(); });
    }
    Result get_childElements(ListResult& elements) noexcept override {
        return giveInterface(
            elements, [&]() -> auto& { return object_.get_childElements(); });
    }
    Result getElementsByTagName(Text name, ListResult& elements) noexcept override {
        return giveInterface(elements, [&] { return object_.getElementsByTagName(name); });
    }
    Result getElementsByTagNameNS(Text namespaceURI, Text localName,
                                  ListResult& elements) noexcept override {
        return giveInterface(
            elements, [&] { return object_.getElementsByTagNameNS(namespaceURI, localName); });
    }

    // Text

    Result GetCDATA(std::u16string& text) noexcept override {
        return host::guardCall(text, [&] { return object_.GetCDATA(); });
    }
    Result GetPreserveSpace(bool& preserve) noexcept override {
        return host::guardCall(preserve, [&] { return object_.GetPreserveSpace(); });
    }
    Result SetPreseveSpace(bool preserve) noexcept override {
        return host::guardCall([&] { object_.SetPreseveSpace(preserve); });
    }
    Result GetVarValue(host::Variant& value) noexcept override {
        return host::guardCall(value, [&] { return object_.GetVarValue(); });
    }
    Result SetVarValue(const host::Variant& value) noexcept override {
        return host::guardCall([&] { object_.SetVarValue(value); });
    }
    Result GetValueEx(std::u16string_view path, host::Variant& value) noexcept override {
        return host::guardCall(value, [&] { return object_.GetValueEx(path); });
    }
    Result GetAsString(std::u16string& value) noexcept override {
        return host::guardCall(value, [&] { return object_.GetAsString(); });
    }
    Result SetAsString(std::u16string_view value) noexcept override {
        return host::guardCall([&] { object_.SetAsString(value); });
    }
    Result GetAsInteger(std::int32_t& value) noexcept override {
        return host::guardCall(value, [&] { return object_.GetAsInteger(); });
    }
    Result SetAsInteger(std::int32_t value) noexcept override {
        return host::guardCall([&] { object_.SetAsInteger(value); });
    }
    Result GetAsInt64(std::int64_t& value) noexcept override {
        return host::guardCall(value, [&] { return object_.GetAsInt64(); });
    }
    Result SetAsInt64(std::int64_t value) noexcept override {
        return host::guardCall([&] { object_.SetAsInt64(value); });
    }
    Result GetAsBoolean(bool& value) noexcept override {
        return host::guardCall(value, [&] { return object_.GetAsBoolean(); });
    }
    Result SetAsBoolean(bool value) noexcept override {
        return host::guardCall([&] { object_.SetAsBoolean(value); });
    }
    Result GetAsDouble(double& value) noexcept override {
        return host::guardCall(value, [&] { return object_.GetAsDouble(); });
    }
    Result SetAsDouble(double value) noexcept override {
        return host::guardCall([&] { object_.SetAsDouble(value); });
    }
    Result GetAsDateTime(host::TDateTime& value) noexcept override {
        return host::guardCall(value, [&] { return object_.GetAsDateTime(); });
    }
    Result SetAsDateTime(host::TDateTime value) noexcept override {
        return host::guardCall([&] { object_.SetAsDateTime(value); });
    }
};

} // namespace nu
