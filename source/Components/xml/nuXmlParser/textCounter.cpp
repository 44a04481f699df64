#include "nuXmlParser/textCounter.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <type_traits>

#include "common/utf8.h"
#include "nuXmlParser/lineFeeds.h"
#include "nuXmlParser/scan.h"

namespace nu {

namespace {

constexpr NuXmlChar lineFeed = TextCounter::lineFeed;

/// How many units, or bytes, of a text are of a kind.
struct Tally {
    std::int64_t controls = 0; ///< below U+0020
    std::int64_t lineFeeds = 0;
};

#if defined(__x86_64__)

constexpr std::ptrdiff_t blocksPerSum = 255; // a byte counts no further

std::int64_t sumOfBytes(__m128i bytes) noexcept {
    const __m128i sums = _mm_sad_epu8(bytes, _mm_setzero_si128());
    return _mm_cvtsi128_si64(sums) + _mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums));
}

/// Tallies whole blocks of the text and steps over them.
template <class Unit> Tally tallyBlocks(const Unit*& place, const Unit* end) noexcept {
    constexpr std::ptrdiff_t blockLength = 16;
    Tally tally;
    while (end - place >= blockLength) {
        __m128i controls = _mm_setzero_si128();
        __m128i lineFeeds = _mm_setzero_si128();
        const auto blocks = std::min((end - place) / blockLength, blocksPerSum);
        for (const Unit* const stop = place + blocks * blockLength; place != stop;
             place += blockLength) {
            const __m128i bytes = simd::loadCharacters(place);
            const __m128i isControl =
                _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(cNuSpaceA - 1)), bytes);
            controls = _mm_sub_epi8(controls, isControl);
            lineFeeds = _mm_sub_epi8(lineFeeds, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(lineFeed)));
        }
        tally.controls += sumOfBytes(controls);
        tally.lineFeeds += sumOfBytes(lineFeeds);
    }
    return tally;
}

[[gnu::target("avx2")]] std::int64_t sumOfBytesWide(__m256i bytes) noexcept {
    return sumOfBytes(_mm256_castsi256_si128(bytes)) +
           sumOfBytes(_mm256_extracti128_si256(bytes, 1));
}

/// The same with blocks of twice the length.
template <class Unit>
[[gnu::target("avx2")]] Tally tallyBlocksWide(const Unit*& place, const Unit* end) noexcept {
    constexpr std::ptrdiff_t blockLength = 32;
    Tally tally;
    while (end - place >= blockLength) {
        __m256i controls = _mm256_setzero_si256();
        __m256i lineFeeds = _mm256_setzero_si256();
        const auto blocks = std::min((end - place) / blockLength, blocksPerSum);
        for (const Unit* const stop = place + blocks * blockLength; place != stop;
             place += blockLength) {
            const __m256i bytes = simd::loadManyCharacters(place);
            const __m256i isControl =
                _mm256_cmpeq_epi8(_mm256_min_epu8(bytes, _mm256_set1_epi8(cNuSpaceA - 1)), bytes);
            controls = _mm256_sub_epi8(controls, isControl);
            lineFeeds =
                _mm256_sub_epi8(lineFeeds, _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(lineFeed)));
        }
        tally.controls += sumOfBytesWide(controls);
        tally.lineFeeds += sumOfBytesWide(lineFeeds);
    }
    return tally;
}

#endif

template <class Unit> Tally tallyUnits(const Unit* place, const Unit* end) noexcept {
    Tally tally;
#if defined(__x86_64__)
    tally =
        __builtin_cpu_supports("avx2") != 0 ? tallyBlocksWide(place, end) : tallyBlocks(place, end);
#endif
    for (; place < end; ++place) {
        const auto unit = static_cast<std::make_unsigned_t<Unit>>(*place);
        tally.controls += unit < cNuSpace ? 1 : 0;
        tally.lineFeeds += unit == lineFeed ? 1 : 0;
    }
    return tally;
}

PNuXmlChar lastLineFeed(PNuXmlChar start, PNuXmlChar end) noexcept {
    do {
        --end;
    } while (end != start && *end != lineFeed);
    return end;
}

} // namespace

std::int64_t countLineFeeds(std::string_view bytes) noexcept {
    return tallyUnits(bytes.data(), bytes.data() + bytes.size()).lineFeeds;
}

void TextCounter::deliverAny(PNuXmlChar place) noexcept {
    countUpTo(place);
    ++column;
    ++charCount;
    counted_ = place + 1;
}

void TextCounter::countBytes(const PassedBytes& passed, const char* end) noexcept {
    if (passed.start >= end) {
        return;
    }
    const auto solidUnits = [](std::string_view bytes, const Tally& tally) {
        return static_cast<std::int64_t>(NuUtf16Length(bytes)) - tally.controls;
    };
    const std::string_view bytes(passed.start, static_cast<std::size_t>(end - passed.start));
    const Tally tally = tallyUnits(passed.start, end);
    const std::int64_t units = solidUnits(bytes, tally);
    charCount += units + passed.deliveredControls;
    line += tally.lineFeeds;
    if (tally.lineFeeds == 0) {
        column += units;
    } else {
        const std::size_t last = bytes.rfind(static_cast<char>(lineFeed));
        const char* const start = bytes.data() + last + 1;
        column = solidUnits(bytes.substr(last + 1), tallyUnits(start, end)) +
                 (start - 1 == passed.deliveredLineFeed ? 1 : 0);
    }
}

void TextCounter::countPassing(PassedBytes& passing) noexcept {
    countBytes(passing, passing.end + 1);
    passing.start = std::max(passing.start, passing.end + 1);
    passing.deliveredControls = 0;
}

void TextCounter::countUpTo(PNuXmlChar end) noexcept {
    if (passed_.start != nullptr) {
        countBytes(passed_, passed_.end);
        passed_ = {};
    }
    if (end <= counted_) {
        return;
    }
    const Tally tally = tallyUnits(counted_, end);
    const std::int64_t reads = (end - counted_) - (everyUnit_ ? 0 : tally.controls);
    charCount += reads + uncountedLineFeeds_;
    line += tally.lineFeeds;
    PNuXmlChar last = nullptr;
    if (tally.lineFeeds == 0) {
        column += reads;
    } else {
        last = lastLineFeed(counted_, end);
        column = everyUnit_ ? end - last
                            : (end - last - 1) - tallyUnits(last + 1, end).controls +
                                  (last == deliveredLineFeed_ ? 1 : 0);
    }
    uncountedLineFeeds_ = 0;
    counted_ = end;
    if (lookCount_ > 0) {
        addLooks(last, end);
    }
}

/// Looks before `end` are reads, and columns where no line feed follows.
void TextCounter::addLooks(PNuXmlChar lastLineFeed, PNuXmlChar end) noexcept {
    std::size_t left = 0;
    for (std::size_t index = 0; index < lookCount_; ++index) {
        const PNuXmlChar place = looks_[index];
        if (place >= end) {
            looks_[left++] = place;
            continue;
        }
        ++charCount;
        column += lastLineFeed == nullptr || place > lastLineFeed ? 1 : 0;
    }
    lookCount_ = left;
}

void TextCounter::countExtra(PNuXmlChar from, PNuXmlChar end) noexcept {
    const PNuXmlChar counted = counted_;
    counted_ = from;
    countUpTo(end);
    counted_ = counted;
}

} // namespace nu
