#include "nuXmlParser/referenceNumber.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>

#include "common/codePage.h"
#include "nuXmlParser/conversionErrors.h"

namespace nu {

namespace {

/// The value of a digit, or a number above every base.
template <class Unit> unsigned digitValue(Unit digit) noexcept {
    const auto code = static_cast<std::make_unsigned_t<Unit>>(digit);
    if (code >= '0' && code <= '9') {
        return code - unsigned{'0'};
    }
    const unsigned folded = code | 0x20U;
    return folded >= 'a' && folded <= 'f' ? folded - 'a' + 10 : 16;
}

template <class Unit> bool takePrefix(std::basic_string_view<Unit>& text, char prefix) noexcept {
    if (text.empty() || text.front() != static_cast<Unit>(prefix)) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

/// Removes a sign from the front; true for a minus.
template <class Unit> bool takeSign(std::basic_string_view<Unit>& text) noexcept {
    if (takePrefix(text, '-')) {
        return true;
    }
    takePrefix(text, '+');
    return false;
}

/// Removes "$", "x" or "0x" from the front, whatever the case; true when there was one.
template <class Unit> bool takeHexMark(std::basic_string_view<Unit>& text) noexcept {
    auto rest = text;
    if (!takePrefix(rest, '$')) {
        takePrefix(rest, '0');
        if (!takePrefix(rest, 'x') && !takePrefix(rest, 'X')) {
            return false;
        }
    }
    text = rest;
    return true;
}

/// The number of 32 bits that the whole text stands for, a negative one as its complement.
template <class Unit>
std::optional<std::uint32_t> parseInteger(std::basic_string_view<Unit> text) noexcept {
    const bool isNegative = takeSign(text);
    const bool isHex = takeHexMark(text);
    const unsigned base = isHex ? 16 : 10;
    const std::uint64_t limit =
        isHex ? std::numeric_limits<std::uint32_t>::max()
              : std::uint64_t{std::numeric_limits<std::int32_t>::max()} + (isNegative ? 1 : 0);
    if (text.empty()) {
        return std::nullopt;
    }
    std::uint64_t number = 0;
    for (const Unit digit : text) {
        const unsigned value = digitValue(digit);
        number = number * base + value;
        if (value >= base || number > limit) {
            return std::nullopt;
        }
    }
    return static_cast<std::uint32_t>(isNegative ? 0 - number : number);
}

/// What the error names: the hexadecimal mark as the conversion to integers writes it.
template <class Unit> std::basic_string<Unit> namedInError(std::basic_string_view<Unit> digits) {
    std::basic_string<Unit> text(digits);
    if (!text.empty() && (text.front() | 0x20) == 'x') {
        text.front() = '$';
    }
    return text;
}

} // namespace

char16_t referencedUnit(std::u16string_view digits) {
    const auto number = parseInteger(digits);
    if (!number) {
        failConversion(messages::noInteger, namedInError(digits));
    }
    return static_cast<char16_t>(*number);
}

char16_t referencedUnit(std::string_view digits) {
    const auto number = parseInteger(digits);
    if (!number) {
        failConversion(messages::noInteger, NuAnsiStringToWideString(namedInError(digits)));
    }
    return static_cast<char16_t>(*number);
}

} // namespace nu
