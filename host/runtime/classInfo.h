#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <typeinfo>

#include "host/runtime/export.h"
#include "host/runtime/valueType.h"

/// \file
/// What is known of a class at run time: its name, its ancestor and its published properties.

namespace host {

/// The value that a property has unless something else is said. A record for all kinds of values,
/// so that it can stand in a constant table.
struct DefaultValue {
    /// Which of the members counts.
    enum class Kind : std::uint8_t { None, Integer, Real, Text };

    Kind kind = Kind::None;   ///< None for a property without a default
    std::int64_t integer = 0; ///< Also booleans, enumerations, sets and amounts in ten-thousandths.
    double real = 0;          ///< Also dates, by their serial.
    std::u16string_view text; ///< a constant
};

/// A published property. `self` is the object as host::Instance has it.
struct TPropInfo {
    std::u16string_view name;        ///< as it is written into XML
    const ValueType* type = nullptr; ///< how the value is copied and read

    /// Where the value lies; null where a getter makes it anew for each call.
    const void* (*place)(const void* self) = nullptr;
    /// Where the value lies, for changing it there; null where that is not possible.
    void* (*mutablePlace)(void* self) = nullptr;
    /// Copies the value into `value`, an object of the type; null where it cannot be copied.
    void (*get)(const void* self, void* value) = nullptr;
    /// Hands the value, which is moved from, to a setter; null where there is none.
    void (*set)(void* self, void* value) = nullptr;
    /// Whether the value is to be written now; null for always.
    bool (*isStored)(const void* self) = nullptr;

    /// The value that need not be written; of kind None where every value is.
    DefaultValue defaultValue{};
    /// Names that are read like the name itself; empty ones at the end do not count.
    std::u16string_view aliases[4] = {u"", u"", u"", u""};

    /// Whether a value can be set.
    [[nodiscard]] bool isWritable() const noexcept {
        return mutablePlace != nullptr || set != nullptr;
    }
    /// Whether a default is declared, which then need not be written.
    [[nodiscard]] bool hasDefault() const noexcept {
        return defaultValue.kind != DefaultValue::Kind::None;
    }
};

/// A class as a value: a class reference. There is one constant for each class, host::classOf.
struct TClassInfo {
    std::u16string_view name;             ///< as it is written into XML
    const TClassInfo* base = nullptr;     ///< The ancestor; null for an uppermost class.
    const std::type_info* type = nullptr; ///< what C++ calls it, for comparing
    bool isObject = false;                ///< Whether it derives from host::TObject.
    /// A new object; null where the class has no constructor without arguments.
    void* (*create)() = nullptr;
    /// Destroys what `create` made, given as that gave it.
    void (*destroy)(void* object) noexcept = nullptr;
    /// The published properties: those of the ancestors first, then in the order of the
    /// description.
    std::span<const TPropInfo> properties{};

    /// The same class. Constants may be doubled where libraries hide their symbols, so addresses do
    /// not tell.
    [[nodiscard]] bool is(const TClassInfo& other) const noexcept {
        return this == &other || *type == *other.type;
    }
    /// Whether it is that class or a descendant of it.
    [[nodiscard]] NUXML_API bool derivesFrom(const TClassInfo& ancestor) const noexcept;
    /// The property of that name, or an alias of it: in exactly these letters if there is one, else
    /// in any letter case of ASCII. Null if there is none.
    [[nodiscard]] NUXML_API const TPropInfo*
    findProperty(std::u16string_view propertyName) const noexcept;
};

} // namespace host
