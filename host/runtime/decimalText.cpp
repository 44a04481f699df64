#include "host/runtime/decimalText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <system_error>

namespace host {

namespace {

constexpr bool isDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

/// Removes the sign from the front; true for a minus.
bool takeSign(std::u16string_view& text) noexcept {
    const bool isNegative = text.starts_with(u'-');
    text.remove_prefix(isNegative || text.starts_with(u'+') ? 1 : 0);
    return isNegative;
}

std::u16string_view takeDigits(std::u16string_view& text) noexcept {
    const auto length = static_cast<std::size_t>(
        std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
    const std::u16string_view digits = text.substr(0, length);
    text.remove_prefix(length);
    return digits;
}

/// Reads an exponent up to the end of the text. One that is too large for any text becomes another
/// one that is.
std::optional<std::int64_t> parseExponent(std::u16string_view text) noexcept {
    constexpr std::int64_t enough = 1'000'000'000'000'000;
    const bool isNegative = takeSign(text);
    const std::u16string_view digits = takeDigits(text);
    if (digits.empty() || !text.empty()) {
        return std::nullopt;
    }
    std::int64_t exponent = 0;
    for (const char16_t digit : digits) {
        exponent = exponent < enough ? exponent * 10 + (digit - u'0') : exponent;
    }
    return isNegative ? -exponent : exponent;
}

std::size_t removeLeadingZeros(std::u16string_view& digits) noexcept {
    const std::size_t zeros = std::min(digits.find_first_not_of(u'0'), digits.size());
    digits.remove_prefix(zeros);
    return zeros;
}

void removeTrailingZeros(std::u16string_view& digits) noexcept {
    digits = digits.substr(0, digits.find_last_not_of(u'0') + 1);
}

int signOf(const DecimalText& number) noexcept {
    if (number.size() == 0) {
        return 0;
    }
    return number.isNegative ? -1 : 1;
}

/// The number in so few characters that they fit on the stack: what follows the digits that can
/// matter becomes one digit that is not zero.
template <class Float> Float convertLong(const DecimalText& number) noexcept {
    // No double needs more digits to tell on which side of a tie a number lies.
    constexpr std::size_t mostDigits = 770;
    std::array<char, mostDigits + 32> buffer{};
    char* place = buffer.data();
    if (number.isNegative) {
        *place++ = '-';
    }
    *place++ = '0';
    *place++ = '.';
    for (std::size_t index = 0; index < std::min(number.size(), mostDigits); ++index) {
        *place++ = static_cast<char>('0' + number.digit(index));
    }
    *place++ = number.size() > mostDigits ? '1' : '0';
    *place++ = 'e';
    place = std::to_chars(place, buffer.data() + buffer.size(), number.magnitude).ptr;

    Float value = 0;
    const std::errc fault = std::from_chars(buffer.data(), place, value).ec;
    if (fault == std::errc::result_out_of_range) {
        value = number.magnitude > 0 ? std::numeric_limits<Float>::infinity() : Float{0};
        return number.isNegative ? -value : value;
    }
    return value;
}

} // namespace

std::optional<DecimalText> parseDecimal(std::u16string_view text) noexcept {
    DecimalText number;
    // 1. What is written.
    number.isNegative = takeSign(text);
    number.whole = takeDigits(text);
    if (text.starts_with(u'.')) {
        text.remove_prefix(1);
        number.fraction = takeDigits(text);
    }
    if (number.size() == 0) {
        return std::nullopt;
    }
    std::int64_t exponent = 0;
    if (!text.empty()) {
        if (text.front() != u'e' && text.front() != u'E') {
            return std::nullopt;
        }
        const auto written = parseExponent(text.substr(1));
        if (!written) {
            return std::nullopt;
        }
        exponent = *written;
    }
    // 2. Only the digits that count.
    removeLeadingZeros(number.whole);
    number.magnitude = exponent + static_cast<std::int64_t>(number.whole.size());
    if (number.whole.empty()) {
        number.magnitude -= static_cast<std::int64_t>(removeLeadingZeros(number.fraction));
    }
    removeTrailingZeros(number.fraction);
    if (number.fraction.empty()) {
        removeTrailingZeros(number.whole);
    }
    return number;
}

int compareDecimals(const DecimalText& left, const DecimalText& right) noexcept {
    const int sign = signOf(left);
    if (sign != signOf(right)) {
        return sign - signOf(right);
    }
    if (sign == 0) {
        return 0;
    }
    if (left.magnitude != right.magnitude) {
        return left.magnitude < right.magnitude ? -sign : sign;
    }
    const std::size_t size = std::max(left.size(), right.size());
    for (std::size_t index = 0; index < size; ++index) {
        if (left.digit(index) != right.digit(index)) {
            return left.digit(index) < right.digit(index) ? -sign : sign;
        }
    }
    return 0;
}

template <class Float> std::optional<Float> parseFloating(std::u16string_view text) noexcept {
    constexpr std::size_t shortLength = 48;
    if (text.size() > shortLength) {
        const auto number = parseDecimal(text);
        return number ? std::optional(convertLong<Float>(*number)) : std::nullopt;
    }

    // 1. Narrow. A plus is not for from_chars, and neither are its words for what is no number.
    text.remove_prefix(text.starts_with(u'+') && !text.starts_with(u"+-") ? 1 : 0);
    const std::size_t sign = text.starts_with(u'-') ? 1 : 0;
    if (text.size() <= sign || (!isDigit(text[sign]) && text[sign] != u'.')) {
        return std::nullopt;
    }
    std::array<char, shortLength> narrow; // filled as far as it is read
    unsigned allUnits = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        allUnits |= text[index];
        narrow[index] = static_cast<char>(text[index]);
    }

    // 2. Convert.
    Float value = 0;
    const auto [end, fault] = std::from_chars(narrow.data(), narrow.data() + text.size(), value);
    if (allUnits >= 0x80 || end != narrow.data() + text.size()) {
        return std::nullopt;
    }
    if (fault == std::errc::result_out_of_range) {
        const auto number = parseDecimal(text);
        return number ? std::optional(convertLong<Float>(*number)) : std::nullopt;
    }
    return fault == std::errc() ? std::optional(value) : std::nullopt;
}

template NUXML_API std::optional<float> parseFloating(std::u16string_view) noexcept;
template NUXML_API std::optional<double> parseFloating(std::u16string_view) noexcept;

std::optional<Currency> parseCurrency(std::u16string_view text) noexcept {
    constexpr std::int64_t decimals = 4;
    constexpr std::int64_t mostDigits = std::numeric_limits<std::int64_t>::digits10 + 1;
    const auto number = parseDecimal(text);
    if (!number) {
        return std::nullopt;
    }
    // 1. Nothing left of the point of the ten-thousandths: zero, whatever follows.
    const std::int64_t kept = number->magnitude + decimals;
    if (number->size() == 0 || kept < 0) {
        return Currency{};
    }
    if (kept > mostDigits) {
        return std::nullopt;
    }
    // 2. The digits that stay, and the rest as less than, equal to or more than a half.
    std::uint64_t scaled = 0;
    const auto count = static_cast<std::size_t>(kept);
    for (std::size_t index = 0; index < count; ++index) {
        scaled = scaled * 10 + number->digit(index);
    }
    const unsigned next = number->digit(count);
    const bool isOdd = scaled % 2 != 0;
    scaled += next > 5 || (next == 5 && (isOdd || number->size() > count + 1)) ? 1 : 0;
    // 3. One more fits below zero than above.
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    if (scaled > largest + (number->isNegative ? 1 : 0)) {
        return std::nullopt;
    }
    return Currency{static_cast<std::int64_t>(number->isNegative ? 0 - scaled : scaled)};
}

} // namespace host
