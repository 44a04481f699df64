#include "common/simd/utf8Blocks.h"

#include <array>
#include <cstdint>

#include "common/simd/block.h"
#include "common/simd/wideBlock.h"

#if defined(__x86_64__)

namespace nu {
namespace {

// Decoding places at every byte the unit that a character *starting* there would have, taken from
// the byte and its two successors, and then keeps the places where characters do start. The cost
// is the same for every mixture of sequence lengths: nothing branches on them except the rare
// four-byte sequences, whose second unit is kept at their second byte.

constexpr std::ptrdiff_t decodeBlock = 32;

// A block is decoded only with as many bytes behind it as make the decoder overwrite everything
// that a store of whole vectors leaves behind the units that are kept.
constexpr std::ptrdiff_t decodeMargin = 64;

using Shuffle = std::array<std::uint8_t, 16>;

// For eight 16-bit lanes: moves the lanes whose bit is set to the front.
consteval std::array<Shuffle, 256> makeLaneShuffles() {
    std::array<Shuffle, 256> table{};
    for (unsigned mask = 0; mask < 256; ++mask) {
        std::size_t filled = 0;
        for (unsigned lane = 0; lane < 8; ++lane) {
            if ((mask >> lane & 1) == 0) {
                continue;
            }
            table[mask][filled++] = static_cast<std::uint8_t>(2 * lane);
            table[mask][filled++] = static_cast<std::uint8_t>(2 * lane + 1);
        }
    }
    return table;
}

// For four 32-bit lanes holding up to three bytes of a sequence: moves the bytes in use to the
// front. Bits 0 to 3 say which lanes use byte 1, bits 4 to 7 which use byte 0; all use byte 2.
consteval std::array<Shuffle, 256> makeSequenceShuffles() {
    std::array<Shuffle, 256> table{};
    for (unsigned mask = 0; mask < 256; ++mask) {
        std::size_t filled = 0;
        for (unsigned lane = 0; lane < 4; ++lane) {
            if ((mask >> (lane + 4) & 1) != 0) {
                table[mask][filled++] = static_cast<std::uint8_t>(4 * lane);
            }
            if ((mask >> lane & 1) != 0) {
                table[mask][filled++] = static_cast<std::uint8_t>(4 * lane + 1);
            }
            table[mask][filled++] = static_cast<std::uint8_t>(4 * lane + 2);
        }
    }
    return table;
}

alignas(64) constexpr std::array<Shuffle, 256> laneShuffles = makeLaneShuffles();
alignas(64) constexpr std::array<Shuffle, 256> sequenceShuffles = makeSequenceShuffles();

// Stores the lanes to keep and returns the place behind them.
[[gnu::target("avx2,popcnt")]] inline char16_t* storeLanes(char16_t* units, __m128i lanes,
                                                           unsigned kept) noexcept {
    const __m128i shuffle = simd::Block::load(laneShuffles[kept].data());
    simd::Block(_mm_shuffle_epi8(lanes, shuffle)).store(units);
    return units + _mm_popcnt_u32(kept);
}

[[gnu::target("avx2")]] inline __m256i all(unsigned value) noexcept {
    return _mm256_set1_epi8(static_cast<char>(value));
}

// Lanes (bytes, unsigned) that are at least `least`.
[[gnu::target("avx2")]] inline __m256i atLeast(__m256i bytes, unsigned least) noexcept {
    return _mm256_cmpeq_epi8(_mm256_max_epu8(bytes, all(least)), bytes);
}

[[gnu::target("avx2")]] inline unsigned bits(__m256i lanes) noexcept {
    return static_cast<unsigned>(_mm256_movemask_epi8(lanes));
}

// Bits of each byte moved within the byte; `mask` takes away what came from the neighbour.
template <int Count>
[[gnu::target("avx2")]] inline __m256i left(__m256i bytes, unsigned mask) noexcept {
    return _mm256_and_si256(_mm256_slli_epi16(bytes, Count), all(mask));
}

template <int Count>
[[gnu::target("avx2")]] inline __m256i right(__m256i bytes, unsigned mask) noexcept {
    return _mm256_and_si256(_mm256_srli_epi16(bytes, Count), all(mask));
}

// The units of 32 places, as their low and high bytes, and what is wrong with them.
struct PlacedUnits {
    __m256i low;
    __m256i high;
    __m256i malformed;
};

// Units of characters of one, two and three bytes; `second` and `third` are the bytes behind each
// place. Places of continuation bytes hold nothing of use.
[[gnu::target("avx2")]] inline PlacedUnits placeUnits(__m256i first, __m256i second, __m256i third,
                                                      __m256i threeBytes) noexcept {
    const __m256i lowOfTwo =
        _mm256_or_si256(left<6>(first, 0xC0), _mm256_and_si256(second, all(0x3F)));
    const __m256i lowOfThree =
        _mm256_or_si256(left<6>(second, 0xC0), _mm256_and_si256(third, all(0x3F)));
    const __m256i highOfTwo = _mm256_blendv_epi8(_mm256_setzero_si256(), right<2>(first, 0x07),
                                                 first); // the top bit tells it from ASCII
    const __m256i highOfThree = _mm256_or_si256(left<4>(first, 0xF0), right<2>(second, 0x0F));

    PlacedUnits placed;
    placed.low =
        _mm256_blendv_epi8(_mm256_blendv_epi8(first, lowOfTwo, first), lowOfThree, threeBytes);
    placed.high = _mm256_blendv_epi8(highOfTwo, highOfThree, threeBytes);
    // Overlong forms of two bytes begin with C0 or C1; those of three bytes give a unit below
    // U+0800, and surrogates show as what they are.
    const __m256i highFive = _mm256_and_si256(placed.high, all(0xF8));
    const __m256i wrongUnit = _mm256_or_si256(_mm256_cmpeq_epi8(highFive, _mm256_setzero_si256()),
                                              _mm256_cmpeq_epi8(highFive, all(0xD8)));
    const __m256i overlongTwo = _mm256_cmpeq_epi8(_mm256_and_si256(first, all(0xFE)), all(0xC0));
    placed.malformed = _mm256_or_si256(overlongTwo, _mm256_and_si256(threeBytes, wrongUnit));
    return placed;
}

// Puts the pairs of four-byte characters in place: the high half at the lead byte, the low half at
// the byte behind it (where `previous` is a lead of four).
[[gnu::target("avx2")]] inline void placePairs(PlacedUnits& placed, __m256i previous, __m256i first,
                                               __m256i second, __m256i third) noexcept {
    const __m256i lead = atLeast(first, 0xF0);
    // Ten bits of the high half, before 0x10000 / 0x400 = 0x40 is taken off their lower byte.
    const __m256i lower = _mm256_or_si256(left<2>(second, 0xFC), right<4>(third, 0x03));
    const __m256i noBorrow = atLeast(lower, 0x40);
    const __m256i highByte =
        _mm256_sub_epi8(_mm256_add_epi8(all(0xD7), _mm256_and_si256(first, all(0x0F))), noBorrow);
    placed.low = _mm256_blendv_epi8(placed.low, _mm256_sub_epi8(lower, all(0x40)), lead);
    placed.high = _mm256_blendv_epi8(placed.high, highByte, lead);
    // Overlong forms borrow below D8; values above U+10FFFF and leads above F4 go beyond DB.
    const __m256i inRange = _mm256_cmpeq_epi8(_mm256_and_si256(highByte, all(0xFC)), all(0xD8));
    placed.malformed = _mm256_or_si256(placed.malformed, _mm256_andnot_si256(inRange, lead));

    const __m256i behindLead = atLeast(previous, 0xF0);
    const __m256i lowHalfLow =
        _mm256_or_si256(left<6>(second, 0xC0), _mm256_and_si256(third, all(0x3F)));
    const __m256i lowHalfHigh = _mm256_or_si256(all(0xDC), right<2>(second, 0x03));
    placed.low = _mm256_blendv_epi8(placed.low, lowHalfLow, behindLead);
    placed.high = _mm256_blendv_epi8(placed.high, lowHalfHigh, behindLead);
}

[[gnu::target("avx2,popcnt")]] inline char16_t*
storeKept(char16_t* units, const PlacedUnits& placed, unsigned kept) noexcept {
    // Interleaving works within halves of a vector, hence the order.
    const __m256i even = _mm256_unpacklo_epi8(placed.low, placed.high);
    const __m256i odd = _mm256_unpackhi_epi8(placed.low, placed.high);
    units = storeLanes(units, _mm256_castsi256_si128(even), kept & 0xFF);
    units = storeLanes(units, _mm256_castsi256_si128(odd), kept >> 8 & 0xFF);
    units = storeLanes(units, _mm256_extracti128_si256(even, 1), kept >> 16 & 0xFF);
    return storeLanes(units, _mm256_extracti128_si256(odd, 1), kept >> 24);
}

[[gnu::target("avx2")]] inline void widen32(__m256i bytes, char16_t* units) noexcept {
    const __m256i low = _mm256_cvtepu8_epi16(_mm256_castsi256_si128(bytes));
    const __m256i high = _mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(units), low);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(units + 16), high);
}

} // namespace

[[gnu::target("avx2,popcnt")]] DecodeCursor
decodeUtf8Blocks(const unsigned char* next, const unsigned char* end, char16_t* units) noexcept {
    const unsigned char* const begin = next;
    // Continuation bytes that the block before left owing, from the lowest bit on.
    unsigned owed = 0;
    while (end - next >= decodeMargin) {
        const __m256i first = simd::loadWide(next);
        // 1. ASCII alone.
        const unsigned nonAscii = bits(first);
        if ((nonAscii | owed) == 0) {
            widen32(first, units);
            next += decodeBlock;
            units += decodeBlock;
            continue;
        }
        // 2. Continuation bytes must stand exactly where the leads ask for them.
        const __m256i second = simd::loadWide(next + 1);
        const __m256i third = simd::loadWide(next + 2);
        const __m256i three = atLeast(first, 0xE0);
        const __m256i four = atLeast(first, 0xF0);
        const unsigned continuations = bits(_mm256_cmpgt_epi8(all(0xC0), first));
        const unsigned leadsOfFour = bits(four);
        const std::uint64_t asked = owed | std::uint64_t{nonAscii & ~continuations} << 1 |
                                    std::uint64_t{bits(three)} << 2 |
                                    std::uint64_t{leadsOfFour} << 3;
        if (static_cast<unsigned>(asked) != continuations) {
            break;
        }
        // 3. Units, and for the pairs their second places.
        PlacedUnits placed = placeUnits(first, second, third, _mm256_andnot_si256(four, three));
        unsigned kept = ~continuations;
        const unsigned fourBefore = owed == 7 ? 1 : 0;
        if ((leadsOfFour | fourBefore) != 0) {
            const __m256i moved =
                _mm256_alignr_epi8(first, _mm256_permute2x128_si256(first, first, 0x08), 15);
            const __m256i previous = next == begin ? moved : simd::loadWide(next - 1);
            placePairs(placed, previous, first, second, third);
            kept |= leadsOfFour << 1 | fourBefore;
        }
        if (_mm256_testz_si256(placed.malformed, placed.malformed) == 0) {
            break;
        }
        units = storeKept(units, placed, kept);
        owed = static_cast<unsigned>(asked >> 32);
        next += decodeBlock;
    }
    // A sequence that reaches beyond the last block goes back as a whole.
    if (owed != 0) {
        std::ptrdiff_t back = 1;
        while ((next[-back] & 0xC0) == 0x80) {
            ++back;
        }
        next -= back;
        units -= *next >= 0xF0 && back > 1 ? 2 : 1;
    }
    return {next, units};
}

// Eight units become eight lanes of three bytes each, of which those in use are kept.
[[gnu::target("avx2,popcnt")]] EncodeCursor
encodeUtf8Blocks(const char16_t* next, const char16_t* end, char* bytes) noexcept {
    // Storing whole vectors may go 16 bytes beyond what is kept: the room of six more units.
    while (end - next >= 16) {
        if (simd::narrowAsciiBlock(next, bytes)) {
            next += 16;
            bytes += 16;
            continue;
        }
        // 1. Surrogates are not for this loop.
        const __m128i units = simd::Block::load(next);
        const __m128i surrogates =
            _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800))),
                            _mm_set1_epi16(static_cast<short>(0xD800)));
        if (_mm_testz_si128(surrogates, surrogates) == 0) {
            break;
        }
        // 2. Byte 2 is the last of the sequence, or the only one; byte 1 a continuation or the lead
        //    of two; byte 0 the lead of three.
        const __m256i wide = _mm256_cvtepu16_epi32(units);
        const __m256i two = _mm256_cmpgt_epi32(wide, _mm256_set1_epi32(0x7F));
        const __m256i three = _mm256_cmpgt_epi32(wide, _mm256_set1_epi32(0x7FF));
        const __m256i sixBits = _mm256_set1_epi32(0x3F);
        const __m256i last = _mm256_blendv_epi8(
            wide, _mm256_or_si256(_mm256_and_si256(wide, sixBits), _mm256_set1_epi32(0x80)), two);
        const __m256i middleBits = _mm256_srli_epi32(wide, 6);
        const __m256i middle = _mm256_blendv_epi8(
            _mm256_or_si256(middleBits, _mm256_set1_epi32(0xC0)),
            _mm256_or_si256(_mm256_and_si256(middleBits, sixBits), _mm256_set1_epi32(0x80)), three);
        const __m256i lead = _mm256_or_si256(_mm256_srli_epi32(wide, 12), _mm256_set1_epi32(0xE0));
        const __m256i sequences = _mm256_or_si256(
            lead, _mm256_or_si256(_mm256_slli_epi32(middle, 8), _mm256_slli_epi32(last, 16)));
        // 3. Keep the bytes in use.
        const auto middles = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(two)));
        const auto leads = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(three)));
        const unsigned front = (middles & 0xF) | (leads & 0xF) << 4;
        const unsigned rear = middles >> 4 | (leads & 0xF0);
        simd::Block(_mm_shuffle_epi8(_mm256_castsi256_si128(sequences),
                                     simd::Block::load(sequenceShuffles[front].data())))
            .store(bytes);
        bytes += 4 + _mm_popcnt_u32(front);
        simd::Block(_mm_shuffle_epi8(_mm256_extracti128_si256(sequences, 1),
                                     simd::Block::load(sequenceShuffles[rear].data())))
            .store(bytes);
        bytes += 4 + _mm_popcnt_u32(rear);
        next += 8;
    }
    return {next, bytes};
}

} // namespace nu

#else

namespace nu {

DecodeCursor decodeUtf8Blocks(const unsigned char* next, const unsigned char*,
                              char16_t* units) noexcept {
    return {next, units};
}

EncodeCursor encodeUtf8Blocks(const char16_t* next, const char16_t*, char* bytes) noexcept {
    return {next, bytes};
}

} // namespace nu

#endif
