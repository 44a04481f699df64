#include "host/runtime/decimalText.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <cstring>
#include <limits>
#include <system_error>
#include <type_traits>

namespace host {

namespace {

constexpr bool isDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

constexpr bool startsWith(std::u16string_view text, char16_t unit) noexcept {
    return !text.empty() && text.front() == unit;
}

/// Removes the sign from the front; true for a minus.
bool takeSign(std::u16string_view& text) noexcept {
    const bool isNegative = startsWith(text, u'-');
    text.remove_prefix(isNegative || startsWith(text, u'+') ? 1 : 0);
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

constexpr std::size_t shortLength = 48;

/// Copies a text of at most `shortLength` units as 8-bit characters; false when some are not ASCII.
bool narrow(std::u16string_view text, std::array<char, shortLength>& characters) noexcept {
    constexpr std::size_t block = 8;
    constexpr std::uint64_t beyondAscii = 0xFF80FF80FF80FF80;
    std::uint64_t allUnits = 0;
    const auto copyBlock = [&](std::size_t start) {
        std::array<char16_t, block> units; // a copy that nothing else can refer to
        std::memcpy(units.data(), text.data() + start, sizeof units);
        std::array<std::uint64_t, 2> words;
        std::memcpy(words.data(), units.data(), sizeof units);
        allUnits |= words[0] | words[1];
        std::array<char, block> copied;
        for (std::size_t index = 0; index < block; ++index) {
            copied[index] = static_cast<char>(units[index]);
        }
        std::memcpy(characters.data() + start, copied.data(), block);
    };
    if (text.size() >= block) {
        for (std::size_t start = 0; start + block <= text.size(); start += block) {
            copyBlock(start);
        }
        copyBlock(text.size() - block); // the rest, and some of it again
    } else {
        for (std::size_t index = 0; index < text.size(); ++index) {
            allUnits |= text[index];
            characters[index] = static_cast<char>(text[index]);
        }
    }
    return (allUnits & beyondAscii) == 0;
}

/// The number in so few characters that they fit on the stack: what follows the digits that can
/// matter becomes one digit that is not zero.
template <class Float>
bool convertLong(const std::optional<DecimalText>& number, Float& value) noexcept {
    if (!number) {
        return false;
    }
    // No double needs more digits to tell on which side of a tie a number lies.
    constexpr std::size_t mostDigits = 770;
    std::array<char, mostDigits + 32> buffer{};
    char* place = buffer.data();
    if (number->isNegative) {
        *place++ = '-';
    }
    *place++ = '0';
    *place++ = '.';
    for (std::size_t index = 0; index < std::min(number->size(), mostDigits); ++index) {
        *place++ = static_cast<char>('0' + number->digit(index));
    }
    *place++ = number->size() > mostDigits ? '1' : '0';
    *place++ = 'e';
    place = std::to_chars(place, buffer.data() + buffer.size(), number->magnitude).ptr;

    value = 0;
    const std::errc fault = std::from_chars(buffer.data(), place, value).ec;
    if (fault == std::errc::result_out_of_range) {
        value = number->magnitude > 0 ? std::numeric_limits<Float>::infinity() : Float{0};
        value = number->isNegative ? -value : value;
    }
    return true;
}

/// A number of at most 15 digits with at most one point, as most numbers are written.
struct ShortDecimal {
    std::int64_t digits = 0; ///< With their sign, as if there were no point.
    std::size_t decimals = 0;
    bool isNegative = false;
};

/// False for everything else.
bool parseShort(std::u16string_view text, ShortDecimal& number) noexcept {
    constexpr std::size_t mostDigits = 15;
    number.isNegative = startsWith(text, u'-');
    text.remove_prefix(number.isNegative ? 1 : 0);
    if (text.size() > mostDigits + 1) {
        return false;
    }
    std::int64_t digits = 0;
    std::size_t pointAt = text.size();
    for (std::size_t index = 0; index < text.size(); ++index) {
        const unsigned digit = text[index] - unsigned{u'0'};
        if (digit <= 9) {
            digits = digits * 10 + digit;
        } else if (text[index] == u'.' && pointAt == text.size()) {
            pointAt = index;
        } else {
            return false;
        }
    }
    const std::size_t count = text.size() - (pointAt < text.size() ? 1 : 0);
    number.digits = number.isNegative ? -digits : digits;
    number.decimals = count - pointAt;
    return count > 0 && count <= mostDigits;
}

/// Converts numbers whose digits and whose power of ten a double holds exactly, so that one
/// division gives the nearest double. False for everything else.
template <class Float> bool convertShort(std::u16string_view text, Float& value) noexcept {
    if constexpr (std::is_same_v<Float, double> && FLT_EVAL_METHOD == 0) {
        static constexpr std::array<double, 16> powers = {
            1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
        ShortDecimal number;
        if (parseShort(text, number)) {
            value = static_cast<double>(number.digits) / powers[number.decimals];
            value = number.digits == 0 && number.isNegative ? -0.0 : value;
            return true;
        }
    }
    return false;
}

constexpr std::size_t currencyDecimals = 4;

std::optional<Currency> roundedToCurrency(const DecimalText& number) noexcept {
    constexpr std::int64_t mostDigits = std::numeric_limits<std::int64_t>::digits10 + 1;
    // 1. Nothing left of the point of the ten-thousandths: zero, whatever follows.
    const std::int64_t kept = number.magnitude + static_cast<std::int64_t>(currencyDecimals);
    if (number.size() == 0 || kept < 0) {
        return Currency{};
    }
    if (kept > mostDigits) {
        return std::nullopt;
    }
    // 2. The digits that stay, and the rest as less than, equal to or more than a half.
    std::uint64_t scaled = 0;
    const auto count = static_cast<std::size_t>(kept);
    for (std::size_t index = 0; index < count; ++index) {
        scaled = scaled * 10 + number.digit(index);
    }
    const unsigned next = number.digit(count);
    const bool isOdd = scaled % 2 != 0;
    scaled += next > 5 || (next == 5 && (isOdd || number.size() > count + 1)) ? 1 : 0;
    // 3. One more fits below zero than above.
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    if (scaled > largest + (number.isNegative ? 1 : 0)) {
        return std::nullopt;
    }
    return Currency{static_cast<std::int64_t>(number.isNegative ? 0 - scaled : scaled)};
}

} // namespace

std::optional<DecimalText> parseDecimal(std::u16string_view text) noexcept {
    DecimalText number;
    // 1. What is written.
    number.isNegative = takeSign(text);
    number.whole = takeDigits(text);
    if (startsWith(text, u'.')) {
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

template <class Float> bool parseFloating(std::u16string_view text, Float& value) noexcept {
    if (convertShort(text, value)) {
        return true;
    }
    if (text.size() > shortLength) {
        return convertLong(parseDecimal(text), value);
    }

    // 1. Narrow. A plus is not for from_chars, and neither are its words for what is no number.
    const bool hasPlus = startsWith(text, u'+');
    text.remove_prefix(hasPlus ? 1 : 0);
    const std::size_t sign = !hasPlus && startsWith(text, u'-') ? 1 : 0;
    std::array<char, shortLength> characters; // filled as far as it is read
    if (text.size() <= sign || (!isDigit(text[sign]) && text[sign] != u'.') ||
        !narrow(text, characters)) {
        return false;
    }

    // 2. Convert.
    const char* const whole = characters.data() + text.size();
    const auto [end, fault] = std::from_chars(characters.data(), whole, value);
    if (fault == std::errc::result_out_of_range) {
        return convertLong(parseDecimal(text), value);
    }
    return fault == std::errc() && end == whole;
}

template NUXML_API bool parseFloating(std::u16string_view, float&) noexcept;
template NUXML_API bool parseFloating(std::u16string_view, double&) noexcept;

std::optional<Currency> parseCurrency(std::u16string_view text) noexcept {
    ShortDecimal number;
    if (parseShort(text, number) && number.decimals <= currencyDecimals) {
        static constexpr std::array<std::int64_t, currencyDecimals + 1> powers = {10'000, 1000, 100,
                                                                                  10, 1};
        Currency amount;
        return __builtin_mul_overflow(number.digits, powers[number.decimals], &amount.scaled)
                   ? std::nullopt
                   : std::optional(amount);
    }
    const auto written = parseDecimal(text);
    return written ? roundedToCurrency(*written) : std::nullopt;
}

} // namespace host
