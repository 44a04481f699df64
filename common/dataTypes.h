#pragma once

#include <cstdint>
#include <string>

#include "host/runtime/variant.h"

/// \file
/// The types of values, as variants and as fields have them.

/// The kinds of values that have a name in XML. The numbers are fixed; those from 19 to 26 are
/// free.
enum class TNuDataType : std::uint8_t {
    Unknown = 0,
    Int8 = 1,
    Int16 = 2,
    Int32 = 3,
    Int64 = 4,
    UInt8 = 5,
    UInt16 = 6,
    UInt32 = 7,
    Single = 8,
    Double = 9,
    Currency = 10,
    AnsiString = 11, ///< 8-bit characters.
    WideString = 12, ///< The wide string of COM components.
    String = 13,     ///< UTF-16 units.
    Text = 14,       ///< A long text; no variant has this type.
    Boolean = 15,
    Date = 16, ///< No variant has this type: there is one for dates, times and both.
    Time = 17, ///< No variant has this type either.
    DateTime = 18,
    Bytes = 27,
    StringArray = 28, ///< Of any kind of string.
    Int32Array = 29,
};

/// The data type of a variant type code; Unknown for empty, null and codes that are not known.
///
/// Deliberate: an unsigned 64-bit integer has the type of a signed one, because there is no other;
/// the largest values are then too large for a reader that goes by the type.
NUXML_API TNuDataType NuVarTypeToDataType(host::VarType type) noexcept;

/// The data type of a variant's value.
NUXML_API TNuDataType NuVarType(const host::Variant& value) noexcept;

/// A variant's value as text, as host::Variant::AsString gives it, but with 8-bit strings read in
/// the system code page. Throws host::EConvertError as that does.
NUXML_API std::u16string NuVarToWideString(const host::Variant& value);
