#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "common/textArgument.h"
#include "host/dom/node.h"
#include "host/runtime/stream.h"
#include "nuXmlDOM/core/domObject.h"
#include "nuXmlDOM/core/nodeClass.h"
#include "nuXmlDOM/core/selectOptions.h"
#include "nuXmlParser/chars.h"
#include "nuXmlParser/valueArgument.h"

/// \file
/// The node, base of all kinds.

class TNuDOMAttrList;
class TNuDOMElement;
template <class Node> class TNuDOMSelection;

namespace nu {

class ElementLinks;
class NodeContext;
class NodeFlags;
class NodeLinks;
class NodeMemory;
class NodeName;
class NodeText;

} // namespace nu

/// Where a new child goes.
enum TNuDOMPosition : std::uint8_t {
    /// Before all other children.
    rdpFirst,
    /// Behind all other children.
    rdpLast,
    /// Right before the reference node.
    rdpBefore,
    /// Right behind the reference node.
    rdpAfter,
};

/// A node of a document: element, attribute, text, CDATA section, comment, processing instruction,
/// or the document itself.
///
/// Nodes are made by their document. A node in the tree belongs to its parent; one outside of the
/// tree goes as soon as nobody holds it, nor anything below it. Operations of this class throw; the
/// interfaces of a node (see QueryInterface) offer the same operations as W3C DOM Level 2 Core
/// names them and give failure codes instead. What a kind of node does not provide throws
/// ENuDomNotSupported ("Not supported").
///
/// Text is UTF-16, and UTF-8 as well: operations that take text take both, and who asks in UTF-8
/// ("id", std::string) for a text gets a std::string. Name, Text, Xml and Get<std::string> give
/// UTF-8 in any case. Malformed UTF-8 throws host::EConvertError, see TNuText.
class NUXML_API TNuDOMNode : public TNuDOMObject {
public:
    /// \name What the node is
    /// @{

    /// The kind, with the numbers of W3C DOM. Fixed for the life of a node.
    [[nodiscard]] host::DOMNodeType get_nodeType() const noexcept {
        return static_cast<host::DOMNodeType>(nodeType_);
    }
    /// The class of the node; its name is what messages call the node.
    [[nodiscard]] const TNuDOMNodeClass& NodeClass() const noexcept;
    /// The document of the node; the document is its own.
    [[nodiscard]] TNuDOMDocument* get_ownerDocument() noexcept { return OwnerDocument(); }
    /// The same of a constant node.
    [[nodiscard]] const TNuDOMDocument* get_ownerDocument() const noexcept {
        return OwnerDocument();
    }
    /// Whether the feature is "xml" and the version "1.0" or "2.0", in any letter case.
    /// Deliberate: an empty version is no version, although W3C takes it for any.
    [[nodiscard]] bool supports(std::u16string_view feature, std::u16string_view version) const;
    /// @}

    /// \name Names
    /// @{

    /// The qualified name of elements, attributes and instructions, else a fixed name ("#text").
    [[nodiscard]] virtual NuXmlString get_nodeName() const;
    /// What stands before the colon of the qualified name; "" without one.
    [[nodiscard]] virtual NuXmlString get_prefix() const;
    /// What stands behind the colon of the qualified name; all of it without a colon.
    [[nodiscard]] virtual NuXmlString get_localName() const;
    /// The namespace that the declarations in scope give the prefix, "" without one.
    /// Deliberate: the URI that a node was created with is not consulted.
    [[nodiscard]] virtual NuXmlString get_namespaceURI() const;
    /// The namespace URI that the node was created with.
    [[nodiscard]] NuXmlString GetCreationNamespaceURI() const;
    /// Names a node that has no name yet; the part before the first colon becomes the prefix.
    /// Throws ENuDomNoModificationAllowed when the node has a name, ENuDomSyntax when `name` is
    /// empty, and ENuDomInvalidCharacter when it holds a space; the node then has the name up to
    /// there.
    void set_nodeName(std::u16string_view name);
    /// The same in UTF-8.
    void set_nodeName(const TNuUtf8Text& name) { set_nodeName(name.view()); }
    /// Gives an element, an attribute or an instruction another name, which is in the namespace
    /// that its prefix has in scope. Throws ENuDomSyntax when `name` is empty,
    /// ENuDomInvalidCharacter when it holds a space, and ENuDomNotSupported for other nodes;
    /// nothing changes then.
    void Rename(const TNuText& name);
    /// The qualified name, as get_nodeName gives it, in UTF-8.
    [[nodiscard]] std::string Name() const;
    /// Changes the prefix; an empty one takes it away. Throws ENuDomInvalidCharacter when it holds
    /// a colon or a space; the node is then left with a prefix that is empty but there (":name").
    void set_prefix(std::u16string_view prefix);
    /// The same in UTF-8.
    void set_prefix(const TNuUtf8Text& prefix) { set_prefix(prefix.view()); }
    /// The names from the document element down to the node, each behind a "/": "/library/book". A
    /// node outside of the tree starts with the bare name of the outermost node.
    [[nodiscard]] NuXmlString NodePath(bool localNamesOnly) const;
    /// @}

    /// \name Content
    /// @{

    /// The text of character data, elements and attributes and the data of instructions, references
    /// resolved; "" for a document.
    [[nodiscard]] virtual NuXmlString get_nodeValue() const;
    /// Replaces that text by what is meant; where something has to be escaped, the node does it.
    /// Throws ENuDomNotSupported for a document.
    virtual void set_nodeValue(std::u16string_view value);
    /// The same in UTF-8.
    void set_nodeValue(const TNuUtf8Text& value) { set_nodeValue(value.view()); }
    /// The text inside an element, see TNuDOMElement::get_nodeValue. Other nodes throw
    /// ENuDomNotSupported; Text gives that of any node.
    [[nodiscard]] virtual NuXmlString get_text() const;
    /// Replaces the text inside an element, see TNuDOMElement::set_nodeValue. Other nodes throw
    /// ENuDomNotSupported.
    virtual void set_text(std::u16string_view text);
    /// The same in UTF-8.
    void set_text(const TNuUtf8Text& text) { set_text(text.view()); }
    /// The text of an element, the value of any other node, in UTF-8.
    [[nodiscard]] std::string Text() const;
    /// The node written as XML text.
    [[nodiscard]] virtual NuXmlString get_xml() const;
    /// The same with line breaks and indentation.
    [[nodiscard]] NuXmlString get_formattedXml() const;
    /// What an element's child elements are written as, one behind the other; the same as get_xml
    /// for other nodes.
    /// Deliberate: text, comments and instructions between the child elements are left out.
    [[nodiscard]] NuXmlString get_innerxml() const;
    /// The same with line breaks, indented by the depth of each element in the document.
    [[nodiscard]] NuXmlString get_formattedInnerXml() const;
    /// The node written as XML text in UTF-8.
    [[nodiscard]] std::string Xml() const;
    /// The same with line breaks and indentation.
    [[nodiscard]] std::string FormattedXml() const;
    /// Parses `xml` and puts the nodes below this one, in place of its children; attributes stay.
    /// What is wrong with the text throws as TNuSAXXMLReader::Parse does, what was read before
    /// stays there. ENuDomHierarchyRequest when the node cannot have children.
    virtual void set_innerxml(std::u16string_view xml);
    /// The same in UTF-8.
    void set_innerxml(const TNuUtf8Text& xml) { set_innerxml(xml.view()); }
    /// @}

    /// \name Neighbours
    /// Null where there is none.
    /// Deliberate: only elements know their siblings, other nodes throw ENuDomNotSupported.
    /// @{

    /// The element or document that the node stands below, or the element that carries the
    /// attribute. Also the parent that has refused the node, see _linkToParent.
    [[nodiscard]] TNuDOMNode* get_parentNode() noexcept { return parent_; }
    /// The children as a list that follows the changes of the tree. It belongs to the node.
    /// Elements and documents only.
    [[nodiscard]] virtual TNuDOMNodeList& get_childNodes();
    /// The first child of any kind; elements and documents only. Of a document: an instruction or
    /// comment if there is one, see TNuDOMDocument::get_childNodes.
    [[nodiscard]] virtual TNuDOMNode* get_firstChild();
    /// The last child of any kind; elements and documents only. Of a document: its document element
    /// if there is one.
    [[nodiscard]] virtual TNuDOMNode* get_lastChild();
    /// The child of the same parent right before this one. The document element stands behind the
    /// instructions and comments.
    [[nodiscard]] virtual TNuDOMNode* get_previousSibling();
    /// The child of the same parent right behind this one; always null for the document element.
    [[nodiscard]] virtual TNuDOMNode* get_nextSibling();
    /// The attributes, namespace declarations included, as a list that follows the changes of the
    /// element. It belongs to the element; other nodes throw ENuDomNotSupported.
    [[nodiscard]] virtual TNuDOMAttrList& get_attributes();
    /// Whether there is a child of any kind; attributes are none. False for kinds that have no
    /// children.
    [[nodiscard]] virtual bool hasChildNodes() const;
    /// As get_firstChild.
    [[nodiscard]] virtual TNuDOMNode* FirstChild();
    /// As get_lastChild.
    [[nodiscard]] virtual TNuDOMNode* LastChild();
    /// The same, seen from a constant node.
    [[nodiscard]] const TNuDOMNode* get_parentNode() const noexcept { return parent_; }
    /// The same of a constant node.
    [[nodiscard]] const TNuDOMNode* get_firstChild() const { return changeable().get_firstChild(); }
    /// The same of a constant node.
    [[nodiscard]] const TNuDOMNode* get_lastChild() const { return changeable().get_lastChild(); }
    /// The same of a constant node.
    [[nodiscard]] const TNuDOMNode* get_previousSibling() const {
        return changeable().get_previousSibling();
    }
    /// The same of a constant node.
    [[nodiscard]] const TNuDOMNode* get_nextSibling() const {
        return changeable().get_nextSibling();
    }
    /// The same of a constant node.
    [[nodiscard]] const TNuDOMNode* FirstChild() const { return changeable().FirstChild(); }
    /// The same of a constant node.
    [[nodiscard]] const TNuDOMNode* LastChild() const { return changeable().LastChild(); }
    /// @}

    /// \name Changing the tree
    /// A node that is linked leaves its old place first; one of another document is adopted.
    /// Throws ENuDomHierarchyRequest when the node cannot stand there.
    /// @{

    /// Puts `child` behind the other children; an attribute behind the other attributes.
    virtual void appendChild(TNuDOMNode& child);
    /// Puts `child` right before `reference`, which has to be a child of this node. Throws
    /// ENuDomException without a reference, and host::EListError before one that is no child.
    virtual void insertBefore(TNuDOMNode& child, TNuDOMNode* reference);
    /// Takes `child` out of the tree, whatever its parent is; it goes when the handle that is given
    /// back is dropped and nobody else holds it.
    virtual NuRef<TNuDOMNode> removeChild(TNuDOMNode& child);
    /// Never supported.
    NuRef<TNuDOMNode> replaceChild(TNuDOMNode& child, TNuDOMNode& former);
    /// Never supported. AddCopy and TNuDOMDocument::CreateCopy copy nodes.
    NuRef<TNuDOMNode> cloneNode(bool deep) const;
    /// Never supported.
    void normalize();
    /// Never supported: there are no stylesheets here.
    NuXmlString transformNode(TNuDOMNode& stylesheet) const;
    /// Never supported: there are no stylesheets here.
    void transformNode(TNuDOMNode& stylesheet, TNuDOMDocument& output) const;
    /// @}

    /// \name Copying
    /// A copy of a node, of this document or another one, with everything below it, in one pass.
    /// Namespaces that it uses and that are declared further up are declared on it, too, unless
    /// they are in scope at its place. Throws ENuDomHierarchyRequest for a document and for a node
    /// that cannot stand there; nothing changes then.
    /// @{

    /// Puts the copy behind the other children.
    template <class Node> Node& AddCopy(const Node& node) {
        return static_cast<Node&>(insertCopy(node, rdpLast, nullptr));
    }
    /// Puts the copy at a position, for which `reference` names a child of this node (rdpBefore,
    /// rdpAfter) or is null.
    template <class Node>
    Node& InsertCopy(const Node& node, TNuDOMPosition position, TNuDOMNode* reference) {
        return static_cast<Node&>(insertCopy(node, position, reference));
    }
    /// @}

    /// \name Selecting by path
    /// For elements and documents (docs/paths.md). Those of a constant node give constant nodes and
    /// make none: with soCreate they throw ENuDomNoModificationAllowed.
    /// @{

    /// The elements at `path`, in the order of selection.
    [[nodiscard]] TNuDOMSelection<TNuDOMElement> Select(const TNuText& path,
                                                        TNuDOMSelectOptions options = {});
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] TNuDOMSelection<const TNuDOMElement>
    Select(const TNuText& path, TNuDOMSelectOptions options = {}) const;
    /// The same for nodes of all kinds, such as attributes: "book/@id".
    [[nodiscard]] TNuDOMSelection<TNuDOMNode> SelectNodes(const TNuText& path,
                                                          TNuDOMSelectOptions options = {});
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] TNuDOMSelection<const TNuDOMNode>
    SelectNodes(const TNuText& path, TNuDOMSelectOptions options = {}) const;
    /// The first element at `path`; null without one.
    [[nodiscard]] TNuDOMElement* Find(const TNuText& path, TNuDOMSelectOptions options = {});
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMElement* Find(const TNuText& path,
                                            TNuDOMSelectOptions options = {}) const;
    /// The first element at `path`. Throws ENuDomException without one.
    [[nodiscard]] TNuDOMElement& At(const TNuText& path);
    /// The same for a constant one; what comes out is constant, too.
    [[nodiscard]] const TNuDOMElement& At(const TNuText& path) const;
    /// The first element at `path`, which is made, with all that leads there, where it is missing.
    TNuDOMElement& Make(const TNuText& path);
    /// A new list of the nodes at `path`, in the order of selection.
    [[nodiscard]] virtual NuRef<TNuDOMNodeList> CreateNodeList(std::u16string_view path,
                                                               TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    [[nodiscard]] NuRef<TNuDOMNodeList> CreateNodeList(const TNuUtf8Text& path,
                                                       TNuDOMSelectOptions options = {});
    /// The only node at `path`; null when there is none, or more than one.
    virtual TNuDOMNode* SelectSingleNode(std::u16string_view path,
                                         TNuDOMSelectOptions options = {});
    /// The same in UTF-8.
    TNuDOMNode* SelectSingleNode(const TNuUtf8Text& path, TNuDOMSelectOptions options = {}) {
        return SelectSingleNode(path.view(), options);
    }
    /// @}

    /// \name Values
    /// `Value` is bool, an integer, float, double, host::TDateTime, std::string (UTF-8) or
    /// NuXmlString. The text of an element is its value; a path may also lead to attributes:
    /// `book.Get<int>("@year", 0)`. It is read as NuXMLToBool, NuXMLToInt, NuXMLToDouble and
    /// NuXMLToDateTime read it; text that is no such value, or a number out of range, throws
    /// host::EConvertError, which names the place.
    /// @{

    /// The value of this node.
    template <class Value> [[nodiscard]] Value Get() const;
    /// The value of the first node at `path`; nothing without a node.
    template <class Value> [[nodiscard]] std::optional<Value> Get(const TNuText& path) const;
    /// The same; `fallback` without a node.
    template <class Value> [[nodiscard]] Value Get(const TNuText& path, Value fallback) const;
    /// The same for UTF-8 text: `book.Get("title", "untitled")`.
    [[nodiscard]] std::string Get(const TNuText& path, const char* fallback) const;
    /// The same for UTF-16 text.
    [[nodiscard]] NuXmlString Get(const TNuText& path, const NuXmlChar* fallback) const;
    /// Makes the value the text of this node. No type is named beside it, see SetAsInteger.
    void Set(const TNuValue& value) { writeValue(value.view()); }
    /// The same for the first node at `path`, which is made where it is missing, if it is an
    /// element or an attribute: `book.Set("@year", 1999)`.
    void Set(const TNuText& path, const TNuValue& value);
    /// @}

    /// \name Writing
    /// Everything is written as UTF-16; a document has forms of its own that follow its encoding.
    /// @{

    /// Writes the node without line breaks of its own from the position of the stream on, without a
    /// byte-order mark. What the stream throws goes on to the caller.
    void SaveToStream(host::TStream& stream);
    /// Indents relative to the depth of this node when it is an element.
    void _SaveToStream(host::TStream& stream, bool formatted);
    /// Indents relative to the depth `baseLevel`.
    void _SaveToStream(host::TStream& stream, bool formatted, std::int32_t baseLevel);
    /// @}

    /// \name What every change of the tree goes through
    /// @{

    /// Takes the node out of its place and puts it below `parent`; null leaves it outside of the
    /// tree. After a failure the node is outside, with the refusing parent as its parent.
    void _linkToParent(TNuDOMNode* parent, TNuDOMPosition position, TNuDOMNode* reference);
    /// Takes the node out of the tree; it goes at once when nobody holds it.
    void _delete();
    /// @}

    /// \cond internal
protected:
    TNuDOMNode(const nu::ObjectContext* context, host::DOMNodeType type) noexcept
        : TNuDOMObject(context) {
        nodeType_ = type;
    }
    ~TNuDOMNode() = default;

    /// Puts a node below this one that has no place; the parent is set already.
    virtual void _addChild(TNuDOMNode& child, TNuDOMPosition position, TNuDOMNode* reference);
    virtual void _removeChild(TNuDOMNode& child);

    void _GC() noexcept override {}
    nu::Face& face() override;

    [[nodiscard]] TNuDOMNode& changeable() const noexcept { return const_cast<TNuDOMNode&>(*this); }
    /// The first node at `path`, or the first element; null without one.
    [[nodiscard]] TNuDOMNode* first(std::u16string_view path, TNuDOMSelectOptions options,
                                    bool elementsOnly) const;
    /// The value as text, and as what the text says; these throw host::EConvertError.
    [[nodiscard]] NuXmlString readText() const;
    void read(bool& value) const;
    void read(double& value) const;
    void read(host::TDateTime& value) const;
    [[nodiscard]] std::int64_t readInteger(std::int64_t least, std::int64_t largest) const;
    [[nodiscard]] std::uint64_t readUnsigned(std::uint64_t largest) const;
    void writeValue(std::u16string_view value);
    TNuDOMNode& insertCopy(const TNuDOMNode& node, TNuDOMPosition position, TNuDOMNode* reference);

    [[noreturn]] static void raiseNotSupported();
    [[noreturn]] void raiseNoParentOf(const TNuDOMNode& child) const;
    /// \endcond

private:
    friend class nu::NodeContext;
    friend class nu::NodeFlags;
    friend class nu::NodeLinks;
    friend class nu::NodeMemory;

    NUXML_LOCAL void rename(const nu::NodeName* name) noexcept;
    NUXML_LOCAL void unlink();
    NUXML_LOCAL void linkBelow(TNuDOMNode& parent, TNuDOMPosition position, TNuDOMNode* reference);
    NUXML_LOCAL void settle(TNuDOMNode* former, TNuDOMNode* formerNext, bool wasWaiting) noexcept;
    NUXML_LOCAL void checkCanStandBelow(const TNuDOMNode& parent, TNuDOMPosition position,
                                        const TNuDOMNode* reference) const;

    TNuDOMNode* parent_ = nullptr;
    TNuDOMNode* next_ = nullptr;
};

/// A node that can stand among the children of another: any but attributes and the document.
class NUXML_API TNuDOMChildNode : public TNuDOMNode {
protected:
    using TNuDOMNode::TNuDOMNode;
    ~TNuDOMChildNode() = default;

private:
    friend class nu::NodeLinks;

    TNuDOMNode* previous_ = nullptr;
};

/// Writes the node as XML text in UTF-8.
NUXML_API std::ostream& operator<<(std::ostream& stream, const TNuDOMNode& node);

template <class Value> Value TNuDOMNode::Get() const {
    static_assert(nu::TypedValue<Value> || std::same_as<Value, std::string> ||
                      std::same_as<Value, NuXmlString>,
                  "a value is bool, a number, host::TDateTime, std::string or NuXmlString");
    if constexpr (std::same_as<Value, std::string>) {
        return Text();
    } else if constexpr (std::same_as<Value, NuXmlString>) {
        return readText();
    } else if constexpr (std::same_as<Value, bool> || std::same_as<Value, host::TDateTime>) {
        Value value;
        read(value);
        return value;
    } else if constexpr (std::floating_point<Value>) {
        double value = 0;
        read(value);
        return static_cast<Value>(value);
    } else if constexpr (std::signed_integral<Value>) {
        using Limits = std::numeric_limits<Value>;
        return static_cast<Value>(readInteger(Limits::min(), Limits::max()));
    } else {
        return static_cast<Value>(readUnsigned(std::numeric_limits<Value>::max()));
    }
}

template <class Value> std::optional<Value> TNuDOMNode::Get(const TNuText& path) const {
    const TNuDOMNode* node = first(path, {}, false);
    return node != nullptr ? std::optional<Value>(node->Get<Value>()) : std::nullopt;
}

template <class Value> Value TNuDOMNode::Get(const TNuText& path, Value fallback) const {
    const TNuDOMNode* node = first(path, {}, false);
    return node != nullptr ? node->Get<Value>() : fallback;
}
