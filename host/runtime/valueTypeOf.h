#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "host/runtime/classInfo.h"
#include "host/runtime/object.h"
#include "host/runtime/variant.h"

/// \file
/// Which C++ types can be published, and the constants that describe them. What is a value of its
/// own: bool, integers, enumerations with host::EnumNames, host::Set of them, float, double,
/// host::Currency, host::TDateTime, std::u16string, std::string (UTF-8), host::Variant, and vectors
/// of bytes, of 32-bit integers and of UTF-16 strings. What holds others: objects of described
/// classes; std::unique_ptr, std::shared_ptr and raw pointers to them; std::variant of them;
/// std::optional; std::vector, std::list, std::deque and std::array; std::map and
/// std::unordered_map.
///
/// A raw pointer that is published with host::prop belongs to the object: reading puts a new object
/// there, and the class deletes it. host::ref is for pointers to what others own.

namespace host {

/// What host::describe holds for a class that nobody described.
struct NotDescribed {};

/// The description of a class that cannot be changed: specialize it with what host::publish gives.
/// ```
/// template <> inline constexpr auto host::describe<Point> = host::publish<Point>(u"Point", ...);
/// ```
template <class Class> inline constexpr NotDescribed describe{};

/// \cond internal
namespace detail {

/// host::classOf, which comes later.
template <class Class> const TClassInfo& classInfoOf() noexcept;

template <class Class>
concept FreelyDescribed =
    !std::is_same_v<std::remove_const_t<decltype(describe<Class>)>, NotDescribed>;

template <class Class> constexpr const auto& tableOf() noexcept {
    if constexpr (FreelyDescribed<Class>) {
        return describe<Class>;
    } else {
        return Class::published;
    }
}

template <class Class>
concept Described = FreelyDescribed<Class> || requires {
    Class::published;
};

/// The uppermost class, whose address stands for that of the object.
template <class Class> constexpr auto rootType() noexcept {
    if constexpr (std::is_base_of_v<TObject, Class>) {
        return std::type_identity<TObject>();
    } else {
        using Base = typename std::remove_cvref_t<decltype(tableOf<Class>())>::Base;
        if constexpr (std::is_void_v<Base>) {
            return std::type_identity<Class>();
        } else {
            return rootType<Base>();
        }
    }
}
template <class Class> using Root = typename decltype(rootType<Class>())::type;

template <class Class> void* toRoot(const Class* object) noexcept {
    return const_cast<Root<Class>*>(static_cast<const Root<Class>*>(object));
}
template <class Class> Class* fromRoot(void* object) noexcept {
    return static_cast<Class*>(static_cast<Root<Class>*>(object));
}
template <class Class> const Class* fromRoot(const void* object) noexcept {
    return static_cast<const Class*>(static_cast<const Root<Class>*>(object));
}

/// The object with its own class.
template <class Class> Instance instanceOf(const Class* object) noexcept {
    static_assert(Described<Class>, "the class of a published object has to be described");
    if (object == nullptr) {
        return {};
    }
    if constexpr (std::is_base_of_v<TObject, Class>) {
        return {toRoot(object), &object->ClassInfo()};
    } else {
        return {toRoot(object), &classInfoOf<Class>()};
    }
}

template <class Type> void* makeValue() {
    if constexpr (std::is_default_constructible_v<Type>) {
        return new Type();
    } else {
        return nullptr;
    }
}
template <class Type> void destroyValue(void* value) noexcept { delete static_cast<Type*>(value); }

// Objects and places for them

template <class Class> struct ObjectAccess {
    static const TClassInfo* declaredClass(std::size_t index) {
        static_assert(Described<Class>, "the class of a published object has to be described");
        return index == 0 ? &classInfoOf<Class>() : nullptr;
    }
    static Instance get(const void* slot) {
        // What is held by value is of that class whatever it says of itself.
        return {toRoot(static_cast<const Class*>(slot)), &classInfoOf<Class>()};
    }
    static Instance create(void* slot, const TClassInfo& /*info*/) { return get(slot); }
    static void clear(void* /*slot*/) {}

    static constexpr SlotOperations operations{declaredClass, get, create, clear};
};

template <class Pointer> struct PointerAccess {
    using Class = typename std::pointer_traits<Pointer>::element_type;

    static Instance get(const void* slot) {
        return instanceOf<Class>(std::to_address(*static_cast<const Pointer*>(slot)));
    }
    static Instance create(void* slot, const TClassInfo& info) {
        const TClassInfo& made = std::is_base_of_v<TObject, Class> ? info : classInfoOf<Class>();
        if (made.create == nullptr) {
            return {};
        }
        auto* const object = fromRoot<Class>(made.create());
        auto& pointer = *static_cast<Pointer*>(slot);
        if constexpr (std::is_pointer_v<Pointer>) {
            delete std::exchange(pointer, object);
        } else {
            pointer.reset(object);
        }
        return get(slot);
    }
    static void clear(void* slot) {
        auto& pointer = *static_cast<Pointer*>(slot);
        if constexpr (std::is_pointer_v<Pointer>) {
            delete std::exchange(pointer, nullptr);
        } else {
            pointer = nullptr;
        }
    }

    static constexpr SlotOperations operations{ObjectAccess<Class>::declaredClass, get, create,
                                               clear};
};

template <class... Classes> struct AlternativesAccess {
    using Slot = std::variant<Classes...>;

    static const TClassInfo* declaredClass(std::size_t index) {
        const TClassInfo* found = nullptr;
        (step<Classes>(index, [&](const TClassInfo& info) { found = &info; }), ...);
        return found;
    }
    static Instance get(const void* slot) {
        return std::visit(
            []<class Class>(const Class& object) -> Instance {
                if constexpr (std::is_same_v<Class, std::monostate>) {
                    return {};
                } else {
                    return ObjectAccess<Class>::get(&object);
                }
            },
            *static_cast<const Slot*>(slot));
    }
    static Instance create(void* slot, const TClassInfo& info) {
        Instance made;
        (createIf<Classes>(*static_cast<Slot*>(slot), info, made), ...);
        return made;
    }
    static void clear(void* slot) {
        if constexpr (std::is_default_constructible_v<Slot>) {
            *static_cast<Slot*>(slot) = Slot();
        }
    }

    static constexpr SlotOperations operations{declaredClass, get, create, clear};

private:
    template <class Class, class Found> static void step(std::size_t& index, Found found) {
        if constexpr (!std::is_same_v<Class, std::monostate>) {
            static_assert(Described<Class>, "the class of a published object has to be described");
            if (index-- == 0) {
                found(classInfoOf<Class>());
            }
        }
    }
    template <class Class>
    static void createIf(Slot& slot, const TClassInfo& info, Instance& made) {
        if constexpr (!std::is_same_v<Class, std::monostate>) {
            if (!made && info.is(classInfoOf<Class>())) {
                made = ObjectAccess<Class>::get(&slot.template emplace<Class>());
            }
        }
    }
};

template <class Pointer> struct ReferenceAccess {
    using Class = std::remove_pointer_t<Pointer>;

    static const TClassInfo& declaredClass() {
        static_assert(Described<Class>, "the class of a published object has to be described");
        return classInfoOf<Class>();
    }
    static Instance get(const void* reference) {
        return instanceOf<Class>(*static_cast<const Pointer*>(reference));
    }
    static void set(void* reference, Instance target) {
        *static_cast<Pointer*>(reference) = target ? fromRoot<Class>(target.object) : nullptr;
    }

    static constexpr ReferenceOperations operations{declaredClass, get, set};
};

// What holds several values

template <class Container> using Iterator = typename Container::const_iterator;

template <class Container> Iterator<Container>& iteratorAt(Cursor& cursor) noexcept {
    static_assert(sizeof(Iterator<Container>) <= sizeof(Cursor) &&
                  std::is_trivially_destructible_v<Iterator<Container>>);
    return *std::launder(reinterpret_cast<Iterator<Container>*>(cursor.place));
}

template <class Container> struct ContainerAccess {
    static std::size_t size(const void* container) {
        return static_cast<const Container*>(container)->size();
    }
    static void begin(const void* container, Cursor& cursor) {
        new (cursor.place) Iterator<Container>(static_cast<const Container*>(container)->begin());
    }
    static void clear(void* container) { static_cast<Container*>(container)->clear(); }
};

template <class List> inline constexpr bool isVector = false;
template <class Element> inline constexpr bool isVector<std::vector<Element>> = true;

template <class List> struct ListAccess : ContainerAccess<List> {
    static const void* next(const void* list, Cursor& cursor) {
        auto& place = iteratorAt<List>(cursor);
        return place == static_cast<const List*>(list)->end() ? nullptr : &*place++;
    }
    static void* append(void* list, std::size_t /*count*/) {
        static_assert(std::is_default_constructible_v<typename List::value_type>,
                      "the elements of a published list need a constructor without arguments");
        return &static_cast<List*>(list)->emplace_back();
    }
    static std::size_t movedSize() {
        return isVector<List> ? sizeof(typename List::value_type) : 0;
    }

    static constexpr ListOperations operations{ContainerAccess<List>::size,
                                               ContainerAccess<List>::begin,
                                               next,
                                               ContainerAccess<List>::clear,
                                               append,
                                               movedSize};
};

template <class Array> struct ArrayAccess : ContainerAccess<Array> {
    static void clear(void* list) { *static_cast<Array*>(list) = Array{}; }
    static void* append(void* list, std::size_t count) {
        auto& array = *static_cast<Array*>(list);
        return count < array.size() ? &array[count] : nullptr;
    }

    static constexpr ListOperations operations{ContainerAccess<Array>::size,
                                               ContainerAccess<Array>::begin,
                                               ListAccess<Array>::next,
                                               clear,
                                               append,
                                               [] { return std::size_t{0}; }};
};

template <class Map> struct MapAccess : ContainerAccess<Map> {
    static const void* next(const void* map, Cursor& cursor, const void*& value) {
        auto& place = iteratorAt<Map>(cursor);
        if (place == static_cast<const Map*>(map)->end()) {
            return nullptr;
        }
        const auto& item = *place++;
        value = &item.second;
        return &item.first;
    }
    static void* at(void* map, void* key) {
        static_assert(std::is_default_constructible_v<typename Map::mapped_type>,
                      "the values of a published map need a constructor without arguments");
        return &(*static_cast<Map*>(map))[std::move(*static_cast<typename Map::key_type*>(key))];
    }

    static constexpr MapOperations operations{ContainerAccess<Map>::size,
                                              ContainerAccess<Map>::begin, next,
                                              ContainerAccess<Map>::clear, at};
};

template <class Optional> struct OptionalAccess {
    static const void* get(const void* optional) {
        const auto& held = *static_cast<const Optional*>(optional);
        return held ? &*held : nullptr;
    }
    static void* emplace(void* optional) { return &static_cast<Optional*>(optional)->emplace(); }
    static void reset(void* optional) { static_cast<Optional*>(optional)->reset(); }

    static constexpr OptionalOperations operations{get, emplace, reset};
};

// From a type to its record

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

} // namespace detail
/// \endcond

/// The record of a type that can be published.
template <class Type>
inline constexpr const ValueType& valueTypeOf = detail::TypeRecord<Type>::record;

/// A value as a parameter for what works with every type. Nothing is owned.
template <class Type> ValueRef valueRef(Type& value) noexcept {
    return {const_cast<std::remove_const_t<Type>*>(&value),
            &valueTypeOf<std::remove_const_t<Type>>};
}

} // namespace host
