#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "host/runtime/currency.h"
#include "host/runtime/export.h"

/// \file
/// Decimal numbers as text: an optional sign, digits with at most one point, and optionally "e" or
/// "E" with an exponent. At least one digit has to stand beside the point. Nothing may stand around
/// them, not even white space. The locale plays no part.

namespace host {

/// A decimal number taken apart: 0.d1d2d3... times ten to the power of `magnitude`. It refers to
/// the text it was read from.
struct DecimalText {
    bool isNegative = false;
    std::u16string_view whole;    ///< Digits before the point, without leading zeros.
    std::u16string_view fraction; ///< Digits behind it.
    std::int64_t magnitude = 0;   ///< Digits that the number has before its point.

    /// The number of significant digits; the first and the last are not zero. None for zero.
    [[nodiscard]] std::size_t size() const noexcept { return whole.size() + fraction.size(); }
    /// The value of a significant digit; 0 for those behind the last.
    [[nodiscard]] unsigned digit(std::size_t index) const noexcept {
        if (index < whole.size()) {
            return whole[index] - unsigned{u'0'};
        }
        index -= whole.size();
        return index < fraction.size() ? fraction[index] - unsigned{u'0'} : 0;
    }
};

/// Takes a text apart; nothing when it is no decimal number.
NUXML_API std::optional<DecimalText> parseDecimal(std::u16string_view text) noexcept;

/// Compares two numbers exactly, whatever their length: negative, zero or positive as the left one
/// is less, equal or greater.
NUXML_API int compareDecimals(const DecimalText& left, const DecimalText& right) noexcept;

/// Puts the nearest value of `Float` (float or double) into `value`: infinite beyond the largest
/// and zero below the smallest. False when the text is no decimal number.
template <class Float>
NUXML_API bool parseFloating(std::u16string_view text, Float& value) noexcept;

/// \cond internal
extern template NUXML_API bool parseFloating(std::u16string_view, float&) noexcept;
extern template NUXML_API bool parseFloating(std::u16string_view, double&) noexcept;
/// \endcond

/// The same as a result; nothing when the text is no decimal number.
template <class Float> std::optional<Float> parseFloating(std::u16string_view text) noexcept {
    Float value = 0;
    return parseFloating(text, value) ? std::optional(value) : std::nullopt;
}

/// The amount, rounded to four decimals, a tie to the even digit. Nothing when the text is no
/// decimal number or the amount does not fit.
NUXML_API std::optional<Currency> parseCurrency(std::u16string_view text) noexcept;

} // namespace host
