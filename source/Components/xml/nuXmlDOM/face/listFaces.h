#pragma once

#include "nuXmlDOM/face/objectFace.h"

/// \file
/// The faces of what is no node: lists and the implementation object.

namespace nu {

/// What lists and maps have in common.
template <class Object, class Interface>
class MembersFace : public ObjectFace<Face, Object, Interface, INuDomObject> {
    using ObjectBase = ObjectFace<Face, Object, Interface, INuDomObject>;

public:
    using ObjectBase::ObjectBase;
    using Result = host::ResultCode;

    Result get_item(host::DOMLength index, host::Ref<host::IDOMNode>& node) noexcept override {
        return giveInterface(node, [&] { return object_.GetItem(index); });
    }
    Result get_length(host::DOMLength& length) noexcept override {
        return host::guardCall(length,
                               [&] { return static_cast<host::DOMLength>(object_.Count()); });
    }

protected:
    using ObjectBase::object_;
};

class NodeListFace final : public MembersFace<TNuDOMNodeList, host::IDOMNodeList> {
public:
    using MembersFace<TNuDOMNodeList, host::IDOMNodeList>::MembersFace;
};

class AttributeMapFace final : public MembersFace<TNuDOMAttrList, host::IDOMNamedNodeMap> {
public:
    using MembersFace<TNuDOMAttrList, host::IDOMNamedNodeMap>::MembersFace;
    using NodeResult = host::Ref<host::IDOMNode>;
    using Text = std::u16string_view;

    Result getNamedItem(Text name, NodeResult& node) noexcept override {
        return giveInterface(node, [&] { return object_.getNamedItem(name); });
    }
    Result removeNamedItem(Text name, NodeResult& removed) noexcept override {
        return giveInterface(removed, [&] { return object_.removeNamedItem(name); });
    }
    Result getNamedItemNS(Text namespaceURI, Text localName, NodeResult& node) noexcept override {
        return giveInterface(node, [&] { return object_.getNamedItemNS(namespaceURI, localName); });
    }
    Result removeNamedItemNS(Text namespaceURI, Text localName,
                             NodeResult& removed) noexcept override {
        return giveInterface(removed,
                             [&] { return object_.removeNamedItemNS(namespaceURI, localName); });
    }

    // Never supported; what they are given does not matter.

    Result setNamedItem(host::IDOMNode* /*node*/, NodeResult& replaced) noexcept override {
        return guardWithoutResult(replaced, [&] { object_.setNamedItem(*object_.Node()); });
    }
    Result setNamedItemNS(host::IDOMNode* /*node*/, NodeResult& replaced) noexcept override {
        return guardWithoutResult(replaced, [&] { object_.setNamedItemNS(*object_.Node()); });
    }
};

class ImplementationFace final
    : public ObjectFace<Face, TNuDOMImplementation, host::IDOMImplementation, INuDomObject> {
public:
    using ObjectFace::ObjectFace;
    using Result = host::ResultCode;
    using Text = std::u16string_view;

    Result hasFeature(Text feature, Text version, bool& hasIt) noexcept override {
        return host::guardCall(hasIt, [&] { return object_.hasFeature(feature, version); });
    }
    Result createDocumentType(Text qualifiedName, Text publicId, Text systemId,
                              host::Ref<host::IDOMDocumentType>& doctype) noexcept override {
        return guardWithoutResult(
            doctype, [&] { object_.createDocumentType(qualifiedName, publicId, systemId); });
    }
    Result createDocument(Text namespaceURI, Text qualifiedName, host::IDOMDocumentType* doctype,
                          host::Ref<host::IDOMDocument>& document) noexcept override {
        return giveInterface(
            document, [&] { return object_.createDocument(namespaceURI, qualifiedName, doctype); });
    }
};

} // namespace nu
