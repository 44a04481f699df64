#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "common/simd.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

/// \file
/// Finds the next character that matters, many at a time. The characters sought are among the
/// first 64 of ASCII, where all of XML's markup stands but the brackets of CDATA.

namespace nu {

/// The number of characters that findInBlock looks at.
inline constexpr std::size_t scanBlock = simd::blockSize;

/// Whether a character is one of `sought`.
template <char... sought, class Unit> bool isOneOf(Unit unit) noexcept {
    static_assert(((sought >= 0 && sought < 64) && ...));
    constexpr std::uint64_t bits = ((std::uint64_t{1} << sought) | ...);
    const auto code = static_cast<std::make_unsigned_t<Unit>>(unit);
    return code < 64 && (bits >> code & 1) != 0;
}

#if defined(__SSE2__)

namespace simd {

/// Sixteen characters as bytes.
inline __m128i loadCharacters(const char* from) noexcept { return loadBlock(from); }

/// Sixteen characters as bytes. Saturation keeps those below 0x7F and takes no other one there, so
/// comparing with ASCII characters stays exact.
inline __m128i loadCharacters(const char16_t* from) noexcept {
    return _mm_packs_epi16(loadBlock(from), loadBlock(from + 8));
}

/// Eight characters and eight others as bytes.
inline __m128i loadHalves(const char* from, const char* others) noexcept {
    return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from)),
                              _mm_loadl_epi64(reinterpret_cast<const __m128i*>(others)));
}

inline __m128i loadHalves(const char16_t* from, const char16_t* others) noexcept {
    return _mm_packs_epi16(loadBlock(from), loadBlock(others));
}

/// Four characters and four others as the first bytes.
inline __m128i loadQuarters(const char* from, const char* others) noexcept {
    std::int32_t four[2];
    std::memcpy(&four[0], from, sizeof four[0]);
    std::memcpy(&four[1], others, sizeof four[1]);
    return _mm_set_epi32(0, 0, four[1], four[0]);
}

inline __m128i loadQuarters(const char16_t* from, const char16_t* others) noexcept {
    const __m128i eight =
        _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from)),
                           _mm_loadl_epi64(reinterpret_cast<const __m128i*>(others)));
    return _mm_packs_epi16(eight, _mm_setzero_si128());
}

/// One bit for each byte, set where it is one of `sought`.
template <char... sought> unsigned findInBytes(__m128i bytes) noexcept {
    __m128i marks = _mm_setzero_si128();
    ((marks = _mm_or_si128(marks, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(sought)))), ...);
    return static_cast<unsigned>(_mm_movemask_epi8(marks));
}

} // namespace simd

/// One bit for each of the scanBlock characters from `from` on, set where it is one of `sought`.
template <char... sought, class Unit> unsigned findInBlock(const Unit* from) noexcept {
    return simd::findInBytes<sought...>(simd::loadCharacters(from));
}

#else

template <char... sought, class Unit> unsigned findInBlock(const Unit* from) noexcept {
    unsigned found = 0;
    for (std::size_t index = 0; index < scanBlock; ++index) {
        found |= static_cast<unsigned>(isOneOf<sought...>(from[index])) << index;
    }
    return found;
}

#endif

/// findOneOf for less than a block.
template <char... sought, class Unit>
const Unit* findInRest(const Unit* from, const Unit* end) noexcept {
#if defined(__SSE2__)
    // Two pieces overlap; a match that both hold is found in the first.
    const auto placeOf = [from, end](unsigned found, int piece) {
        if (found == 0) {
            return end;
        }
        const int index = std::countr_zero(found);
        return index < piece ? from + index : end - (2 * piece - index);
    };
    if (end - from >= 8) {
        return placeOf(simd::findInBytes<sought...>(simd::loadHalves(from, end - 8)), 8);
    }
    if (end - from >= 4) {
        const __m128i eight = simd::loadQuarters(from, end - 4);
        return placeOf(simd::findInBytes<sought...>(eight) & 0xFF, 4);
    }
#endif
    while (from != end && !isOneOf<sought...>(*from)) {
        ++from;
    }
    return from;
}

#if defined(__x86_64__)

namespace simd {

/// Thirty-two characters as bytes, in some order.
[[gnu::target("avx2")]] inline __m256i loadManyCharacters(const char* from) noexcept {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

[[gnu::target("avx2")]] inline __m256i loadManyCharacters(const char16_t* from) noexcept {
    const auto* const halves = reinterpret_cast<const __m256i*>(from);
    return _mm256_packs_epi16(_mm256_loadu_si256(halves), _mm256_loadu_si256(halves + 1));
}

/// Steps over blocks of 64 characters as long as they hold none of `sought`.
template <char... sought, class Unit>
[[gnu::target("avx2")]] const Unit* skipBlocks(const Unit* from, const Unit* end) noexcept {
    for (; end - from >= 64; from += 64) {
        const __m256i first = loadManyCharacters(from);
        const __m256i second = loadManyCharacters(from + 32);
        __m256i marks = _mm256_setzero_si256();
        ((marks = _mm256_or_si256(
              marks, _mm256_or_si256(_mm256_cmpeq_epi8(first, _mm256_set1_epi8(sought)),
                                     _mm256_cmpeq_epi8(second, _mm256_set1_epi8(sought))))),
         ...);
        if (_mm256_testz_si256(marks, marks) == 0) {
            break;
        }
    }
    return from;
}

} // namespace simd

#endif

/// The first place from `from` on that holds `stop` or a control character, or `end`.
inline const char16_t* findControlOr(char16_t stop, const char16_t* from,
                                     const char16_t* end) noexcept {
    constexpr char16_t firstSolid = 0x20;
#if defined(__SSE2__)
    constexpr std::ptrdiff_t step = 8;
    const __m128i lastControl = _mm_set1_epi16(firstSolid - 1);
    const __m128i stops = _mm_set1_epi16(static_cast<short>(stop));
    for (; end - from >= step; from += step) {
        const __m128i units = simd::loadBlock(from);
        const __m128i above = _mm_subs_epu16(units, lastControl);
        const __m128i marks = _mm_or_si128(_mm_cmpeq_epi16(above, _mm_setzero_si128()),
                                           _mm_cmpeq_epi16(units, stops));
        if (const int found = _mm_movemask_epi8(marks); found != 0) {
            return from + std::countr_zero(static_cast<unsigned>(found)) / 2;
        }
    }
#endif
    while (from != end && *from >= firstSolid && *from != stop) {
        ++from;
    }
    return from;
}

/// The first place from `from` on that holds one of `sought`, or `end`.
template <char... sought, class Unit>
const Unit* findOneOf(const Unit* from, const Unit* end) noexcept {
    constexpr auto step = static_cast<std::ptrdiff_t>(scanBlock);
    if (end - from < step) {
        return findInRest<sought...>(from, end);
    }
    for (; end - from >= step; from += step) {
        if (const unsigned found = findInBlock<sought...>(from); found != 0) {
            return from + std::countr_zero(found);
        }
#if defined(__x86_64__)
        if (end - from >= 128 && __builtin_cpu_supports("avx2") != 0) {
            from = simd::skipBlocks<sought...>(from + step, end) - step;
        }
#endif
    }
    // The rest as the tail of a block that starts in what is known to hold none.
    const unsigned found = findInBlock<sought...>(end - step);
    return found != 0 ? end - step + std::countr_zero(found) : end;
}

} // namespace nu
