#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "host/runtime/currency.h"
#include "host/runtime/dateTime.h"
#include "host/runtime/export.h"

/// \file
/// Values that know their type.

namespace host {

/// \name Type codes of variants
/// Numbered as the VARTYPE codes of COM; strings of UTF-16 units and 8-bit characters continue
/// them, and the array flag is added to the code of the elements.
/// @{

/// A type code; may have the flag varArray.
using VarType = std::uint16_t;

inline constexpr VarType varEmpty = 0;        ///< Nothing assigned.
inline constexpr VarType varNull = 1;         ///< A value that is known to be missing.
inline constexpr VarType varInt16 = 2;        ///< std::int16_t
inline constexpr VarType varInt32 = 3;        ///< std::int32_t
inline constexpr VarType varSingle = 4;       ///< float
inline constexpr VarType varDouble = 5;       ///< double
inline constexpr VarType varCurrency = 6;     ///< host::Currency
inline constexpr VarType varDate = 7;         ///< host::TDateTime
inline constexpr VarType varWideString = 8;   ///< The wide string of COM components.
inline constexpr VarType varBoolean = 11;     ///< bool
inline constexpr VarType varInt8 = 16;        ///< std::int8_t
inline constexpr VarType varUInt8 = 17;       ///< std::uint8_t
inline constexpr VarType varUInt16 = 18;      ///< std::uint16_t
inline constexpr VarType varUInt32 = 19;      ///< std::uint32_t
inline constexpr VarType varInt64 = 20;       ///< std::int64_t
inline constexpr VarType varUInt64 = 21;      ///< std::uint64_t
inline constexpr VarType varAnsiString = 256; ///< An 8-bit string.
inline constexpr VarType varString = 258;     ///< A string of UTF-16 units.
inline constexpr VarType varArray = 0x2000;   ///< The flag of arrays.
inline constexpr VarType varByteArray =
    varArray | varUInt8; ///< std::vector<std::uint8_t>, bytes of any meaning
inline constexpr VarType varInt32Array = varArray | varInt32; ///< std::vector<std::int32_t>
inline constexpr VarType varWideStringArray =
    varArray | varWideString; ///< std::vector<host::WideString>
inline constexpr VarType varAnsiStringArray =
    varArray | varAnsiString;                                   ///< std::vector<std::string>
inline constexpr VarType varStringArray = varArray | varString; ///< std::vector<std::u16string>

/// @}

/// The state of a variant whose value is missing.
struct Null {
    friend constexpr bool operator==(Null /*left*/, Null /*right*/) noexcept { return true; }
};
/// The missing value.
inline constexpr Null null{};

/// A wide string of COM components: UTF-16 like others, but of a type code of its own.
struct WideString {
    std::u16string text; ///< in UTF-16

    friend bool operator==(const WideString&, const WideString&) = default;
};

/// A value that knows its type: empty, null, a number, an amount, a date, a boolean, one of three
/// kinds of string, or an array.
///
/// The As... functions convert between numbers, booleans (1 and 0), dates (their serial) and
/// strings, and throw host::EConvertError where there is no such value: for empty, null, arrays,
/// text that is no number, and numbers that do not fit. 8-bit strings are read as UTF-8.
class NUXML_API Variant {
public:
    /// What a variant can hold, one type per type code. std::visit with Held() tells them apart.
    using Storage =
        std::variant<std::monostate, Null, std::int8_t, std::int16_t, std::int32_t, std::int64_t,
                     std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t, float, double,
                     Currency, TDateTime, bool, std::string, WideString, std::u16string,
                     std::vector<std::uint8_t>, std::vector<std::int32_t>, std::vector<std::string>,
                     std::vector<WideString>, std::vector<std::u16string>>;

    /// An empty variant.
    Variant() noexcept = default;
    Variant(Null value) noexcept : held_(value) {}
    Variant(std::same_as<bool> auto value) noexcept : held_(value) {}
    /// An integer keeps its width and sign.
    template <std::integral Number>
    requires(!std::same_as<Number, bool> && !std::same_as<Number, char> &&
             !std::same_as<Number, wchar_t> && !std::same_as<Number, char8_t> &&
             !std::same_as<Number, char16_t> && !std::same_as<Number, char32_t>)
        Variant(Number value)
    noexcept : held_(static_cast<Sized<Number>>(value)) {}
    Variant(float value) noexcept : held_(value) {}
    Variant(double value) noexcept : held_(value) {}
    Variant(Currency value) noexcept : held_(value) {}
    Variant(TDateTime value) noexcept : held_(value) {}
    Variant(std::string value) noexcept : held_(std::move(value)) {}
    Variant(std::string_view value) : held_(std::string(value)) {}
    Variant(const char* value) : held_(std::string(value)) {}
    Variant(WideString value) noexcept : held_(std::move(value)) {}
    Variant(std::u16string value) noexcept : held_(std::move(value)) {}
    Variant(std::u16string_view value) : held_(std::u16string(value)) {}
    Variant(const char16_t* value) : held_(std::u16string(value)) {}
    Variant(std::vector<std::uint8_t> value) noexcept : held_(std::move(value)) {}
    Variant(std::vector<std::int32_t> value) noexcept : held_(std::move(value)) {}
    Variant(std::vector<std::string> value) noexcept : held_(std::move(value)) {}
    Variant(std::vector<WideString> value) noexcept : held_(std::move(value)) {}
    Variant(std::vector<std::u16string> value) noexcept : held_(std::move(value)) {}

    /// The type code.
    [[nodiscard]] VarType Type() const noexcept;
    /// Whether nothing was assigned.
    [[nodiscard]] bool IsEmpty() const noexcept { return Type() == varEmpty; }
    /// Whether it is known that there is no value, as in a field of a data base.
    [[nodiscard]] bool IsNull() const noexcept { return Type() == varNull; }
    /// One of the three kinds of string.
    [[nodiscard]] bool IsString() const noexcept;
    /// Whether it is one of the arrays, of any length.
    [[nodiscard]] bool IsArray() const noexcept { return (Type() & varArray) != 0; }

    /// The value as it is held.
    [[nodiscard]] const Storage& Held() const noexcept { return held_; }
    /// The value if it is held as a `Value`, otherwise null. It belongs to the variant.
    template <class Value> [[nodiscard]] const Value* If() const noexcept {
        return std::get_if<Value>(&held_);
    }

    /// \name Conversions
    /// Fractions become whole numbers, or four decimals, by rounding to the nearest, a tie to the
    /// even digit. Text stands for an integer when it has a sign and digits at most, for other
    /// numbers also with a point and an exponent, and for a boolean as "true", "false", "1" or "0".
    /// Each throws host::EConvertError.
    /// @{
    [[nodiscard]] bool AsBoolean() const; ///< Numbers: whether they differ from zero.
    /// Throws for what does not fit into 32 bits, too.
    [[nodiscard]] std::int32_t AsInteger() const;
    /// Throws for what does not fit into 64 bits, too.
    [[nodiscard]] std::int64_t AsInt64() const;
    /// Throws for numbers below zero, too.
    [[nodiscard]] std::uint64_t AsUInt64() const;
    /// Text is read with a point, whatever the locale.
    [[nodiscard]] double AsDouble() const;
    /// Throws for what does not fit with four decimals.
    [[nodiscard]] Currency AsCurrency() const;
    /// Dates, and numbers as serials. Text is not read: its format is not the host's business.
    [[nodiscard]] TDateTime AsDateTime() const;
    /// Strings, numbers as NumberText writes them, "true" and "false". Dates are not written.
    [[nodiscard]] std::u16string AsString() const;
    /// @}

    /// The same type and the same value. A NaN differs from everything, itself included.
    friend bool operator==(const Variant& left, const Variant& right) = default;

    /// Compares for sorting: negative, zero or positive as `left` stands before, beside or behind
    /// `right`. Never fails.
    ///
    /// Empty and null stand first and beside each other, arrays last. Numbers, booleans and dates
    /// are compared as numbers, NaN before all others. Text is compared by number when both sides
    /// are decimal numbers as a whole, and otherwise unit by unit; a number beside text counts by
    /// its own text.
    ///
    /// Deliberate: "9" < "10" < "1x" < "9", so texts of both kinds have no order as a whole. A sort
    /// has to bear that.
    [[nodiscard]] static int Compare(const Variant& left, const Variant& right);

private:
    template <class Number>
    using Sized = std::conditional_t<
        sizeof(Number) == 1,
        std::conditional_t<std::is_signed_v<Number>, std::int8_t, std::uint8_t>,
        std::conditional_t<
            sizeof(Number) == 2,
            std::conditional_t<std::is_signed_v<Number>, std::int16_t, std::uint16_t>,
            std::conditional_t<
                sizeof(Number) == 4,
                std::conditional_t<std::is_signed_v<Number>, std::int32_t, std::uint32_t>,
                std::conditional_t<std::is_signed_v<Number>, std::int64_t, std::uint64_t>>>>;

    Storage held_;
};

} // namespace host
