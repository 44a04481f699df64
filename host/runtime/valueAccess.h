#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/runtime/classInfo.h"

/// \file
/// Values whose type is known at run time only.

namespace host {

/// An integer, an enumeration or a set as 64 bits, signed numbers with their sign in all of them.
NUXML_API std::uint64_t loadBits(const ValueType& type, const void* value) noexcept;
/// The other way: as many of the bits as the type has.
NUXML_API void storeBits(const ValueType& type, void* value, std::uint64_t bits) noexcept;

/// Appends the name of an enumeration's value, or the names of those in a set with "," between
/// them. What has no name is written as its number.
NUXML_API void appendNames(const ValueType& type, const void* value, std::u16string& text);
/// Reads what appendNames writes, in any letter case of ASCII and with blanks around each name.
/// False when a name is not known or a number does not fit; an enumeration then keeps its value.
NUXML_API bool parseNames(const ValueType& type, std::u16string_view text, void* value);

/// Reads an integer, with a sign perhaps. False when it is none or does not fit.
NUXML_API bool parseInteger(const ValueType& type, std::u16string_view text, void* value) noexcept;
/// Whether a number fits into an integer or an enumeration.
NUXML_API bool fits(const ValueType& type, std::int64_t number) noexcept;

/// Whether a value is the declared default. Numbers are compared as numbers: a NaN is never one.
NUXML_API bool equalsDefault(const ValueType& type, const void* value,
                             const DefaultValue& expected) noexcept;
/// Gives a value its declared default.
NUXML_API void assignDefault(const ValueType& type, void* value, const DefaultValue& given);

/// The value of a property while it is needed: where it lies, or a copy that the getter made.
class NUXML_API PropertyValue {
public:
    PropertyValue(const TPropInfo& property, const void* self);

    [[nodiscard]] const void* get() const noexcept { return place_; }

private:
    OwnedValue copy_;
    const void* place_;
};

} // namespace host
