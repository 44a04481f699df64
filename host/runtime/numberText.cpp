#include "host/runtime/numberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace host {

namespace {

/// Turns what to_chars writes, "1.5e+07", into "1.5E7". Gives the new end.
char* shortenExponent(char* begin, char* end) noexcept {
    char* place = std::find(begin, end, 'e');
    *place++ = 'E';
    const char* digits = place + 1; // behind the sign, of which a minus stays
    place += *place == '-' ? 1 : 0;
    digits += *digits == '0' ? 1 : 0;
    return std::copy<const char*>(digits, end, place);
}

} // namespace

NumberText::NumberText(double number) noexcept { writeFloating(number); }
NumberText::NumberText(float number) noexcept { writeFloating(number); }

NumberText::NumberText(Currency amount) noexcept {
    constexpr auto unit = static_cast<std::uint64_t>(Currency::unit);
    const bool isNegative = amount.scaled < 0;
    const auto scaled = static_cast<std::uint64_t>(amount.scaled);
    const std::uint64_t magnitude = isNegative ? 0 - scaled : scaled;

    Characters characters{};
    char* end = characters.data();
    if (isNegative) {
        *end++ = '-';
    }
    end = std::to_chars(end, characters.data() + capacity, magnitude / unit).ptr;
    std::uint64_t rest = magnitude % unit;
    if (rest != 0) {
        *end++ = '.';
        for (std::uint64_t weight = unit / 10; rest != 0; weight /= 10) {
            *end++ = static_cast<char>('0' + rest / weight);
            rest %= weight;
        }
    }
    widen(characters, end);
}

void NumberText::write(std::int64_t number) noexcept {
    Characters characters{};
    widen(characters, std::to_chars(characters.data(), characters.data() + capacity, number).ptr);
}

void NumberText::write(std::uint64_t number) noexcept {
    Characters characters{};
    widen(characters, std::to_chars(characters.data(), characters.data() + capacity, number).ptr);
}

template <class Float> void NumberText::writeFloating(Float number) noexcept {
    if (!std::isfinite(number)) {
        const std::u16string_view word = std::isnan(number) ? u"NaN"
                                         : number < 0       ? u"-INF"
                                                            : u"INF";
        length_ = static_cast<std::size_t>(std::copy(word.begin(), word.end(), units_.begin()) -
                                           units_.begin());
        return;
    }
    const Float size = std::abs(number);
    const bool isPositional = (size >= Float(1e-5) && size < Float(1e15)) || size == 0;
    Characters characters{};
    char* const begin = characters.data();
    char* end =
        std::to_chars(begin, begin + capacity, number,
                      isPositional ? std::chars_format::fixed : std::chars_format::scientific)
            .ptr;
    widen(characters, isPositional ? end : shortenExponent(begin, end));
}

void NumberText::widen(const Characters& characters, const char* end) noexcept {
    for (std::size_t index = 0; index < capacity; ++index) { // of fixed length, so in one go
        units_[index] = static_cast<unsigned char>(characters[index]);
    }
    length_ = static_cast<std::size_t>(end - characters.data());
}

} // namespace host
