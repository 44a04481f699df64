#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "nuXmlParser/chars.h"
#include "nuXmlParser/scan.h"

/// \file
/// Markup in UTF-8, looked at in blocks of 16 bytes from wherever it begins.
///
/// Searches start at a place at or before `limit`, behind which `reach` bytes can be read, and give
/// null when they come beyond it. NUL stops every search: what it means is not for them to say.

namespace nu::markup {

/// What must be readable behind the last place where a tag or an attribute may begin: the longest
/// name that is guessed, a block of its value and a block behind that.
inline constexpr std::size_t reach = 96;

/// What searches tell about the bytes that they passed.
struct PassedKinds {
    bool isAscii = true;
    bool isVerbatim = true; ///< none of & < > ', so that escaping leaves it as it is
};

/// A bit for each of 16 bytes, the first one lowest: which stop a search, and what they are.
struct ByteBlock {
    unsigned stops;
    unsigned beyondAscii;
    unsigned escaped; ///< & < > '
};

/// Ones below the lowest stop.
inline unsigned beforeFirst(unsigned stops) noexcept { return ~stops & (stops - 1); }

/// The same for quoted values, which the double quote ends.
inline ByteBlock classifyValue(const char* place) noexcept {
    const auto bytes = simd::Block::load(place);
    // Two characters at once: & and ' differ in their lowest bit, < and > in the next one.
    const auto amp = (bytes | simd::Block::all(1)).equals(simd::Block::all('\''));
    const auto less = (bytes | simd::Block::all(2)).equals(simd::Block::all('>'));
    return {simd::isAnyOf<cNuQuoteA, '\0'>(bytes).mask(), bytes.mask(), (amp | less).mask()};
}

/// The same for text, which "<" ends; what stands escaped in it is not looked at.
inline ByteBlock classifyText(const char* place) noexcept {
    const auto bytes = simd::Block::load(place);
    return {simd::isAnyOf<cNuLtA, '\0'>(bytes).mask(), bytes.mask(), 0};
}

/// The same where references in it are told of as escaped.
inline ByteBlock classifyReferences(const char* place) noexcept {
    const auto bytes = simd::Block::load(place);
    return {simd::isAnyOf<cNuLtA, '\0'>(bytes).mask(), bytes.mask(),
            simd::isAnyOf<cNuAmpA>(bytes).mask()};
}

/// The same for quoted values by the rules of XML: a stop is also what a plain one does not hold,
/// white space but spaces, "<" and references.
inline ByteBlock classifyXmlValue(const char* place) noexcept {
    const auto bytes = simd::Block::load(place);
    const auto stops =
        bytes.isAtMost(cNuSpaceA - 1) | simd::isAnyOf<cNuQuoteA, cNuLtA, cNuAmpA>(bytes);
    return {stops.mask(), bytes.mask(), simd::isAnyOf<cNuGtA, cNuAposA>(bytes).mask()};
}

/// The same for text by the rules of XML: a stop is also what may be no plain text.
inline ByteBlock classifyXmlText(const char* place) noexcept {
    const auto bytes = simd::Block::load(place);
    return {simd::isAnyOf<cNuLtA, cNuGtA, cNuAmpA, '\r'>(bytes).mask(), bytes.mask(), 0};
}

/// The same for comments, where a dash and control characters are looked at.
inline ByteBlock classifyComment(const char* place) noexcept {
    const auto bytes = simd::Block::load(place);
    return {(simd::isAnyOf<cNuLineA>(bytes) | bytes.isAtMost(cNuSpaceA - 1)).mask(), bytes.mask(),
            0};
}

/// A bit for each byte that is no white space and no control character, or NUL.
inline unsigned findSolidInBlock(const char* place) noexcept {
    const auto bytes = simd::Block::load(place);
    return (~bytes.isAtMost(cNuSpaceA).mask() & 0xFFFF) | simd::isAnyOf<'\0'>(bytes).mask();
}

/// The first place at or behind `place` that a block of `classify` marks as a stop. Where there is
/// none, `passed` tells of what was looked at, which is everything up to `limit`.
template <ByteBlock (*classify)(const char*) noexcept>
[[gnu::always_inline]] inline const char* findStop(const char* place, const char* limit,
                                                   PassedKinds& passed) noexcept {
    unsigned beyondAscii = 0;
    unsigned escaped = 0;
    for (;; place += scanBlock) {
        const ByteBlock block = classify(place);
        if (block.stops != 0) [[likely]] {
            const unsigned before = beforeFirst(block.stops);
            passed.isAscii = ((beyondAscii | (block.beyondAscii & before))) == 0;
            passed.isVerbatim = ((escaped | (block.escaped & before))) == 0;
            return place + std::countr_zero(block.stops);
        }
        beyondAscii |= block.beyondAscii;
        escaped |= block.escaped;
        if (place > limit) [[unlikely]] {
            passed.isAscii = beyondAscii == 0;
            passed.isVerbatim = escaped == 0;
            return nullptr;
        }
    }
}

/// Behind the reference to a character whose "&#" stands at `place`, behind which 8 bytes can be
/// read; null where it is not plain, as nearly all: no leading zeros, and a character of one unit
/// that is no white space.
inline const char* skipCharacterReference(const char* place) noexcept {
    const bool isHex = place[2] == 'x';
    const char* const digits = place + (isHex ? 3 : 2);
    const char* const last = digits + (isHex ? 4 : 5);
    unsigned code = 0;
    const char* at = digits;
    for (; at != last; ++at) {
        const auto digit = static_cast<unsigned>(*at - '0');
        const auto letter = static_cast<unsigned>((*at | 0x20) - 'a');
        if (digit < 10) {
            code = code * (isHex ? 16 : 10) + digit;
        } else if (isHex && letter < 6) {
            code = code * 16 + letter + 10;
        } else {
            break;
        }
    }
    const bool isPlain = *at == ';' && *digits != '0' && code > ' ' && code < 0xFFFE &&
                         (code < 0xD800 || code > 0xDFFF);
    return isPlain ? at + 1 : nullptr;
}

/// Behind one of the references `&amp;`, `&lt;`, `&gt;`, `&quot;` and `&apos;`, or one to a
/// character, at `place`, behind which 8 bytes can be read; null where another one stands there.
inline const char* skipPlainReference(const char* place) noexcept {
    const auto is = [place](std::string_view text) {
        return std::memcmp(place, text.data(), text.size()) == 0;
    };
    return is("&lt;") || is("&gt;")       ? place + 4
           : is("&amp;")                  ? place + 5
           : is("&quot;") || is("&apos;") ? place + 6
           : place[1] == '#'              ? skipCharacterReference(place)
                                          : nullptr;
}

/// The same as findStop, beyond references that need no declaration; at the "&" of any other.
template <ByteBlock (*classify)(const char*) noexcept>
[[gnu::always_inline]] inline const char*
findStopBehindReferences(const char* place, const char* limit, PassedKinds& passed) noexcept {
    place = findStop<classify>(place, limit, passed);
    while (place != nullptr && *place == cNuAmpA)
        [[unlikely]] {
            const char* const behind = place > limit ? nullptr : skipPlainReference(place);
            if (behind == nullptr) {
                return place > limit ? nullptr : place;
            }
            PassedKinds kinds;
            place = findStop<classify>(behind, limit, kinds);
            passed = {passed.isAscii && kinds.isAscii, false};
        }
    return place;
}

/// The same as `find` from a place on, behind `limit`, from which on at most `reach` bytes are
/// left, up to `end`; none of the last block is a stop. `passed` tells of what came before, too.
template <class Find>
[[gnu::noinline]] const char* findStopNearEnd(const char* place, const char* end,
                                              PassedKinds& passed, Find&& find) noexcept {
    // A NUL behind the copy is a stop.
    char copy[reach + 2 * scanBlock]{};
    const auto size = static_cast<std::size_t>(end - place);
    std::memcpy(copy, place, size);
    PassedKinds kinds;
    const char* const stop = find(copy, copy + size, kinds);
    passed = {passed.isAscii && kinds.isAscii, passed.isVerbatim && kinds.isVerbatim};
    return stop == nullptr || stop + scanBlock > copy + size ? nullptr : place + (stop - copy);
}

/// The first solid character at or behind `place`, or NUL.
inline const char* findSolid(const char* place, const char* limit) noexcept {
    for (;; place += scanBlock) {
        if (const unsigned found = findSolidInBlock(place); found != 0) [[likely]] {
            return place + std::countr_zero(found);
        }
        if (place > limit) [[unlikely]] {
            return nullptr;
        }
    }
}

/// The first byte at or behind `place` that no name of XML has, of those that can come behind one
/// in a plain tag, and white space.
inline const char* findTagNameEnd(const char* place, const char* limit) noexcept {
    for (;; place += scanBlock) {
        const auto bytes = simd::Block::load(place);
        const auto ends =
            bytes.isAtMost(cNuSpaceA) | simd::isAnyOf<cNuEqualA, cNuGtA, cNuSlashA>(bytes);
        if (const unsigned found = ends.mask(); found != 0) [[likely]] {
            return place + std::countr_zero(found);
        }
        if (place > limit) [[unlikely]] {
            return nullptr;
        }
    }
}

/// The first of these bytes at or behind `place`.
template <char... sought>
[[gnu::always_inline]] inline const char* findByte(const char* place, const char* limit) noexcept {
    for (;; place += scanBlock) {
        if (const unsigned found = findInBlock<sought...>(place); found != 0) {
            return place + std::countr_zero(found);
        }
        if (place > limit) [[unlikely]] {
            return nullptr;
        }
    }
}

} // namespace nu::markup
