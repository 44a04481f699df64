#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/dom/node.h"
#include "host/runtime/stream.h"
#include "nuXmlDOM/core/attributeChain.h"
#include "nuXmlDOM/core/domObject.h"
#include "nuXmlDOM/core/nodeChain.h"
#include "nuXmlDOM/core/nodeClass.h"
#include "nuXmlDOM/core/selectOptions.h"
#include "nuXmlParser/chars.h"

/// \file
/// The node, base of all kinds.

class TNuDOMAttrList;
class TNuDOMElement;

namespace nu {

class NodeLists;
class NodeName;

/// What only few nodes have: those that an application has looked at through an interface or a
/// list.
struct NodeExtras : ObjectContext {
    const NodeName* name = nullptr;
    Face* face = nullptr;
    NodeLists* lists = nullptr;
};

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
class NUXML_API TNuDOMNode : public TNuDOMObject {
public:
    /// \name What the node is
    /// @{
    [[nodiscard]] host::DOMNodeType get_nodeType() const noexcept {
        return static_cast<host::DOMNodeType>(nodeType_);
    }
    /// The class of the node; its name is what messages call the node.
    [[nodiscard]] const TNuDOMNodeClass& NodeClass() const noexcept;
    /// The document of the node; the document is its own.
    [[nodiscard]] TNuDOMDocument* get_ownerDocument() const noexcept { return OwnerDocument(); }
    /// Whether the feature is "xml" and the version "1.0" or "2.0", in any letter case.
    /// Deliberate: an empty version is no version, although W3C takes it for any.
    [[nodiscard]] bool supports(std::u16string_view feature, std::u16string_view version) const;
    /// @}

    /// \name Names
    /// @{
    /// The qualified name of elements, attributes and instructions, else a fixed name ("#text").
    [[nodiscard]] virtual NuXmlString get_nodeName() const;
    [[nodiscard]] virtual NuXmlString get_prefix() const;
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
    /// Changes the prefix; an empty one takes it away. Throws ENuDomInvalidCharacter when it holds
    /// a colon or a space; the node is then left with a prefix that is empty but there (":name").
    void set_prefix(std::u16string_view prefix);
    /// The names from the document element down to the node, each behind a "/": "/library/book". A
    /// node outside of the tree starts with the bare name of the outermost node.
    [[nodiscard]] NuXmlString NodePath(bool localNamesOnly) const;
    /// @}

    /// \name Content
    /// @{
    [[nodiscard]] virtual NuXmlString get_nodeValue() const;
    virtual void set_nodeValue(std::u16string_view value);
    [[nodiscard]] virtual NuXmlString get_text() const;
    virtual void set_text(std::u16string_view text);
    /// The node written as XML text.
    [[nodiscard]] virtual NuXmlString get_xml() const;
    /// The same with line breaks and indentation.
    [[nodiscard]] NuXmlString get_formattedXml() const;
    /// What an element's child elements are written as, one behind the other; the same as get_xml
    /// for other nodes.
    /// Deliberate: text, comments and instructions between the child elements are left out.
    [[nodiscard]] NuXmlString get_innerxml() const;
    [[nodiscard]] NuXmlString get_formattedInnerXml() const;
    /// Parses `xml` and puts the nodes below this one, in place of its children; attributes stay.
    /// What is wrong with the text throws as TNuSAXXMLReader::Parse does, what was read before
    /// stays there. ENuDomHierarchyRequest when the node cannot have children.
    virtual void set_innerxml(std::u16string_view xml);
    /// @}

    /// \name Neighbours
    /// Null where there is none.
    /// Deliberate: only elements know their siblings, other nodes throw ENuDomNotSupported.
    /// @{
    [[nodiscard]] TNuDOMNode* get_parentNode() const noexcept { return parent_; }
    [[nodiscard]] virtual TNuDOMNodeList& get_childNodes();
    [[nodiscard]] virtual TNuDOMNode* get_firstChild() const;
    [[nodiscard]] virtual TNuDOMNode* get_lastChild() const;
    [[nodiscard]] virtual TNuDOMNode* get_previousSibling() const;
    [[nodiscard]] virtual TNuDOMNode* get_nextSibling() const;
    [[nodiscard]] virtual TNuDOMAttrList& get_attributes();
    [[nodiscard]] virtual bool hasChildNodes() const;
    [[nodiscard]] virtual TNuDOMNode* FirstChild() const;
    [[nodiscard]] virtual TNuDOMNode* LastChild() const;
    /// @}

    /// \name Changing the tree
    /// A node that is linked leaves its old place first; one of another document is adopted.
    /// Throws ENuDomHierarchyRequest when the node cannot stand there.
    /// @{
    virtual void appendChild(TNuDOMNode& child);
    /// Throws ENuDomException without a reference.
    virtual void insertBefore(TNuDOMNode& child, TNuDOMNode* reference);
    /// Takes `child` out of the tree, whatever its parent is; it goes when the handle that is given
    /// back is dropped and nobody else holds it.
    virtual NuRef<TNuDOMNode> removeChild(TNuDOMNode& child);
    /// Never supported.
    NuRef<TNuDOMNode> replaceChild(TNuDOMNode& child, TNuDOMNode& former);
    NuRef<TNuDOMNode> cloneNode(bool deep) const;
    void normalize();
    NuXmlString transformNode(TNuDOMNode& stylesheet) const;
    void transformNode(TNuDOMNode& stylesheet, TNuDOMDocument& output) const;
    /// @}

    /// \name Selecting by path
    /// @{
    /// A new list of the nodes at `path`, in the order of selection.
    [[nodiscard]] virtual NuRef<TNuDOMNodeList> CreateNodeList(std::u16string_view path,
                                                               TNuDOMSelectOptions options = {});
    /// The only node at `path`; null when there is none, or more than one.
    virtual TNuDOMNode* SelectSingleNode(std::u16string_view path,
                                         TNuDOMSelectOptions options = {});
    /// @}

    /// \name Writing
    /// Everything is written as UTF-16; a document has forms of its own that follow its encoding.
    /// @{
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

    [[noreturn]] static void raiseNotSupported();
    [[noreturn]] void raiseNoParentOf(const TNuDOMNode& child) const;
    [[nodiscard]] nu::NodeExtras& extras();
    /// The node's lists, null before the first was asked for.
    [[nodiscard]] nu::NodeLists* listsIfAny() const noexcept;
    [[nodiscard]] nu::NodeLists& lists();

private:
    friend class nu::AttributeChain;
    friend class nu::DocumentLifetime;
    friend class nu::NodeChain;
    friend class nu::NodeAccess;

    void rename(const nu::NodeName* name) noexcept;
    void unlink();
    void linkBelow(TNuDOMNode& parent, TNuDOMPosition position, TNuDOMNode* reference);
    void settle(TNuDOMNode* former, TNuDOMNode* formerNext, bool wasWaiting) noexcept;
    void checkCanStandBelow(const TNuDOMNode& parent, TNuDOMPosition position,
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
    friend class nu::NodeChain;

    TNuDOMNode* previous_ = nullptr;
};
