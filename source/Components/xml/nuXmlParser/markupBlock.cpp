#include "nuXmlParser/markupBlock.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

#include "common/expects.h"
#include "common/simd/block.h"
#include "common/simd/wideBlock.h"
#include "nuXmlParser/markupBlockNarrow.h"
#include "nuXmlParser/scan.h"

namespace nu {

namespace {

using Masks = MarkupBlock::Masks;
using detail::maskFor;

#if defined(__x86_64__)

/// For isAnyOfWide: each wanted byte at the place that its lower half names. Any byte that has
/// another lower half is as good as none.
consteval std::array<char, 16> placeByLowerHalf(std::initializer_list<char> wanted) {
    std::array<char, 16> places{1};
    for (const char byte : wanted) {
        places[static_cast<std::size_t>(byte & 0xF)] = byte;
    }
    return places;
}

constexpr std::array<char, 16> nameEnds =
    placeByLowerHalf({cNuSpaceA, cNuGtA, cNuSlashA, cNuColonA, cNuEqualA});
constexpr std::array<char, 16> escaped = placeByLowerHalf({cNuAmpA, cNuLtA, cNuGtA, cNuAposA});

/// Whether each byte is one of those that were placed. Those with the high bit find a zero.
[[gnu::target("avx2")]] inline __m256i isAnyOfWide(__m256i bytes,
                                                   const std::array<char, 16>& places) noexcept {
    const __m256i table = _mm256_broadcastsi128_si256(simd::Block::load(places.data()));
    return _mm256_cmpeq_epi8(_mm256_shuffle_epi8(table, bytes), bytes);
}

/// Thirty-two units as bytes.
[[gnu::target("avx2")]] inline __m256i packUnitsWide(PNuXmlChar units) noexcept {
    // Packing works in halves; this puts the four quarters in the order of the text.
    return _mm256_permute4x64_epi64(simd::loadWideCharacters(units), 0b11011000);
}

[[gnu::target("avx2")]] inline std::uint64_t maskOfWide(__m256i first, __m256i second) noexcept {
    return static_cast<unsigned>(_mm256_movemask_epi8(first)) |
           static_cast<std::uint64_t>(static_cast<unsigned>(_mm256_movemask_epi8(second))) << 32;
}

/// The same as classifyNarrow, 32 units at a time.
[[gnu::target("avx2")]] void classifyUnitsWide(PNuXmlChar units, std::uint64_t end,
                                               Masks& masks) noexcept {
    const __m256i first = packUnitsWide(units);
    const __m256i second = packUnitsWide(units + 32);
    const auto equals = [=](char wanted) __attribute__((target("avx2"))) {
        const __m256i all = _mm256_set1_epi8(wanted);
        return maskOfWide(_mm256_cmpeq_epi8(first, all), _mm256_cmpeq_epi8(second, all));
    };
    const auto isAnyOf = [=](const std::array<char, 16>& places) __attribute__((target("avx2"))) {
        return maskOfWide(isAnyOfWide(first, places), isAnyOfWide(second, places));
    };
    const __m256i spaces = _mm256_set1_epi8(cNuSpaceA);
    const std::uint64_t blank =
        maskOfWide(_mm256_cmpeq_epi8(_mm256_min_epu8(first, spaces), first),
                   _mm256_cmpeq_epi8(_mm256_min_epu8(second, spaces), second));
    end |= equals('\0');
    maskFor(masks, StopSet::Less) = equals(cNuLtA) | end;
    maskFor(masks, StopSet::Quote) = equals(cNuQuoteA) | end;
    maskFor(masks, StopSet::Name) = isAnyOf(nameEnds) | end;
    maskFor(masks, StopSet::Solid) = ~blank | end;
    maskFor(masks, StopSet::Escaped) = isAnyOf(escaped) | end;
}

#else

void classifyUnitsWide(PNuXmlChar units, std::uint64_t end, Masks& masks) noexcept {
    detail::classifyNarrow(units, end, masks);
}

#endif

const bool hasWideBlocks = simd::hasWideBlocks();

void classifyBlock(PNuXmlChar units, std::uint64_t end, Masks& masks) noexcept {
    if (hasWideBlocks) {
        classifyUnitsWide(units, end, masks);
    } else {
        detail::classifyNarrow(units, end, masks);
    }
}

/// The first "<" or NUL at or after `place`, or `last`.
PNuXmlChar searchLess(PNuXmlChar place, PNuXmlChar last) noexcept {
    constexpr auto step = static_cast<std::ptrdiff_t>(simd::blockSize);
    for (; last - place >= step; place += step) {
        const auto stops = simd::isAnyOf<cNuLtA, '\0'>(simd::Block::loadUnits(place));
        if (const unsigned found = stops.mask(); found != 0) {
            return place + std::countr_zero(found);
        }
    }
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
    while (stopsOf(set) == 0) {
        classify(start_ + length, last);
    }
    return start_ + std::countr_zero(stopsOf(set));
}

PNuXmlChar MarkupBlock::findBeyond(StopSet set, StopSet absent, PNuXmlChar place, PNuXmlChar last,
                                   bool& isFree) noexcept {
    const std::size_t offset = offsetOf(place);
    isFree = true;
    if (offset < length) {
        isFree = stopsOf(absent) >> offset == 0;
        place = start_ + length;
    }
    const PNuXmlChar found = findBeyond(set, place, last);
    isFree = isFree && start_ == place && (upToFirst(stopsOf(set)) & stopsOf(absent)) == 0;
    return found;
}

void MarkupBlock::classify(PNuXmlChar from, PNuXmlChar last) noexcept {
    expects(from <= last);
    start_ = from;
    const auto lastIndex = static_cast<std::size_t>(last - from);
    if (lastIndex >= length) [[likely]] {
        classifyBlock(from, 0, stops_);
    } else {
        classifyRest(lastIndex);
    }
}

void MarkupBlock::classifyRest(std::size_t lastIndex) noexcept {
    NuXmlChar rest[length];
    std::fill(std::copy_n(start_, lastIndex + 1, rest), std::end(rest), NuXmlChar{0});
    classifyBlock(rest, std::uint64_t{1} << lastIndex, stops_);
}

} // namespace nu
