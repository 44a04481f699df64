#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "host/runtime/typeAccess.h"
#include "host/runtime/typeRecord.h"

/// \file
/// How a property is reached while a program runs: through a member, or a getter and a setter.

/// \cond internal
namespace host::detail {

template <class Type, class Class> std::type_identity<Class> classOfPointer(Type Class::*);
template <auto Member> using MemberClass = typename decltype(classOfPointer(Member))::type;

/// What a member, or a call of it, is as seen from an object.
template <auto Member, class Object> decltype(auto) access(Object& object) {
    if constexpr (std::is_member_function_pointer_v<decltype(Member)>) {
        return (object.*Member)();
    } else {
        return (object.*Member);
    }
}

template <class Pointer> struct MemberResult;
template <class Type, class Class>
requires(!std::is_function_v<Type>) struct MemberResult<Type Class::*> {
    using type = Type&;
};
template <class Type, class Class> struct MemberResult<Type (Class::*)() const> {
    using type = Type;
};
template <class Type, class Class> struct MemberResult<Type (Class::*)() const noexcept> {
    using type = Type;
};
template <class Type, class Class> struct MemberResult<Type (Class::*)()> { using type = Type; };
template <class Type, class Class> struct MemberResult<Type (Class::*)() noexcept> {
    using type = Type;
};

/// A property through a member or a getter and, perhaps, a setter.
template <auto Get, auto Set> struct PropertyAccess {
    using Class = MemberClass<Get>;
    using Result = typename MemberResult<decltype(Get)>::type;
    using Value = typename KeptAs<std::remove_cvref_t<Result>>::type;
    static constexpr bool hasSetter = !std::is_null_pointer_v<decltype(Set)>;
    /// Whether the result is the value itself and no copy of it.
    static constexpr bool hasPlace =
        std::is_reference_v<Result> && std::is_same_v<std::remove_cvref_t<Result>, Value>;
    static constexpr bool hasMutablePlace =
        hasPlace && !hasSetter && !std::is_const_v<std::remove_reference_t<Result>>;

    /// Getters may be declared without const; reading is asked of objects that may be changed.
    static Class& objectAt(const void* self) noexcept {
        return *fromRoot<Class>(const_cast<void*>(self));
    }
    static const void* place(const void* self) { return &access<Get>(objectAt(self)); }
    static void* mutablePlace(void* self) { return &access<Get>(objectAt(self)); }
    static void get(const void* self, void* value) {
        *static_cast<Value*>(value) = static_cast<Value>(access<Get>(objectAt(self)));
    }
    static void set(void* self, void* value) {
        static_assert(std::is_invocable_v<decltype(Set), Class&, Value>,
                      "the getter and the setter of a property have to agree");
        (objectAt(self).*Set)(std::move(*static_cast<Value*>(value)));
    }
};

template <auto Test> bool isStored(const void* self) {
    using Class = MemberClass<Test>;
    return static_cast<bool>(access<Test>(*fromRoot<Class>(self)));
}

} // namespace host::detail
/// \endcond
