#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <variant>
#include <vector>

#include "host/runtime/enumNames.h"
#include "host/runtime/set.h"
#include "host/runtime/typeAccess.h"
#include "host/runtime/variant.h"

/// \file
/// From a C++ type to the constant that describes it. All of it is done while the compiler runs; a
/// type that cannot be published stops it with the reason.

/// \cond internal
namespace host::detail {

template <class Type> struct TypeRecord;

template <class Type> constexpr ValueType scalarRecord(ValueKind kind) noexcept {
    ValueType record;
    record.kind = kind;
    record.make = makeValue<Type>;
    record.destroy = destroyValue<Type>;
    return record;
}

template <class Type> constexpr ValueType wideRecord(ValueKind kind) noexcept {
    ValueType record = scalarRecord<Type>(kind);
    record.size = sizeof(Type);
    record.isSigned = std::is_signed_v<Type>;
    return record;
}

template <class Enum> constexpr ValueType enumRecord() noexcept {
    static_assert(NamedEnum<Enum>, "a published enumeration needs host::EnumNames");
    static_assert(areEnumNames(EnumNames<Enum>::all),
                  "the name of an enumeration's value is doubled, empty, a number or two words");
    ValueType record = wideRecord<Enum>(isSet<Enum> ? ValueKind::Set : ValueKind::Enumeration);
    record.isSigned = std::is_signed_v<std::underlying_type_t<Enum>>;
    record.isBits = isSet<Enum>;
    record.names = EnumNames<Enum>::all;
    return record;
}

template <class Type, class Element>
constexpr ValueType listRecord(const ListOperations& operations) noexcept {
    ValueType record = scalarRecord<Type>(ValueKind::List);
    record.element = &TypeRecord<Element>::record;
    record.list = &operations;
    return record;
}

template <class Type> constexpr ValueType slotRecord(const SlotOperations& operations) noexcept {
    ValueType record = scalarRecord<Type>(ValueKind::Slot);
    record.slot = &operations;
    return record;
}

constexpr bool isKeyKind(ValueKind kind) noexcept {
    return kind <= ValueKind::Utf8String && kind != ValueKind::Set;
}

template <class Map, class Key, class Value> constexpr ValueType mapRecord() noexcept {
    static_assert(isKeyKind(TypeRecord<Key>::record.kind),
                  "the keys of a published map have to be numbers, strings or enumerations");
    ValueType record = scalarRecord<Map>(ValueKind::Map);
    record.key = &TypeRecord<Key>::record;
    record.element = &TypeRecord<Value>::record;
    record.map = &MapAccess<Map>::operations;
    return record;
}

template <class Type> constexpr ValueType recordOf() noexcept {
    if constexpr (std::is_same_v<Type, bool>) {
        return scalarRecord<Type>(ValueKind::Boolean);
    } else if constexpr (std::is_integral_v<Type>) {
        static_assert(!std::is_same_v<Type, char> && !std::is_same_v<Type, wchar_t> &&
                          !std::is_same_v<Type, char8_t> && !std::is_same_v<Type, char16_t> &&
                          !std::is_same_v<Type, char32_t>,
                      "a character is no value that can be published; a string is");
        return wideRecord<Type>(ValueKind::Integer);
    } else if constexpr (std::is_enum_v<Type>) {
        return enumRecord<Type>();
    } else if constexpr (std::is_class_v<Type>) {
        ValueType record = scalarRecord<Type>(ValueKind::Object);
        record.slot = &ObjectAccess<Type>::operations;
        return record;
    } else {
        static_assert(!std::is_same_v<Type, Type>, "this type cannot be published");
        return {};
    }
}

template <class Type> struct TypeRecord { static constexpr ValueType record = recordOf<Type>(); };

template <ValueKind kind, class Type> struct SimpleRecord {
    static constexpr ValueType record = scalarRecord<Type>(kind);
};

template <> struct TypeRecord<float> : SimpleRecord<ValueKind::Single, float> {};
template <> struct TypeRecord<double> : SimpleRecord<ValueKind::Double, double> {};
template <> struct TypeRecord<Currency> : SimpleRecord<ValueKind::Currency, Currency> {};
template <> struct TypeRecord<TDateTime> : SimpleRecord<ValueKind::DateTime, TDateTime> {};
template <> struct TypeRecord<std::u16string> : SimpleRecord<ValueKind::String, std::u16string> {};
template <> struct TypeRecord<std::string> : SimpleRecord<ValueKind::Utf8String, std::string> {};
template <> struct TypeRecord<Variant> : SimpleRecord<ValueKind::Variant, Variant> {};
template <>
struct TypeRecord<std::vector<std::uint8_t>>
    : SimpleRecord<ValueKind::Bytes, std::vector<std::uint8_t>> {};
template <>
struct TypeRecord<std::vector<std::int32_t>>
    : SimpleRecord<ValueKind::Int32Array, std::vector<std::int32_t>> {};
template <>
struct TypeRecord<std::vector<std::u16string>>
    : SimpleRecord<ValueKind::StringArray, std::vector<std::u16string>> {};

template <class Enum> struct TypeRecord<Set<Enum>> {
    static_assert(NamedEnum<Enum>, "a published enumeration needs host::EnumNames");
    static_assert(areEnumNames(EnumNames<Enum>::all),
                  "the name of an enumeration's value is doubled, empty, a number or two words");
    static_assert(areSetValues(EnumNames<Enum>::all), "the values of a set are 0 to 63");
    static constexpr ValueType record = [] {
        ValueType set = wideRecord<Set<Enum>>(ValueKind::Set);
        set.names = EnumNames<Enum>::all;
        return set;
    }();
};

template <class Class, class Deleter> struct TypeRecord<std::unique_ptr<Class, Deleter>> {
    static_assert(std::is_same_v<Deleter, std::default_delete<Class>> && !std::is_array_v<Class>,
                  "a published pointer leads to one object, with no deleter of its own");
    static constexpr ValueType record =
        slotRecord<std::unique_ptr<Class>>(PointerAccess<std::unique_ptr<Class>>::operations);
};
template <class Class> struct TypeRecord<std::shared_ptr<Class>> {
    static constexpr ValueType record =
        slotRecord<std::shared_ptr<Class>>(PointerAccess<std::shared_ptr<Class>>::operations);
};
template <class Class> struct TypeRecord<Class*> {
    static_assert(std::is_class_v<Class>, "a published pointer leads to an object");
    static constexpr ValueType record = slotRecord<Class*>(PointerAccess<Class*>::operations);
};
template <class... Classes> struct TypeRecord<std::variant<Classes...>> {
    static_assert((std::is_class_v<Classes> && ...), "a published variant holds objects");
    static constexpr ValueType record =
        slotRecord<std::variant<Classes...>>(AlternativesAccess<Classes...>::operations);
};
template <class Value> struct TypeRecord<std::optional<Value>> {
    static constexpr ValueType record = [] {
        ValueType optional = scalarRecord<std::optional<Value>>(ValueKind::Optional);
        optional.element = &TypeRecord<Value>::record;
        optional.optional = &OptionalAccess<std::optional<Value>>::operations;
        return optional;
    }();
    static_assert(record.element->kind != ValueKind::Optional &&
                      record.element->kind != ValueKind::Slot,
                  "an optional holds a value that is always there");
};
template <class Element> struct TypeRecord<std::vector<Element>> {
    static_assert(!std::is_same_v<Element, bool>,
                  "the elements of std::vector<bool> have no place; std::deque<bool>'s have");
    static constexpr ValueType record =
        listRecord<std::vector<Element>, Element>(ListAccess<std::vector<Element>>::operations);
};
template <class Element> struct TypeRecord<std::list<Element>> {
    static constexpr ValueType record =
        listRecord<std::list<Element>, Element>(ListAccess<std::list<Element>>::operations);
};
template <class Element> struct TypeRecord<std::deque<Element>> {
    static constexpr ValueType record =
        listRecord<std::deque<Element>, Element>(ListAccess<std::deque<Element>>::operations);
};
template <class Element, std::size_t count> struct TypeRecord<std::array<Element, count>> {
    static constexpr ValueType record = listRecord<std::array<Element, count>, Element>(
        ArrayAccess<std::array<Element, count>>::operations);
};
template <class Key, class Value> struct TypeRecord<std::map<Key, Value>> {
    static constexpr ValueType record = mapRecord<std::map<Key, Value>, Key, Value>();
};
template <class Key, class Value> struct TypeRecord<std::unordered_map<Key, Value>> {
    static constexpr ValueType record = mapRecord<std::unordered_map<Key, Value>, Key, Value>();
};
template <class Signature> struct TypeRecord<std::function<Signature>> {
    static_assert(!std::is_same_v<Signature, Signature>, "events cannot be published");
};

/// What a getter's result is kept as.
template <class Type> struct KeptAs { using type = Type; };
template <> struct KeptAs<std::u16string_view> { using type = std::u16string; };
template <> struct KeptAs<std::string_view> { using type = std::string; };

} // namespace host::detail
/// \endcond
