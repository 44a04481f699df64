#pragma once

#include <type_traits>

#include "host/com/ref.h"
#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/face.h"
#include "nuXmlDOM/core/implementation.h"
#include "nuXmlDOM/core/nodeKinds.h"
#include "nuXmlDOM/core/nodeList.h"
#include "nuXmlDOM/face/interfaces.h"

/// \file
/// The one place where objects of the tree become counted interfaces, and interfaces become
/// objects.

namespace nu {

/// The two interfaces that a class of nodes is known by: the host's and the library's own. All
/// others that lead to a node extend or stand beside these.
template <class Object> struct InterfacesOf {
    using Host = host::IDOMNode;
    using Library = INuDOMNode;
};
template <> struct InterfacesOf<TNuDOMElement> {
    using Host = host::IDOMElement;
    using Library = INuDOMElement;
};
template <> struct InterfacesOf<TNuDOMAttribute> {
    using Host = host::IDOMAttr;
    using Library = INuDOMAttribute;
};
template <> struct InterfacesOf<TNuDOMText> {
    using Host = host::IDOMText;
    using Library = INuDOMNode;
};
template <> struct InterfacesOf<TNuDOMCDATA> {
    using Host = host::IDOMCDATASection;
    using Library = INuDOMNode;
};
template <> struct InterfacesOf<TNuDOMComment> {
    using Host = host::IDOMComment;
    using Library = INuDOMNode;
};
template <> struct InterfacesOf<TNuDOMProcessingInstruction> {
    using Host = host::IDOMProcessingInstruction;
    using Library = INuDOMNode;
};
template <> struct InterfacesOf<TNuDOMDocument> {
    using Host = host::IDOMDocument;
    using Library = INuDOMDocument;
};

/// The face of a node, with the ways to its two interfaces that need no search.
class NodeFaceBase : public Face {
public:
    [[nodiscard]] virtual host::IDOMNode& hostNode() noexcept = 0;
    [[nodiscard]] virtual INuDOMNode& nativeNode() noexcept = 0;
};

/// The ways into an object that only its faces need.
class FaceAccess {
public:
    [[nodiscard]] static Face& face(TNuDOMObject& object) { return object.face(); }
    [[nodiscard]] static NodeFaceBase& face(TNuDOMNode& node) {
        return static_cast<NodeFaceBase&>(face(static_cast<TNuDOMObject&>(node)));
    }
    /// The object as a node, or null when it is none.
    [[nodiscard]] static TNuDOMNode* asNode(TNuDOMObject& object) noexcept {
        return object.nodeType_ != 0 ? static_cast<TNuDOMNode*>(&object) : nullptr;
    }
};

/// The interface `Interface` of an object, counted; an empty handle for null.
template <class Interface, class Object>
[[nodiscard]] host::Ref<Interface> toInterface(Object* object) {
    if (object == nullptr) {
        return {};
    }
    if constexpr (!std::is_base_of_v<TNuDOMNode, Object>) {
        return host::Ref<Interface>(
            static_cast<Interface*>(FaceAccess::face(*object).find(Interface::Id)));
    } else if constexpr (std::is_base_of_v<INuDOMNode, Interface>) {
        static_assert(std::is_base_of_v<Interface, typename InterfacesOf<Object>::Library>);
        return host::Ref<Interface>(
            static_cast<Interface*>(&FaceAccess::face(*object).nativeNode()));
    } else {
        static_assert(std::is_base_of_v<Interface, typename InterfacesOf<Object>::Host>);
        return host::Ref<Interface>(static_cast<Interface*>(&FaceAccess::face(*object).hostNode()));
    }
}
template <class Interface, class Object>
[[nodiscard]] host::Ref<Interface> toInterface(Object& object) {
    return toInterface<Interface>(&object);
}
template <class Interface, class Object>
[[nodiscard]] host::Ref<Interface> toInterface(const NuRef<Object>& object) {
    return toInterface<Interface>(object.get());
}

/// The node behind an interface; null for null. Throws host::ESystemError with the code
/// host::resultNoInterface when it is an object of another library.
[[nodiscard]] TNuDOMNode* nodeBehind(host::IUnknown* interface);

/// The node behind an interface, which the caller must have passed: throws host::EInvalidPointer
/// for null, as nodeBehind for a foreign one, and host::EInvalidCast for a node of another class.
template <class Object> [[nodiscard]] Object& toObject(host::IDOMNode* interface);

[[noreturn]] void raiseNodeRequired();

template <class Object> Object& toObject(host::IDOMNode* interface) {
    TNuDOMNode* const node = nodeBehind(interface);
    if (node == nullptr) {
        raiseNodeRequired();
    }
    if constexpr (std::is_same_v<Object, TNuDOMNode>) {
        return *node;
    } else {
        return cast<Object>(*node);
    }
}

} // namespace nu
