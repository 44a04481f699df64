#include "nuXmlParser/markupBlock.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

#include "nuXmlParser/scan.h"

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace nu {

namespace {

using Masks = MarkupBlock::Masks;

std::uint64_t& maskFor(Masks& masks, StopSet set) noexcept {
    return masks[static_cast<std::size_t>(set)];
}

/// Makes `ends`, and so every NUL among them, stops of every set.
void addEnds(Masks& masks, std::uint64_t ends) noexcept {
    for (std::uint64_t& mask : masks) {
        mask |= ends;
    }
}

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

/// Whether each byte is one of `wanted`.
template <class... Bytes> __m128i isAnyOf(__m128i bytes, Bytes... wanted) noexcept {
    __m128i matches = _mm_setzero_si128();
    ((matches = _mm_or_si128(matches, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted)))), ...);
    return matches;
}

void classifyUnits(PNuXmlChar units, std::uint64_t end, Masks& masks) noexcept {
    masks = {};
    for (unsigned shift = 0; shift < MarkupBlock::length; shift += 16) {
        const __m128i bytes = packUnits(units + shift);
        // As unsigned bytes: at most U+0020 exactly when the smaller of both is the byte itself.
        const __m128i blank = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(cNuSpaceA)), bytes);
        maskFor(masks, StopSet::Less) |= maskOf(isAnyOf(bytes, cNuLtA), shift);
        maskFor(masks, StopSet::Quote) |= maskOf(isAnyOf(bytes, cNuQuoteA), shift);
        maskFor(masks, StopSet::Name) |=
            maskOf(isAnyOf(bytes, cNuSpaceA, cNuGtA, cNuSlashA, cNuColonA, cNuEqualA), shift);
        maskFor(masks, StopSet::Solid) |= maskOf(blank, shift);
        maskFor(masks, StopSet::Escaped) |=
            maskOf(isAnyOf(bytes, cNuAmpA, cNuLtA, cNuGtA, cNuAposA), shift);
        end |= maskOf(isAnyOf(bytes, '\0'), shift);
    }
    maskFor(masks, StopSet::Solid) ^= ~std::uint64_t{0};
    addEnds(masks, end);
}

/// For isAnyOfWide: each wanted byte at the place that its lower half names. Any byte that has
/// another lower half is as good as none.
constexpr std::array<char, 16> placeByLowerHalf(std::initializer_list<char> wanted) {
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
    const __m256i table = _mm256_broadcastsi128_si256(
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(places.data())));
    return _mm256_cmpeq_epi8(_mm256_shuffle_epi8(table, bytes), bytes);
}

/// Thirty-two units as bytes.
[[gnu::target("avx2")]] inline __m256i packUnitsWide(PNuXmlChar units) noexcept {
    const auto* blocks = reinterpret_cast<const __m256i*>(units);
    const __m256i packed =
        _mm256_packs_epi16(_mm256_loadu_si256(blocks), _mm256_loadu_si256(blocks + 1));
    // Packing works in halves; this puts the four quarters in the order of the text.
    return _mm256_permute4x64_epi64(packed, 0b11011000);
}

[[gnu::target("avx2")]] inline std::uint64_t maskOfWide(__m256i first, __m256i second) noexcept {
    return static_cast<unsigned>(_mm256_movemask_epi8(first)) |
           static_cast<std::uint64_t>(static_cast<unsigned>(_mm256_movemask_epi8(second))) << 32;
}

/// The same as classifyUnits, 32 units at a time.
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

const bool hasWideBlocks = __builtin_cpu_supports("avx2") != 0;

void classifyBlock(PNuXmlChar units, std::uint64_t end, Masks& masks) noexcept {
    if (hasWideBlocks) {
        classifyUnitsWide(units, end, masks);
    } else {
        classifyUnits(units, end, masks);
    }
}

#else

void classifyBlock(PNuXmlChar units, std::uint64_t end, Masks& masks) noexcept {
    masks = {};
    for (unsigned index = 0; index < MarkupBlock::length; ++index) {
        const NuXmlChar unit = units[index];
        const auto mark = [&masks, index](StopSet set, bool isStop) {
            maskFor(masks, set) |= std::uint64_t{isStop} << index;
        };
        mark(StopSet::Less, unit == cNuLt);
        mark(StopSet::Quote, unit == cNuQuote);
        mark(StopSet::Name, isOneOf<cNuSpaceA, cNuGtA, cNuSlashA, cNuColonA, cNuEqualA>(unit));
        mark(StopSet::Solid, unit > cNuSpace);
        mark(StopSet::Escaped, isOneOf<cNuAmpA, cNuLtA, cNuGtA, cNuAposA>(unit));
        end |= std::uint64_t{unit == 0} << index;
    }
    addEnds(masks, end);
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
