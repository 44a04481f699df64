#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "host/runtime/currency.h"
#include "host/runtime/export.h"

namespace host {

/// The text of a number, written without memory of its own and without the locale. Reading it back
/// gives the same number.
class NUXML_API NumberText {
public:
    NumberText(const NumberText&) = delete;
    NumberText& operator=(const NumberText&) = delete;
    /// Decimal, with "-" before a negative number.
    explicit NumberText(std::integral auto number) noexcept {
        if constexpr (std::is_signed_v<decltype(number)>) {
            write(static_cast<std::int64_t>(number));
        } else {
            write(static_cast<std::uint64_t>(number));
        }
    }
    /// The fewest digits that lead back to the same number: "0.1", "-5", "-0" from 1e-5 up to below
    /// 1e15, "1.5E300", "1E-7" elsewhere; "INF", "-INF" and "NaN".
    explicit NumberText(double number) noexcept;
    explicit NumberText(float number) noexcept;
    /// Up to four decimals, those that are zero at the end left out.
    explicit NumberText(Currency amount) noexcept;

    /// Valid as long as this object.
    [[nodiscard]] std::string_view view() const noexcept {
        return {characters_.data(), static_cast<std::size_t>(end_ - characters_.data())};
    }
    [[nodiscard]] std::u16string string() const { return {characters_.data(), end_}; }
    void appendTo(std::u16string& text) const { text.append(characters_.data(), end_); }

private:
    static constexpr std::size_t capacity = 32;
    void write(std::int64_t number) noexcept;
    void write(std::uint64_t number) noexcept;
    void write(Currency amount) noexcept;
    template <class Float> void writeFloating(Float number) noexcept;
    template <class Float> bool writeShort(Float number) noexcept;

    std::array<char, capacity> characters_; // filled up to end_
    const char* end_;
};

/// The whole number that a text stands for: an optional sign and decimal digits, and nothing else.
/// Nothing when the text is none, or the number does not fit into `Number`.
template <std::integral Number>
std::optional<Number> parseInteger(std::u16string_view text) noexcept {
    const bool isNegative = !text.empty() && text.front() == u'-';
    text.remove_prefix(isNegative || (!text.empty() && text.front() == u'+') ? 1 : 0);
    if (text.empty()) {
        return std::nullopt;
    }
    std::uint64_t limit = std::numeric_limits<Number>::max();
    if (isNegative) {
        limit = std::is_signed_v<Number> ? limit + 1 : 0;
    }
    const std::uint64_t limitBeforeLastDigit = limit / 10;
    std::uint64_t number = 0;
    for (const char16_t unit : text) {
        const unsigned digit = unit - unsigned{u'0'};
        if (digit > 9 || number > limitBeforeLastDigit) {
            return std::nullopt;
        }
        number *= 10;
        if (digit > limit - number) {
            return std::nullopt;
        }
        number += digit;
    }
    return static_cast<Number>(isNegative ? 0 - number : number);
}

} // namespace host
