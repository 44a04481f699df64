#pragma once

#include <string_view>

#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/storage/storedText.h"

/// \file
/// The attribute.

/// An attribute: a name and a value. Its parent is the element that carries it. The value that
/// operations take and give is the text that is meant; what is kept and written is escaped.
class NUXML_API TNuDOMAttribute final : public TNuDOMNode {
public:
    /// What stands for this kind of node in TNuDOMDocument::_CreateNode, and what messages call it.
    static const TNuDOMNodeClass Class;
    /// The kind as a constant, for templates over kinds of nodes.
    static constexpr host::DOMNodeType Type = host::ATTRIBUTE_NODE;

    [[nodiscard]] NuXmlString get_nodeValue() const override;
    using TNuDOMNode::set_nodeValue;
    void set_nodeValue(std::u16string_view value) override;
    /// The qualified name; "xmlns" for the declaration of the default namespace.
    [[nodiscard]] NuXmlString get_name() const { return get_nodeName(); }
    /// The value, references resolved.
    [[nodiscard]] NuXmlString get_value() const { return get_nodeValue(); }
    /// Replaces the value, which is escaped where it is written.
    void set_value(std::u16string_view value) { set_nodeValue(value); }
    /// The same in UTF-8.
    void set_value(const TNuUtf8Text& value) { set_nodeValue(value.view()); }

    /// "xmlns" for every namespace declaration, also for the default one.
    [[nodiscard]] NuXmlString get_prefix() const override;
    /// "" for the declaration of the default namespace.
    [[nodiscard]] NuXmlString get_localName() const override;
    /// "" for namespace declarations.
    /// Deliberate: an attribute without a prefix is in the default namespace in scope, which the
    /// namespaces standard does not say.
    [[nodiscard]] NuXmlString get_namespaceURI() const override;
    /// Whether the attribute declares a namespace.
    [[nodiscard]] bool get_IsNamespace() const noexcept;
    /// The element that carries the attribute, or null.
    [[nodiscard]] TNuDOMElement* get_ownerElement();
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMElement* get_ownerElement() const;
    /// Deliberate: always false; the reader does not tell attributes of a document type apart.
    [[nodiscard]] bool get_specified() const noexcept { return false; }

private:
    using TNuDOMNode::TNuDOMNode;
    ~TNuDOMAttribute() = default;
    friend class nu::NodeText;

    nu::StoredText text_;
};
