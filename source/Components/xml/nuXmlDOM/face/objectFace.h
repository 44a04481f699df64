#pragma once

#include <utility>

#include "host/com/boundary.h"
#include "host/com/implements.h"
#include "nuXmlDOM/face/convert.h"

namespace nu {

/// Runs an operation that gives nothing although the interface has a place for it: `result` is
/// cleared and stays so.
template <class Result, class Operation>
host::ResultCode guardWithoutResult(Result& result, Operation&& operation) noexcept {
    return host::guardCall(result, [&] {
        std::forward<Operation>(operation)();
        return Result();
    });
}

/// Runs an operation that gives an object, or a handle to one, and puts its interface into
/// `result`.
template <class Interface, class Operation>
host::ResultCode giveInterface(host::Ref<Interface>& result, Operation&& operation) noexcept {
    return host::guardCall(
        result, [&] { return toInterface<Interface>(std::forward<Operation>(operation)()); });
}

/// What the faces of all objects have in common: they count and find interfaces through their
/// object. The first interface that extends another stands for it, so the base interface of an
/// object is always the same pointer.
///
/// A derived class adds operations only: all that there is to a face is the reference to its
/// object, and nothing has to be done when it goes.
template <class FaceBase, class Object, class... Interfaces>
class ObjectFace : public FaceBase, public Interfaces... {
public:
    using Whole = ObjectFace;

    explicit ObjectFace(Object& object) noexcept : object_(object) {}

    host::ResultCode QueryInterface(const host::InterfaceId& id, void** object) noexcept override {
        return object_.QueryInterface(id, object);
    }
    std::int32_t _AddRef() noexcept override { return object_._AddRef(); }
    std::int32_t _Release() noexcept override { return object_._Release(); }
    TNuDOMObject* AsObject() noexcept override { return &object_; }

    [[nodiscard]] void* find(const host::InterfaceId& id) noexcept override {
        return host::findInterface<Interfaces...>(this, id);
    }
    [[nodiscard]] std::size_t size() const noexcept override { return sizeof(ObjectFace); }

protected:
    Object& object_;
};

} // namespace nu
