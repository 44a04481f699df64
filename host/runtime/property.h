#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "host/runtime/memberName.h"
#include "host/runtime/propertyAccess.h"
#include "host/runtime/valueTypeOf.h"

/// \file
/// The lines of a description, host::prop and host::ref. All of it is done while the compiler runs.

namespace host {

/// \cond internal
namespace detail {

template <class Pointer> struct ReferenceType {
    static constexpr ValueType record = [] {
        ValueType reference = scalarRecord<Pointer>(ValueKind::Reference);
        reference.reference = &ReferenceAccess<Pointer>::operations;
        return reference;
    }();
};

template <class Value>
inline constexpr bool isText = TypeRecord<Value>::record.kind == ValueKind::String;

template <class Value> constexpr DefaultValue defaultValue(const Value& value) {
    constexpr ValueKind kind = TypeRecord<Value>::record.kind;
    static_assert(kind < ValueKind::String, "only values of one piece have a default");
    if constexpr (kind == ValueKind::Single || kind == ValueKind::Double) {
        return {DefaultValue::Kind::Real, 0, static_cast<double>(value), u""};
    } else if constexpr (kind == ValueKind::DateTime) {
        return {DefaultValue::Kind::Real, 0, value.serial, u""};
    } else if constexpr (kind == ValueKind::Currency) {
        return {DefaultValue::Kind::Integer, value.scaled, 0, u""};
    } else if constexpr (requires { value.bits(); }) {
        return {DefaultValue::Kind::Integer, static_cast<std::int64_t>(value.bits()), 0, u""};
    } else {
        return {DefaultValue::Kind::Integer, static_cast<std::int64_t>(value), 0, u""};
    }
}

} // namespace detail
/// \endcond

/// One line of a description; host::prop and host::ref make it.
template <class Value> struct Property {
    TPropInfo info; ///< what is known at run time

    /// The value that need not be written, which a fresh object has to have
    /// (host::CheckDefaults). For numbers, booleans, amounts, dates, enumerations, sets and
    /// std::u16string; a text has to be a constant.
    [[nodiscard]] constexpr Property Default(
        const std::conditional_t<detail::isText<Value>, std::u16string_view, Value>& value) const {
        Property changed = *this;
        if constexpr (detail::isText<Value>) {
            changed.info.defaultValue = {DefaultValue::Kind::Text, 0, 0, value};
        } else {
            changed.info.defaultValue = detail::defaultValue<Value>(value);
        }
        return changed;
    }
    /// A further name that is read like the property's own; up to four.
    [[nodiscard]] constexpr Property Alias(std::u16string_view name) const {
        Property changed = *this;
        std::size_t index = 0;
        while (!changed.info.aliases[index].empty()) {
            ++index;
        }
        changed.info.aliases[index] = name;
        return changed;
    }
    /// A member, or a function without arguments, that tells whether the value is written at all.
    template <auto Test> [[nodiscard]] constexpr Property Stored() const {
        Property changed = *this;
        changed.info.isStored = detail::isStored<Test>;
        return changed;
    }
};

/// A property through a data member, or through a getter and a setter. Without a setter a value
/// that a getter gives is written only; an object that it leads to is read in place. The name is
/// that of the member (without "Get") unless one is given.
template <auto Get, auto Set = nullptr>
constexpr auto prop(std::u16string_view name = memberName<Get>) {
    using Access = detail::PropertyAccess<Get, Set>;
    Property<typename Access::Value> property;
    property.info.name = name;
    property.info.type = &valueTypeOf<typename Access::Value>;
    if constexpr (Access::hasPlace) {
        property.info.place = Access::place;
    } else {
        property.info.get = Access::get;
    }
    if constexpr (Access::hasMutablePlace) {
        property.info.mutablePlace = Access::mutablePlace;
    }
    if constexpr (Access::hasSetter) {
        property.info.set = Access::set;
    }
    return property;
}

/// A pointer to an object that is published elsewhere and belongs to somebody else. It is written
/// as the name of that object, which is its published text property "Name", and found again by that
/// name when everything has been read.
template <auto Get, auto Set = nullptr>
constexpr auto ref(std::u16string_view name = memberName<Get>) {
    using Access = detail::PropertyAccess<Get, Set>;
    using Pointer = typename Access::Value;
    static_assert(std::is_pointer_v<Pointer>, "a reference is a raw pointer to an object");
    auto property = prop<Get, Set>(name);
    property.info.type = &detail::ReferenceType<Pointer>::record;
    return property;
}

} // namespace host
