#pragma once

#include "nuXmlDOM/face/objectFace.h"

namespace nu {

/// The face of a node: the operations that every kind of node has. A kind without an operation of
/// its own has the one of its class, which refuses.
template <class Object, class... More>
class NodeFace : public ObjectFace<NodeFaceBase, Object, typename InterfacesOf<Object>::Host,
                                   typename InterfacesOf<Object>::Library, host::IDOMNodeSelect,
                                   More..., INuDomObject> {
    using HostInterface = typename InterfacesOf<Object>::Host;
    using LibraryInterface = typename InterfacesOf<Object>::Library;
    using ObjectBase = ObjectFace<NodeFaceBase, Object, HostInterface, LibraryInterface,
                                  host::IDOMNodeSelect, More..., INuDomObject>;

public:
    using LibraryInterface::SaveToStream;
    using ObjectBase::ObjectBase;
    using Result = host::ResultCode;
    using NodeResult = host::Ref<host::IDOMNode>;

    host::IDOMNode& hostNode() noexcept override { return static_cast<HostInterface&>(*this); }
    INuDOMNode& nativeNode() noexcept override { return static_cast<LibraryInterface&>(*this); }

    // Names and kind

    Result get_nodeName(std::u16string& name) noexcept override {
        return host::guardCall(name, [&] { return object_.get_nodeName(); });
    }
    Result set_nodeName(std::u16string_view name) noexcept override {
        return host::guardCall([&] { object_.set_nodeName(name); });
    }
    Result get_nodeType(host::DOMNodeType& type) noexcept override {
        return host::guardCall(type, [&] { return object_.get_nodeType(); });
    }
    Result get_namespaceURI(std::u16string& namespaceURI) noexcept override {
        return host::guardCall(namespaceURI, [&] { return object_.get_namespaceURI(); });
    }
    Result get_prefix(std::u16string& prefix) noexcept override {
        return host::guardCall(prefix, [&] { return object_.get_prefix(); });
    }
    Result set_prefix(std::u16string_view prefix) noexcept override {
        return host::guardCall([&] { object_.set_prefix(prefix); });
    }
    Result get_localName(std::u16string& localName) noexcept override {
        return host::guardCall(localName, [&] { return object_.get_localName(); });
    }
    Result NodePath(bool localNamesOnly, std::u16string& path) noexcept override {
        return host::guardCall(path, [&] { return object_.NodePath(localNamesOnly); });
    }
    Result supports(std::u16string_view feature, std::u16string_view version,
                    bool& isSupported) noexcept override {
        return host::guardCall(isSupported, [&] { return object_.supports(feature, version); });
    }

    // Content

    Result get_nodeValue(std::u16string& value) noexcept override {
        return host::guardCall(value, [&] { return object_.get_nodeValue(); });
    }
    Result set_nodeValue(std::u16string_view value) noexcept override {
        return host::guardCall([&] { object_.set_nodeValue(value); });
    }
    Result get_text(std::u16string& text) noexcept override {
        return host::guardCall(text, [&] { return object_.get_text(); });
    }
    Result set_text(std::u16string_view text) noexcept override {
        return host::guardCall([&] { object_.set_text(text); });
    }
    Result get_xml(std::u16string& xml) noexcept override {
        return host::guardCall(xml, [&] { return object_.get_xml(); });
    }
    Result get_formattedXml(std::u16string& xml) noexcept override {
        return host::guardCall(xml, [&] { return object_.get_formattedXml(); });
    }
    Result get_innerxml(std::u16string& xml) noexcept override {
        return host::guardCall(xml, [&] { return object_.get_innerxml(); });
    }
    Result get_formattedInnerXml(std::u16string& xml) noexcept override {
        return host::guardCall(xml, [&] { return object_.get_formattedInnerXml(); });
    }
    Result set_innerxml(std::u16string_view xml) noexcept override {
        return host::guardCall([&] { object_.set_innerxml(xml); });
    }
    Result SaveToStream(host::TStream& stream) noexcept override {
        return host::guardCall([&] { object_.SaveToStream(stream); });
    }

    // Neighbours

    Result get_parentNode(NodeResult& parent) noexcept override {
        return giveInterface(parent, [&] { return object_.get_parentNode(); });
    }
    Result get_parentNodeEx(host::Ref<INuDOMNode>& parent) noexcept override {
        return giveInterface(parent, [&] { return object_.get_parentNode(); });
    }
    Result get_childNodes(host::Ref<host::IDOMNodeList>& children) noexcept override {
        return giveInterface(
            children, [&]() -> auto& { return object_.get_childNodes(); });
    }
    Result get_firstChild(NodeResult& child) noexcept override {
        return giveInterface(child, [&] { return object_.get_firstChild(); });
    }
    Result get_lastChild(NodeResult& child) noexcept override {
        return giveInterface(child, [&] { return object_.get_lastChild(); });
    }
    Result get_previousSibling(NodeResult& sibling) noexcept override {
        return giveInterface(sibling, [&] { return object_.get_previousSibling(); });
    }
    Result get_nextSibling(NodeResult& sibling) noexcept override {
        return giveInterface(sibling, [&] { return object_.get_nextSibling(); });
    }
    Result get_attributes(host::Ref<host::IDOMNamedNodeMap>& attributes) noexcept override {
        return giveInterface(
            attributes, [&]() -> auto& { return object_.get_attributes(); });
    }
    Result get_ownerDocument(host::Ref<host::IDOMDocument>& document) noexcept override {
        return giveInterface(document, [&] { return object_.get_ownerDocument(); });
    }
    Result hasChildNodes(bool& hasChildren) noexcept override {
        return host::guardCall(hasChildren, [&] { return object_.hasChildNodes(); });
    }

    // Changing the tree

    /// Deliberate: the node that came in is not given back, although W3C says so; applications rely
    /// on the empty handle.
    Result appendChild(host::IDOMNode* child, NodeResult& appended) noexcept override {
        return guardWithoutResult(appended, [&] { object_.appendChild(childBehind(child)); });
    }
    /// Deliberate: gives no node back, as appendChild.
    Result insertBefore(host::IDOMNode* child, host::IDOMNode* reference,
                        NodeResult& inserted) noexcept override {
        return guardWithoutResult(inserted, [&] {
            TNuDOMNode& node = childBehind(child);
            object_.insertBefore(node, hasChildren ? nodeBehind(reference) : nullptr);
        });
    }
    Result removeChild(host::IDOMNode* child, NodeResult& removed) noexcept override {
        return giveInterface(removed, [&] { return object_.removeChild(childBehind(child)); });
    }

    // Never supported, so it does not matter what nodes these get: the failure is the same when the
    // caller's are null or of another library.

    Result replaceChild(host::IDOMNode* /*child*/, host::IDOMNode* /*former*/,
                        NodeResult& replaced) noexcept override {
        return giveInterface(replaced, [&] { return object_.replaceChild(object_, object_); });
    }
    Result cloneNode(bool deep, NodeResult& clone) noexcept override {
        return giveInterface(clone, [&] { return object_.cloneNode(deep); });
    }
    Result normalize() noexcept override {
        return host::guardCall([&] { object_.normalize(); });
    }
    Result transformNode(host::IDOMNode* /*stylesheet*/, std::u16string& output) noexcept override {
        return host::guardCall(output, [&] { return object_.transformNode(object_); });
    }
    Result transformNode(host::IDOMNode* /*stylesheet*/,
                         host::IDOMDocument* /*output*/) noexcept override {
        return host::guardCall(
            [&] { object_.transformNode(object_, *object_.get_ownerDocument()); });
    }

    // Selecting by path

    Result selectNode(std::u16string_view path, NodeResult& node) noexcept override {
        return selectNode(path, {}, node);
    }
    Result selectNode(std::u16string_view path, TNuDOMSelectOptions options,
                      NodeResult& node) noexcept override {
        return giveInterface(node, [&] { return object_.SelectSingleNode(path, options); });
    }
    Result selectNodes(std::u16string_view path,
                       host::Ref<host::IDOMNodeList>& nodes) noexcept override {
        return selectNodes(path, {}, nodes);
    }
    Result selectNodes(std::u16string_view path, TNuDOMSelectOptions options,
                       host::Ref<host::IDOMNodeList>& nodes) noexcept override {
        return giveInterface(nodes, [&] { return object_.CreateNodeList(path, options); });
    }

protected:
    using ObjectBase::object_;

private:
    static constexpr bool hasChildren =
        std::is_same_v<Object, TNuDOMElement> || std::is_same_v<Object, TNuDOMDocument>;

    /// The node that an operation on children is about. Kinds without children refuse the operation
    /// whatever node it gets, so there the caller's may be null or of another library.
    [[nodiscard]] TNuDOMNode& childBehind(host::IDOMNode* child) {
        if constexpr (hasChildren) {
            return toObject<TNuDOMNode>(child);
        } else {
            return object_;
        }
    }
};

} // namespace nu
