#pragma once

#include <type_traits>

#include "host/runtime/published.h"

/// \file
/// Objects of any described class as parameters.

/// An object that is looked at: of a class that derives from host::TObject, or of one that
/// host::describe describes. Made from a reference or a pointer; may be null. Nothing is owned.
class TNuConstObjectRef {
public:
    TNuConstObjectRef(std::nullptr_t) noexcept {}
    template <class Class>
    requires(!std::is_pointer_v<Class> && !std::is_base_of_v<TNuConstObjectRef, Class>)
        TNuConstObjectRef(const Class& object)
    noexcept : instance_(host::instance(object)) {}
    template <class Class> TNuConstObjectRef(const Class* object) noexcept {
        if (object != nullptr) {
            instance_ = host::instance(*object);
        }
    }

    /// The object and its class; nothing in it for null.
    [[nodiscard]] host::Instance Instance() const noexcept { return instance_; }
    explicit operator bool() const noexcept { return static_cast<bool>(instance_); }

private:
    host::Instance instance_;
};

/// An object that may be changed.
class TNuObjectRef : public TNuConstObjectRef {
public:
    TNuObjectRef(std::nullptr_t) noexcept : TNuConstObjectRef(nullptr) {}
    template <class Class>
    requires(!std::is_const_v<Class> && !std::is_pointer_v<Class> &&
             !std::is_base_of_v<TNuConstObjectRef, Class>) TNuObjectRef(Class& object)
    noexcept : TNuConstObjectRef(object) {}
    template <class Class>
    requires(!std::is_const_v<Class>) TNuObjectRef(Class* object)
    noexcept : TNuConstObjectRef(object) {}
};
