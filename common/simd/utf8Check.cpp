#include "common/simd/utf8Check.h"

#include "common/simd/wideBlock.h"

#if defined(__x86_64__)

#include <array>
#include <cstdint>

namespace {

// Nearly everything that can be wrong with UTF-8 shows in two adjacent bytes, and to name the pairs
// that are wrong takes only three of their four halves: the second byte's low half never matters.
// So each half looks up the set of faults it may be part of, and a pair has the faults that all
// three halves agree on. Eight faults fit the bits of a byte, which makes a lookup one shuffle for
// 32 places and the cost independent of what the text holds.

// A set of half bytes: bit n says whether it holds n.
consteval unsigned halves(unsigned first, unsigned last) { return (2u << last) - (1u << first); }

constexpr unsigned anyHalf = halves(0x0, 0xF);
constexpr unsigned continuation = halves(0x8, 0xB);
constexpr unsigned lead = halves(0xC, 0xF);

struct Fault {
    unsigned firstHigh;
    unsigned firstLow;
    unsigned secondHigh;
};

constexpr std::array<Fault, 8> faults = {{
    // A continuation byte behind ASCII, and a lead without one.
    {halves(0x0, 0x7), anyHalf, continuation},
    {lead, anyHalf, anyHalf & ~continuation},
    // Overlong: C0 and C1, E0 before 80 to 9F.
    {halves(0xC, 0xC), halves(0x0, 0x1), continuation},
    {halves(0xE, 0xE), halves(0x0, 0x0), halves(0x8, 0x9)},
    // Surrogates: ED before A0 to BF.
    {halves(0xE, 0xE), halves(0xD, 0xD), halves(0xA, 0xB)},
    // Above U+10FFFF: F4 before 90 to BF and all leads above it. Before 80 to 8F these share their
    // bit with F0, which is overlong there.
    {halves(0xF, 0xF), halves(0x4, 0xF), halves(0x9, 0xB)},
    {halves(0xF, 0xF), halves(0x0, 0x0) | halves(0x5, 0xF), halves(0x8, 0x8)},
    // Two continuation bytes: a fault only where no lead before them asks for the second one.
    {continuation, anyHalf, continuation},
}};

constexpr char secondContinuation = '\x80'; // the last fault's bit

// For each value of a half byte the faults whose set holds it.
using FaultTable = std::array<std::uint8_t, 16>;

consteval FaultTable makeTable(unsigned Fault::*half) {
    FaultTable table{};
    for (unsigned value = 0; value < table.size(); ++value) {
        for (unsigned fault = 0; fault < faults.size(); ++fault) {
            const unsigned holds = faults[fault].*half >> value & 1;
            table[value] = static_cast<std::uint8_t>(table[value] | holds << fault);
        }
    }
    return table;
}

constexpr FaultTable firstHighTable = makeTable(&Fault::firstHigh);
constexpr FaultTable firstLowTable = makeTable(&Fault::firstLow);
constexpr FaultTable secondHighTable = makeTable(&Fault::secondHigh);

[[gnu::target("avx2")]] inline __m256i lookUp(const FaultTable& table, __m256i values) noexcept {
    const __m128i entries = _mm_loadu_si128(reinterpret_cast<const __m128i*>(table.data()));
    return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(entries), values);
}

[[gnu::target("avx2")]] inline __m256i lowHalves(__m256i bytes) noexcept {
    return _mm256_and_si256(bytes, _mm256_set1_epi8(0x0F));
}

[[gnu::target("avx2")]] inline __m256i highHalves(__m256i bytes) noexcept {
    return lowHalves(_mm256_srli_epi16(bytes, 4));
}

// Not zero where a byte of `block` does not follow from the bytes before it; `before` is the block
// before.
[[gnu::target("avx2")]] inline __m256i faultsOf(__m256i before, __m256i block) noexcept {
    // 1. The bytes one, two and three places back. Shifting works within halves of a vector, so
    //    each half needs the half before it.
    const __m256i halfBefore = _mm256_permute2x128_si256(before, block, 0x21);
    const __m256i oneBack = _mm256_alignr_epi8(block, halfBefore, 15);
    const __m256i twoBack = _mm256_alignr_epi8(block, halfBefore, 14);
    const __m256i threeBack = _mm256_alignr_epi8(block, halfBefore, 13);
    // 2. What the pairs say.
    const __m256i ofFirst = _mm256_and_si256(lookUp(firstHighTable, highHalves(oneBack)),
                                             lookUp(firstLowTable, lowHalves(oneBack)));
    const __m256i ofPair = _mm256_and_si256(ofFirst, lookUp(secondHighTable, highHalves(block)));
    // 3. A second continuation byte must stand exactly where a lead of three or four is two back
    //    or a lead of four three back. Subtracting leaves the top bit to those leads only.
    const __m256i asked =
        _mm256_or_si256(_mm256_subs_epu8(twoBack, _mm256_set1_epi8(0xE0 - 0x80)),
                        _mm256_subs_epu8(threeBack, _mm256_set1_epi8(0xF0 - 0x80)));
    return _mm256_xor_si256(ofPair, _mm256_and_si256(asked, _mm256_set1_epi8(secondContinuation)));
}

constexpr std::size_t groupSize = 128;

// Checks four blocks; `before` is the block before them and becomes the last of them.
[[gnu::target("avx2")]] inline bool checkGroup(const char* bytes, __m256i& before) noexcept {
    const auto* const blocks = reinterpret_cast<const __m256i*>(bytes);
    const __m256i first = _mm256_loadu_si256(blocks);
    const __m256i second = _mm256_loadu_si256(blocks + 1);
    const __m256i third = _mm256_loadu_si256(blocks + 2);
    const __m256i fourth = _mm256_loadu_si256(blocks + 3);
    // The block before counts as well, as it may end in the middle of a sequence.
    const __m256i all = _mm256_or_si256(
        before, _mm256_or_si256(_mm256_or_si256(first, second), _mm256_or_si256(third, fourth)));
    const __m256i previous = before;
    before = fourth;
    if (_mm256_movemask_epi8(all) == 0) {
        return true;
    }
    const __m256i found =
        _mm256_or_si256(_mm256_or_si256(faultsOf(previous, first), faultsOf(first, second)),
                        _mm256_or_si256(faultsOf(second, third), faultsOf(third, fourth)));
    return _mm256_testz_si256(found, found) != 0;
}

[[gnu::target("avx2")]] bool checkByGroups(std::string_view bytes) noexcept {
    __m256i before = _mm256_setzero_si256();
    while (bytes.size() >= groupSize) {
        if (!checkGroup(bytes.data(), before)) {
            return false;
        }
        bytes.remove_prefix(groupSize);
    }
    // At least one zero follows the rest, even an empty one, and breaks a sequence cut short.
    char rest[groupSize] = {};
    bytes.copy(rest, bytes.size());
    return checkGroup(rest, before);
}

} // namespace

#else

namespace {

bool checkByGroups(std::string_view) noexcept { return false; }

} // namespace

#endif

bool NuIsUtf8(std::string_view bytes) noexcept {
    return nu::simd::hasWideBlocks() ? checkByGroups(bytes)
                                     : nu::simd::detail::isUtf8ByDecoding(bytes);
}
