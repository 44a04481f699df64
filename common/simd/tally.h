#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "common/simd/block.h"
#include "common/simd/wideBlock.h"

/// \file
/// How often something stands in a text, a block at a time: matches are taken off sums of their own
/// for each of the bytes, and these are added up before one of them can run over.

namespace nu::simd {

/// How many units, or bytes, of a text are of a kind.
struct Tally {
    std::int64_t controls = 0; ///< below U+0020
    std::int64_t lineFeeds = 0;
};

namespace detail {

inline constexpr unsigned lastControl = 0x1F;
inline constexpr std::ptrdiff_t blocksPerSum = 255; // a byte counts no further

template <class Unit> Tally tallyNarrow(const Unit*& place, const Unit* end) noexcept {
    constexpr auto blockLength = static_cast<std::ptrdiff_t>(blockSize);
    Tally tally;
    while (end - place >= blockLength) {
        Block controls = Block::all(0);
        Block lineFeeds = Block::all(0);
        const auto blocks = std::min((end - place) / blockLength, blocksPerSum);
        for (const Unit* const stop = place + blocks * blockLength; place != stop;
             place += blockLength) {
            const Block bytes = loadCharacters(place);
            controls = controls.less(bytes.isAtMost(lastControl));
            lineFeeds = lineFeeds.less(isAnyOf<'\n'>(bytes));
        }
        tally.controls += controls.sum();
        tally.lineFeeds += lineFeeds.sum();
    }
    return tally;
}

#if defined(__x86_64__)

[[gnu::target("avx2")]] inline std::int64_t sumOfWide(__m256i bytes) noexcept {
    return Block(_mm256_castsi256_si128(bytes)).sum() +
           Block(_mm256_extracti128_si256(bytes, 1)).sum();
}

template <class Unit>
[[gnu::target("avx2")]] Tally tallyWide(const Unit*& place, const Unit* end) noexcept {
    constexpr std::ptrdiff_t blockLength = 32;
    Tally tally;
    while (end - place >= blockLength) {
        __m256i controls = _mm256_setzero_si256();
        __m256i lineFeeds = _mm256_setzero_si256();
        const auto blocks = std::min((end - place) / blockLength, blocksPerSum);
        for (const Unit* const stop = place + blocks * blockLength; place != stop;
             place += blockLength) {
            const __m256i bytes = loadWideCharacters(place);
            const __m256i isControl =
                _mm256_cmpeq_epi8(_mm256_min_epu8(bytes, _mm256_set1_epi8(lastControl)), bytes);
            controls = _mm256_sub_epi8(controls, isControl);
            lineFeeds =
                _mm256_sub_epi8(lineFeeds, _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8('\n')));
        }
        tally.controls += sumOfWide(controls);
        tally.lineFeeds += sumOfWide(lineFeeds);
    }
    return tally;
}

#else

template <class Unit> Tally tallyWide(const Unit*& place, const Unit* end) noexcept {
    return tallyNarrow(place, end);
}

#endif

} // namespace detail

/// Tallies whole blocks of the text and steps over them.
template <class Unit> Tally tallyBlocks(const Unit*& place, const Unit* end) noexcept {
    return hasWideBlocks() ? detail::tallyWide(place, end) : detail::tallyNarrow(place, end);
}

} // namespace nu::simd
