#include "nuXmlParser/markupBlock.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace nu {

namespace {

struct StopMasks {
    std::uint64_t less = 0;
    std::uint64_t quote = 0;
    std::uint64_t name = 0;
    std::uint64_t solid = 0;
    std::uint64_t nul = 0;
};

#if defined(__SSE2__)

/// Sixteen units as bytes. Signed saturation keeps everything that is not ASCII apart from markup:
/// it becomes 0x7F or has the high bit.
__m128i packUnits(PNuXmlChar units) noexcept {
    const auto* blocks = reinterpret_cast<const __m128i*>(units);
    return _mm_packs_epi16(_mm_loadu_si128(blocks), _mm_loadu_si128(blocks + 1));
}

std::uint64_t maskOf(__m128i matches, unsigned shift) noexcept {
    return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(matches))) << shift;
}

inline StopMasks classifyUnits(PNuXmlChar units) noexcept {
    StopMasks masks;
    for (unsigned shift = 0; shift < MarkupBlock::length; shift += 16) {
        const __m128i bytes = packUnits(units + shift);
        const auto equals = [&](char wanted) {
            return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted));
        };
        const __m128i name =
            _mm_or_si128(_mm_or_si128(_mm_or_si128(equals(cNuSpaceA), equals(cNuGtA)),
                                      _mm_or_si128(equals(cNuSlashA), equals(cNuColonA))),
                         equals(cNuEqualA));
        // As unsigned bytes: at most U+0020 exactly when the smaller of both is the byte itself.
        const __m128i blank = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(cNuSpaceA)), bytes);
        masks.less |= maskOf(equals(cNuLtA), shift);
        masks.quote |= maskOf(equals(cNuQuoteA), shift);
        masks.name |= maskOf(name, shift);
        masks.solid |= maskOf(blank, shift);
        masks.nul |= maskOf(_mm_cmpeq_epi8(bytes, _mm_setzero_si128()), shift);
    }
    masks.solid = ~masks.solid;
    return masks;
}

/// The same, 32 units at a time.
[[gnu::target("avx2")]] StopMasks classifyUnitsWide(PNuXmlChar units) noexcept {
    StopMasks masks;
    for (unsigned shift = 0; shift < MarkupBlock::length; shift += 32) {
        const auto* blocks = reinterpret_cast<const __m256i*>(units + shift);
        const __m256i packed =
            _mm256_packs_epi16(_mm256_loadu_si256(blocks), _mm256_loadu_si256(blocks + 1));
        // Packing works in halves; this puts the four quarters in the order of the text.
        const __m256i bytes = _mm256_permute4x64_epi64(packed, 0b11011000);
        const auto equals = [bytes](char wanted) __attribute__((target("avx2"))) {
            return _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(wanted));
        };
        const auto maskOfWide = [shift](__m256i matches) __attribute__((target("avx2"))) {
            return static_cast<std::uint64_t>(static_cast<unsigned>(_mm256_movemask_epi8(matches)))
                   << shift;
        };
        const __m256i name =
            _mm256_or_si256(_mm256_or_si256(_mm256_or_si256(equals(cNuSpaceA), equals(cNuGtA)),
                                            _mm256_or_si256(equals(cNuSlashA), equals(cNuColonA))),
                            equals(cNuEqualA));
        const __m256i blank =
            _mm256_cmpeq_epi8(_mm256_min_epu8(bytes, _mm256_set1_epi8(cNuSpaceA)), bytes);
        masks.less |= maskOfWide(equals(cNuLtA));
        masks.quote |= maskOfWide(equals(cNuQuoteA));
        masks.name |= maskOfWide(name);
        masks.solid |= maskOfWide(blank);
        masks.nul |= maskOfWide(equals(0));
    }
    masks.solid = ~masks.solid;
    return masks;
}

const bool hasWideBlocks = __builtin_cpu_supports("avx2") != 0;

StopMasks classifyBlock(PNuXmlChar units) noexcept {
    return hasWideBlocks ? classifyUnitsWide(units) : classifyUnits(units);
}

#else

inline StopMasks classifyUnits(PNuXmlChar units) noexcept;
StopMasks classifyBlock(PNuXmlChar units) noexcept { return classifyUnits(units); }

inline StopMasks classifyUnits(PNuXmlChar units) noexcept {
    StopMasks masks;
    for (unsigned index = 0; index < MarkupBlock::length; ++index) {
        const NuXmlChar unit = units[index];
        const std::uint64_t bit = std::uint64_t{1} << index;
        const bool endsName = unit == cNuSpace || unit == cNuGt || unit == cNuSlash ||
                              unit == cNuColon || unit == cNuEqual;
        masks.less |= unit == cNuLt ? bit : 0;
        masks.quote |= unit == cNuQuote ? bit : 0;
        masks.name |= endsName ? bit : 0;
        masks.solid |= unit > cNuSpace ? bit : 0;
        masks.nul |= unit == 0 ? bit : 0;
    }
    return masks;
}

#endif

/// The first "<" or NUL at or after `place`, or `last`.
PNuXmlChar searchLess(PNuXmlChar place, PNuXmlChar last) noexcept {
#if defined(__SSE2__)
    constexpr std::ptrdiff_t step = 16;
    for (; last - place >= step; place += step) {
        const __m128i bytes = packUnits(place);
        const __m128i stops = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(cNuLtA)),
                                           _mm_cmpeq_epi8(bytes, _mm_setzero_si128()));
        const auto found = static_cast<unsigned>(_mm_movemask_epi8(stops));
        if (found != 0) {
            return place + std::countr_zero(found);
        }
    }
#endif
    while (place < last && *place != cNuLt && *place != cNuEOF) {
        ++place;
    }
    return place;
}

} // namespace

PNuXmlChar MarkupBlock::findBeyond(StopSet set, PNuXmlChar place, PNuXmlChar last) noexcept {
    // Text runs on for long as a rule, so it is searched for its end alone, and the next block
    // starts there.
    if (set == StopSet::Less) {
        place = searchLess(place, last);
    }
    classify(place, last);
    while (stops_[static_cast<std::size_t>(set)] == 0) {
        classify(start_ + length, last);
    }
    return start_ + std::countr_zero(stops_[static_cast<std::size_t>(set)]);
}

void MarkupBlock::classify(PNuXmlChar from, PNuXmlChar last) noexcept {
    start_ = from;
    const auto lastIndex = static_cast<std::size_t>(last - from);
    NuXmlChar rest[length];
    std::uint64_t end = 0;
    PNuXmlChar units = from;
    if (lastIndex < length) [[unlikely]] {
        std::fill(std::copy_n(from, lastIndex + 1, rest), std::end(rest), NuXmlChar{0});
        units = rest;
        end = std::uint64_t{1} << lastIndex;
    }
    const StopMasks masks = classifyBlock(units);
    end |= masks.nul;
    stops_[static_cast<std::size_t>(StopSet::Less)] = masks.less | end;
    stops_[static_cast<std::size_t>(StopSet::Quote)] = masks.quote | end;
    stops_[static_cast<std::size_t>(StopSet::Name)] = masks.name | end;
    stops_[static_cast<std::size_t>(StopSet::Solid)] = masks.solid | end;
}

} // namespace nu
