#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

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
    bool isPlain = true; ///< none of & < > '
};

/// A bit for each of 16 bytes, the first one lowest: which stop a search, and what they are.
struct ByteBlock {
    unsigned stops;
    unsigned beyondAscii;
    unsigned escaped; ///< & < > '
};

/// Ones below the lowest stop.
inline unsigned beforeFirst(unsigned stops) noexcept { return ~stops & (stops - 1); }

#if defined(__SSE2__)

/// The same for quoted values, which the double quote ends.
inline ByteBlock classifyValue(const char* place) noexcept {
    const __m128i bytes = simd::loadBlock(place);
    // Two characters at once: & and ' differ in their lowest bit, < and > in the next one.
    const __m128i amp = _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(1)), _mm_set1_epi8('\''));
    const __m128i less = _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(2)), _mm_set1_epi8('>'));
    return {simd::findInBytes<cNuQuoteA, '\0'>(bytes),
            static_cast<unsigned>(_mm_movemask_epi8(bytes)),
            static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(amp, less)))};
}

/// The same for text, which "<" ends; what stands escaped in it is not looked at.
inline ByteBlock classifyText(const char* place) noexcept {
    const __m128i bytes = simd::loadBlock(place);
    return {simd::findInBytes<cNuLtA, '\0'>(bytes), static_cast<unsigned>(_mm_movemask_epi8(bytes)),
            0};
}

/// The same where references in it are told of as escaped.
inline ByteBlock classifyReferences(const char* place) noexcept {
    const __m128i bytes = simd::loadBlock(place);
    return {
        simd::findInBytes<cNuLtA, '\0'>(bytes), static_cast<unsigned>(_mm_movemask_epi8(bytes)),
        static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(cNuAmpA))))};
}

/// The same for comments, where a dash and control characters are looked at.
inline ByteBlock classifyComment(const char* place) noexcept {
    const __m128i bytes = simd::loadBlock(place);
    const __m128i stops =
        _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(cNuLineA)),
                     _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(cNuSpaceA - 1)), bytes));
    return {static_cast<unsigned>(_mm_movemask_epi8(stops)),
            static_cast<unsigned>(_mm_movemask_epi8(bytes)), 0};
}

/// A bit for each byte that is no white space and no control character, or NUL.
inline unsigned findSolidInBlock(const char* place) noexcept {
    const __m128i bytes = simd::loadBlock(place);
    const __m128i blank = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(cNuSpaceA)), bytes);
    const __m128i end = _mm_cmpeq_epi8(bytes, _mm_setzero_si128());
    return (~static_cast<unsigned>(_mm_movemask_epi8(blank)) & 0xFFFF) |
           static_cast<unsigned>(_mm_movemask_epi8(end));
}

#else

template <char... sought> ByteBlock classifyBytes(const char* place) noexcept {
    ByteBlock block{};
    for (unsigned index = 0; index < scanBlock; ++index) {
        const auto mark = [index](bool is) { return static_cast<unsigned>(is) << index; };
        block.stops |= mark(isOneOf<sought..., '\0'>(place[index]));
        block.beyondAscii |= mark(static_cast<unsigned char>(place[index]) >= 0x80);
        block.escaped |= mark(isOneOf<cNuAmpA, cNuLtA, cNuGtA, cNuAposA>(place[index]));
    }
    return block;
}

inline ByteBlock classifyValue(const char* place) noexcept {
    return classifyBytes<cNuQuoteA>(place);
}

inline ByteBlock classifyText(const char* place) noexcept { return classifyBytes<cNuLtA>(place); }

inline ByteBlock classifyReferences(const char* place) noexcept {
    return classifyBytes<cNuLtA>(place);
}

inline ByteBlock classifyComment(const char* place) noexcept {
    ByteBlock block = classifyBytes<cNuLineA>(place);
    for (unsigned index = 0; index < scanBlock; ++index) {
        const bool isControl = static_cast<unsigned char>(place[index]) < cNuSpaceA;
        block.stops |= static_cast<unsigned>(isControl) << index;
    }
    return block;
}

inline unsigned findSolidInBlock(const char* place) noexcept {
    unsigned found = 0;
    for (unsigned index = 0; index < scanBlock; ++index) {
        const auto byte = static_cast<unsigned char>(place[index]);
        found |= static_cast<unsigned>(byte > cNuSpaceA || byte == 0) << index;
    }
    return found;
}

#endif

/// The first place at or behind `place` that a block of `classify` marks as a stop.
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
            passed.isPlain = ((escaped | (block.escaped & before))) == 0;
            return place + std::countr_zero(block.stops);
        }
        beyondAscii |= block.beyondAscii;
        escaped |= block.escaped;
        if (place > limit) [[unlikely]] {
            return nullptr;
        }
    }
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

/// The first of these bytes at or behind `place`.
template <char... sought> const char* findByte(const char* place, const char* limit) noexcept {
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
