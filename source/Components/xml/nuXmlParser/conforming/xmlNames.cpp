#include "nuXmlParser/conforming/xmlNames.h"

#include <algorithm>

#include "host/runtime/utf8Sequence.h"

namespace nu {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// What begins a name above ASCII.
constexpr std::array nameStarts = {
    Range{0xC0, 0xD6},     Range{0xD8, 0xF6},     Range{0xF8, 0x2FF},    Range{0x370, 0x37D},
    Range{0x37F, 0x1FFF},  Range{0x200C, 0x200D}, Range{0x2070, 0x218F}, Range{0x2C00, 0x2FEF},
    Range{0x3001, 0xD7FF}, Range{0xF900, 0xFDCF}, Range{0xFDF0, 0xFFFD}, Range{0x10000, 0xEFFFF},
};
/// What only goes on with one.
constexpr std::array nameRest = {
    Range{0xB7, 0xB7},
    Range{0x300, 0x36F},
    Range{0x203F, 0x2040},
};

template <class Ranges> bool isIn(const Ranges& ranges, char32_t codePoint) noexcept {
    const auto* const range =
        std::find_if(ranges.begin(), ranges.end(),
                     [codePoint](const Range& each) { return codePoint <= each.last; });
    return range != ranges.end() && codePoint >= range->first;
}

/// Behind the character of a longer sequence at `place` if it may stand there, else `place`.
const char* skipHigh(const char* place, const char* end, bool isStart) noexcept {
    const host::Utf8Sequence sequence = host::readUtf8Sequence(
        reinterpret_cast<const unsigned char*>(place), reinterpret_cast<const unsigned char*>(end));
    const bool isAllowed =
        sequence.wellFormed &&
        (isIn(nameStarts, sequence.codePoint) || (!isStart && isIn(nameRest, sequence.codePoint)));
    return isAllowed ? place + sequence.length : place;
}

} // namespace

const char* skipNameToken(const char* place, const char* end) noexcept {
    while (place != end) {
        if (isByte(*place, bcHigh)) {
            const char* const next = skipHigh(place, end, false);
            if (next == place) {
                break;
            }
            place = next;
        } else if (isByte(*place, bcNameChar)) {
            ++place;
        } else {
            break;
        }
    }
    return place;
}

const char* skipName(const char* place, const char* end) noexcept {
    if (place == end || !isByte(*place, bcNameStart)) {
        return place;
    }
    if (isByte(*place, bcHigh)) {
        const char* const next = skipHigh(place, end, true);
        return next == place ? place : skipNameToken(next, end);
    }
    return skipNameToken(place + 1, end);
}

bool isQualifiedName(std::string_view name) noexcept {
    const std::size_t colon = name.find(':');
    if (colon == name.npos) {
        return true;
    }
    const std::string_view local = name.substr(colon + 1);
    return colon > 0 && local.find(':') == local.npos && !local.empty() &&
           skipName(local.data(), local.data() + local.size()) == local.data() + local.size();
}

} // namespace nu
