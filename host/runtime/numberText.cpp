#include "host/runtime/numberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace host {

namespace {

/// Turns the exponent that to_chars writes, "e+07" or "e-300", into "E7" or "E-300". Gives the new
/// end.
char* shortenExponent(char* end) noexcept {
    char* place = end[-4] == 'e' ? end - 4 : end - 5; // two digits, or three
    const char* digits = place + 2;
    *place++ = 'E';
    place += *place == '-' ? 1 : 0;
    digits += *digits == '0' ? 1 : 0;
    while (digits != end) {
        *place++ = *digits++;
    }
    return place;
}

} // namespace

NumberText::NumberText(double number) noexcept { writeFloating(number); }
NumberText::NumberText(float number) noexcept { writeFloating(number); }
NumberText::NumberText(Currency amount) noexcept { write(amount); }

void NumberText::write(std::int64_t number) noexcept {
    end_ = std::to_chars(characters_.data(), characters_.data() + capacity, number).ptr;
}

void NumberText::write(std::uint64_t number) noexcept {
    end_ = std::to_chars(characters_.data(), characters_.data() + capacity, number).ptr;
}

void NumberText::write(Currency amount) noexcept {
    constexpr auto unit = static_cast<std::uint64_t>(Currency::unit);
    const bool isNegative = amount.scaled < 0;
    const auto scaled = static_cast<std::uint64_t>(amount.scaled);
    const std::uint64_t magnitude = isNegative ? 0 - scaled : scaled;

    char* end = characters_.data();
    if (isNegative) {
        *end++ = '-';
    }
    end = std::to_chars(end, characters_.data() + capacity, magnitude / unit).ptr;
    auto rest = static_cast<unsigned>(magnitude % unit);
    if (rest != 0) {
        *end++ = '.';
        for (unsigned weight = Currency::unit / 10; rest != 0; weight /= 10) {
            *end++ = static_cast<char>('0' + rest / weight);
            rest %= weight;
        }
    }
    end_ = end;
}

template <class Float> void NumberText::writeFloating(Float number) noexcept {
    if (writeShort(number)) {
        return;
    }
    char* const begin = characters_.data();
    if (!std::isfinite(number)) {
        const std::string_view word = std::isnan(number) ? "NaN" : number < 0 ? "-INF" : "INF";
        end_ = std::copy(word.begin(), word.end(), begin);
        return;
    }
    const Float size = std::abs(number);
    const bool isPositional = (size >= Float(1e-5) && size < Float(1e15)) || size == 0;
    const auto format = isPositional ? std::chars_format::fixed : std::chars_format::scientific;
    char* const end = std::to_chars(begin, begin + capacity, number, format).ptr;
    end_ = isPositional ? end : shortenExponent(end);
}

/// Most numbers have few decimals. Those that do, and no more digits than `Float` always keeps, are
/// amounts, which are much easier to write: no shorter text can mean the same number.
template <class Float> bool NumberText::writeShort(Float number) noexcept {
    constexpr bool isDouble = std::is_same_v<Float, double>;
    static_assert(std::numeric_limits<Float>::digits10 >= (isDouble ? 12 : 6));
    constexpr auto unit = static_cast<Float>(Currency::unit);
    constexpr Float limit = isDouble ? 1e8F : 1e2F;
    // What rounding can have added to the product; whatever is further off needs no division.
    constexpr Float tolerance = isDouble ? 1e-3F : 0.25F;
    if (!(std::abs(number) < limit)) {
        return false;
    }
    const Float product = number * unit;
    const auto scaled =
        static_cast<std::int64_t>(product + (number < 0 ? -Float(0.5) : Float(0.5)));
    const auto rounded = static_cast<Float>(scaled);
    // Zero is left to others, because it may have a sign.
    if (std::abs(product - rounded) > tolerance || rounded / unit != number || scaled == 0) {
        return false;
    }
    write(Currency{scaled});
    return true;
}

} // namespace host
