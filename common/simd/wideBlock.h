#pragma once

#include <cstddef>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

/// \file
/// Thirty-two bytes at once, for processors that can (AVX2). Whether they can is asked here and
/// nowhere else; where nobody can, what is here does nothing.

namespace nu::simd {

#if defined(__x86_64__)

/// Whether this processor has what the functions for wide blocks need.
inline bool hasWideBlocks() noexcept {
    return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("popcnt") != 0;
}

[[gnu::target("avx2")]] inline __m256i loadWide(const void* from) noexcept {
    return _mm256_loadu_si256(static_cast<const __m256i*>(from));
}

/// Thirty-two characters as bytes, in some order.
[[gnu::target("avx2")]] inline __m256i loadWideCharacters(const char* from) noexcept {
    return loadWide(from);
}

[[gnu::target("avx2")]] inline __m256i loadWideCharacters(const char16_t* from) noexcept {
    return _mm256_packs_epi16(loadWide(from), loadWide(from + 16));
}

/// Steps over blocks of 64 characters as long as they hold none of `sought`.
template <char... sought, class Unit>
[[gnu::target("avx2")]] const Unit* skipWideBlocks(const Unit* from, const Unit* end) noexcept {
    for (; end - from >= 64; from += 64) {
        const __m256i first = loadWideCharacters(from);
        const __m256i second = loadWideCharacters(from + 32);
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

#else

constexpr bool hasWideBlocks() noexcept { return false; }

template <char... sought, class Unit>
const Unit* skipWideBlocks(const Unit* from, const Unit* /*end*/) noexcept {
    return from;
}

#endif

} // namespace nu::simd
