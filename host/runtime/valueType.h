#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "host/runtime/enumNames.h"

/// \file
/// What is known of a published value at run time: its kind, and how to get at what it holds. The
/// records here are constants that the compiler makes; valueTypeOf.h says of which C++ types.

namespace host {

struct TClassInfo;
struct ValueType;

/// What a published value is.
enum class ValueKind : std::uint8_t {
    Boolean,     ///< bool
    Integer,     ///< an integer of 1, 2, 4 or 8 bytes
    Enumeration, ///< an enumeration with host::EnumNames
    Set,         ///< host::Set, or an enumeration of bits
    Single,      ///< float
    Double,      ///< double
    Currency,    ///< host::Currency
    DateTime,    ///< host::TDateTime
    String,      ///< std::u16string
    Utf8String,  ///< std::string, which holds UTF-8
    Variant,     ///< host::Variant
    Bytes,       ///< std::vector<std::uint8_t>
    Int32Array,  ///< std::vector<std::int32_t>
    StringArray, ///< std::vector<std::u16string>
    Object,      ///< an object of a described class
    Slot,        ///< a place for an object: a pointer or a variant of objects
    Optional,    ///< a value that may be missing
    List,        ///< values in a row
    Map,         ///< values by key
    Reference,   ///< a pointer to an object that is published elsewhere, by name
};

/// How what a value holds is reached.
enum class ValueContent : std::uint8_t {
    Text,      ///< a value of one piece, which has a text
    Object,    ///< the object itself
    Slot,      ///< ValueType::slot
    Optional,  ///< ValueType::optional
    List,      ///< ValueType::list
    Map,       ///< ValueType::map
    Reference, ///< ValueType::reference
};

/// How what values of a kind hold is reached.
[[nodiscard]] constexpr ValueContent contentOf(ValueKind kind) noexcept {
    constexpr auto first = static_cast<unsigned>(ValueKind::Object);
    const auto place = static_cast<unsigned>(kind);
    return place < first ? ValueContent::Text : static_cast<ValueContent>(place - first + 1);
}
static_assert(contentOf(ValueKind::StringArray) == ValueContent::Text &&
              contentOf(ValueKind::Object) == ValueContent::Object &&
              contentOf(ValueKind::Slot) == ValueContent::Slot &&
              contentOf(ValueKind::Optional) == ValueContent::Optional &&
              contentOf(ValueKind::List) == ValueContent::List &&
              contentOf(ValueKind::Map) == ValueContent::Map &&
              contentOf(ValueKind::Reference) == ValueContent::Reference);

/// An object of a described class. Nothing is owned.
///
/// The object is given as a `void*` to its part of the uppermost class: host::TObject, or for a
/// class without it the uppermost described one.
struct Instance {
    void* object = nullptr;           ///< null for nothing
    const TClassInfo* info = nullptr; ///< The class of the object itself.

    explicit operator bool() const noexcept { return object != nullptr; }
};

/// A value of any published type. Nothing is owned.
struct ValueRef {
    void* value = nullptr;           ///< null for nothing
    const ValueType* type = nullptr; ///< the type of what `value` points to

    explicit operator bool() const noexcept { return value != nullptr; }
};

/// How a place that holds objects is used. An object that is a value itself is always there.
struct SlotOperations {
    /// The classes that the place takes, with their descendants where it is a pointer; null behind
    /// the last.
    const TClassInfo* (*declaredClass)(std::size_t index);
    /// The object that is there now, or nothing.
    Instance (*get)(const void* slot);
    /// Puts a new object of the class there, in place of the former one, and gives it. The class
    /// has to be one that fits. Null where no object can be made.
    Instance (*create)(void* slot, const TClassInfo& info);
    /// Takes the object away.
    void (*clear)(void* slot);
};

/// A place in a list or a map while it is walked through.
struct Cursor {
    alignas(std::max_align_t) std::byte place[32]; ///< for what the operations keep there
};

/// How a list is read and filled.
struct ListOperations {
    std::size_t (*size)(const void* list);           ///< how many elements there are
    void (*begin)(const void* list, Cursor& cursor); ///< puts the cursor before the first element
    /// The element at the cursor, which moves on; null at the end.
    const void* (*next)(const void* list, Cursor& cursor);
    void (*clear)(void* list); ///< takes all elements out
    /// The place of a new element behind the `count` that were added since the list was cleared;
    /// null where a list of fixed size is full.
    void* (*append)(void* list, std::size_t count);
    /// The bytes of an element where adding one moves those that are there; 0 elsewhere.
    std::size_t (*movedSize)();
};

/// How a map is read and filled.
struct MapOperations {
    std::size_t (*size)(const void* map);           ///< how many keys there are
    void (*begin)(const void* map, Cursor& cursor); ///< puts the cursor before the first key
    /// The key at the cursor, which moves on, and its value; null at the end.
    const void* (*next)(const void* map, Cursor& cursor, const void*& value);
    void (*clear)(void* map); ///< takes all keys out
    /// The value that belongs to a key, which is moved from; a new one if there was none.
    void* (*at)(void* map, void* key);
};

/// How a value that may be missing is used.
struct OptionalOperations {
    const void* (*get)(const void* optional); ///< Null if it is missing.
    void* (*emplace)(void* optional);         ///< A new value.
    void (*reset)(void* optional);            ///< takes the value away
};

/// How a reference is used.
struct ReferenceOperations {
    const TClassInfo& (*declaredClass)();   ///< the class that the pointer names
    Instance (*get)(const void* reference); ///< the object that it leads to, or nothing
    /// Makes it lead to an object of the declared class or a descendant, or nowhere.
    void (*set)(void* reference, Instance target);
};

/// What is known of a C++ type. Only the members that its kind needs are set.
struct ValueType {
    ValueKind kind = ValueKind::Boolean;  ///< which of the members count
    std::uint8_t size = 0;                ///< Bytes of an integer, an enumeration or a set.
    bool isSigned = false;                ///< Of an integer or an enumeration.
    bool isBits = false;                  ///< The values of a set are its bits, not their numbers.
    std::span<const EnumName> names{};    ///< Of an enumeration or a set.
    const ValueType* element = nullptr;   ///< Of an optional, a list or the values of a map.
    const ValueType* key = nullptr;       ///< Of a map.
    const SlotOperations* slot = nullptr; ///< Of an object or a slot.
    const ListOperations* list = nullptr; ///< of a list
    const MapOperations* map = nullptr;   ///< of a map
    const OptionalOperations* optional = nullptr;    ///< of an optional
    const ReferenceOperations* reference = nullptr;  ///< of a reference
    void* (*make)() = nullptr;                       ///< A new value, for OwnedValue.
    void (*destroy)(void* value) noexcept = nullptr; ///< destroys what `make` gave
};

/// A value of a type that is known at run time only.
class OwnedValue {
public:
    OwnedValue() = default;
    explicit OwnedValue(const ValueType& type) : value_(type.make(), type.destroy), type_(&type) {}

    /// The value; null without one.
    [[nodiscard]] void* get() const noexcept { return value_.get(); }
    /// The value with its type. Nothing is given away.
    [[nodiscard]] ValueRef ref() const noexcept { return {value_.get(), type_}; }
    explicit operator bool() const noexcept { return value_ != nullptr; }
    /// Destroys the value.
    void reset() noexcept { value_.reset(); }

private:
    static void nothing(void* /*value*/) noexcept {}

    std::unique_ptr<void, void (*)(void*) noexcept> value_{nullptr, nothing};
    const ValueType* type_ = nullptr;
};

} // namespace host
