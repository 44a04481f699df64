#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "common/simd.h"

/// \file
/// Start tags as nearly all documents have them, checked in the UTF-8 as it came.
///
/// Plain is a tag whose names are ASCII without a colon and that declares no namespace, with one
/// space behind the name of the element, double quotes, and values without "&", "<" and white space
/// but spaces. Whatever is not plain, or not all there, is left to somebody who goes step by step.

namespace nu::markup {

/// What is known of a plain tag.
struct PlainTag {
    std::string_view name;
    const char* end; ///< behind the ">"; null where the tag is not plain
    bool isEmptyElement;
};

namespace detail {

enum : std::uint8_t { plainStart = 1, plainRest = 2, plainSpace = 4 };

inline constexpr std::array<std::uint8_t, 256> plainBytes = [] {
    std::array<std::uint8_t, 256> kinds{};
    for (unsigned byte = 0; byte < 0x80; ++byte) {
        const unsigned folded = byte | 0x20;
        const bool isStart = (folded >= 'a' && folded <= 'z') || byte == '_';
        const bool isRest = (byte >= '0' && byte <= '9') || byte == '-' || byte == '.';
        const bool isSpace = byte == ' ' || byte == '\t' || byte == '\n';
        kinds[byte] =
            static_cast<std::uint8_t>((isStart ? plainStart | plainRest : 0) |
                                      (isRest ? plainRest : 0) | (isSpace ? plainSpace : 0));
    }
    return kinds;
}();

inline bool isKind(char byte, unsigned kind) noexcept {
    return (plainBytes[static_cast<unsigned char>(byte)] & kind) != 0;
}

/// Behind the name at `place`; null where none begins or the text ends.
inline const char* skipPlainName(const char* place, const char* textEnd) noexcept {
    if (place == textEnd || !isKind(*place, plainStart)) {
        return nullptr;
    }
    do {
        ++place;
    } while (place != textEnd && isKind(*place, plainRest));
    return place == textEnd ? nullptr : place;
}

/// The closing quote of the value at `place`; null where something else comes first.
inline const char* findPlainQuote(const char* place, const char* textEnd) noexcept {
#if defined(__SSE2__)
    constexpr auto blockSize = static_cast<std::ptrdiff_t>(simd::blockSize);
    for (; textEnd - place >= blockSize; place += blockSize) {
        const __m128i block = simd::loadBlock(place);
        const auto is = [block](char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
        const __m128i isControl = _mm_cmpeq_epi8(_mm_min_epu8(block, _mm_set1_epi8(0x1F)), block);
        const auto stops = static_cast<unsigned>(_mm_movemask_epi8(
            _mm_or_si128(_mm_or_si128(is('"'), is('<')), _mm_or_si128(is('&'), isControl))));
        if (stops != 0) {
            place += std::countr_zero(stops);
            return *place == '"' ? place : nullptr;
        }
    }
#endif
    while (place != textEnd && *place != '"') {
        if (*place == '<' || *place == '&' || static_cast<unsigned char>(*place) < ' ') {
            return nullptr;
        }
        ++place;
    }
    return place == textEnd ? nullptr : place;
}

} // namespace detail

/// Takes the start tag at `less`.
[[gnu::always_inline]] inline PlainTag readPlainStartTag(const char* less,
                                                         const char* textEnd) noexcept {
    constexpr std::size_t mostAttributes = 16;
    constexpr PlainTag notPlain{{}, nullptr, false};
    // 1. The name.
    const char* const name = less + 1;
    const char* place = detail::skipPlainName(name, textEnd);
    if (place == nullptr) {
        return notPlain;
    }
    const std::string_view nameText(name, place);
    // 2. The attributes, each of another name.
    std::array<std::string_view, mostAttributes> names;
    std::size_t count = 0;
    if (*place == ' ') {
        do {
            do {
                ++place;
            } while (place != textEnd && detail::isKind(*place, detail::plainSpace));
            if (place == textEnd || (!detail::isKind(*place, detail::plainStart) && count == 0)) {
                return notPlain;
            }
            if (*place == '>' || *place == '/') {
                break;
            }
            const char* const nameEnd = detail::skipPlainName(place, textEnd);
            if (nameEnd == nullptr || textEnd - nameEnd < 3 || nameEnd[0] != '=' ||
                nameEnd[1] != '"' || count == mostAttributes) {
                return notPlain;
            }
            const std::string_view attribute(place, nameEnd);
            for (std::size_t before = 0; before < count; ++before) {
                if (names[before] == attribute) {
                    return notPlain;
                }
            }
            names[count++] = attribute;
            if (attribute == "xmlns") {
                return notPlain;
            }
            place = detail::findPlainQuote(nameEnd + 2, textEnd);
            if (place == nullptr || ++place == textEnd) {
                return notPlain;
            }
        } while (detail::isKind(*place, detail::plainSpace));
    }
    // 3. The end.
    if (*place == '>') {
        return {nameText, place + 1, false};
    }
    if (*place == '/' && textEnd - place > 1 && place[1] == '>') {
        return {nameText, place + 2, true};
    }
    return notPlain;
}

} // namespace nu::markup
