#pragma once

#include <type_traits>
#include <utility>

#include "host/com/unknown.h"

namespace host {

template <class Object> class Ref;
template <class Interface, class Object>
[[nodiscard]] Ref<Interface> queryInterface(Object* object) noexcept;

/// A counted handle: takes a reference when it gets an object, drops it when it lets go.
///
/// Works for everything with _AddRef and _Release, `Ref<const Object>` included. One handle is used
/// by one thread at a time.
template <class Object> class Ref {
public:
    Ref() noexcept = default;
    Ref(std::nullptr_t) noexcept {}
    /// Takes a reference to `object`, which may be null.
    Ref(Object* object) noexcept : object_(object) { take(); }
    Ref(const Ref& other) noexcept : object_(other.object_) { take(); }
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class Derived>
    requires std::is_convertible_v<Derived*, Object*> Ref(const Ref<Derived>& other)
    noexcept : Ref(other.get()) {}
    template <class Derived>
    requires std::is_convertible_v<Derived*, Object*> Ref(Ref<Derived>&& other)
    noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~Ref() { drop(); }

    Ref& operator=(const Ref& other) noexcept {
        Ref(other).swap(*this);
        return *this;
    }
    Ref& operator=(Ref&& other) noexcept {
        Ref(std::move(other)).swap(*this);
        return *this;
    }

    /// The object as a raw pointer, good as long as somebody holds it; null for an empty handle.
    [[nodiscard]] Object* get() const noexcept { return object_; }
    Object* operator->() const noexcept { return object_; }
    Object& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    friend bool operator==(const Ref& left, const Ref& right) noexcept = default;
    friend bool operator==(const Ref& left, const Object* right) noexcept {
        return left.object_ == right;
    }

    /// Lets go of the object.
    void reset() noexcept { Ref().swap(*this); }
    /// Exchanges what the two hold; the counts stay as they are.
    void swap(Ref& other) noexcept { std::swap(object_, other.object_); }

    /// The interface `Interface` of the same object, or an empty handle.
    template <class Interface> [[nodiscard]] Ref<Interface> as() const noexcept {
        return queryInterface<Interface>(object_);
    }

private:
    template <class Other> friend class Ref;

    /// The count is no part of what a constant object holds.
    [[nodiscard]] std::remove_const_t<Object>& changeable() const noexcept {
        return const_cast<std::remove_const_t<Object>&>(*object_);
    }
    void take() const noexcept {
        if (object_ != nullptr) {
            changeable()._AddRef();
        }
    }
    void drop() const noexcept {
        if (object_ != nullptr) {
            changeable()._Release();
        }
    }

    Object* object_ = nullptr;
};

/// The interface `Interface` of `object`, or an empty handle when the object is null or lacks it.
/// The object may be an interface or a class that offers several.
template <class Interface, class Object> Ref<Interface> queryInterface(Object* object) noexcept {
    void* found = nullptr;
    if (object == nullptr || object->QueryInterface(Interface::Id, &found) != resultOk) {
        return {};
    }
    Ref<Interface> handle(static_cast<Interface*>(found));
    handle->_Release(); // the handle has taken its own reference beside the one just given
    return handle;
}

/// Makes an object and gives the first counted handle to it.
template <class Object, class... Arguments>
[[nodiscard]] Ref<Object> makeRef(Arguments&&... arguments) {
    return Ref<Object>(new Object(std::forward<Arguments>(arguments)...));
}

} // namespace host
