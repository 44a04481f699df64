#include "nuXmlParser/textCounter.h"

#include <bit>
#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace nu {

namespace {

constexpr NuXmlChar lineFeed = 0x0A;

/// What a stretch of text holds.
struct Tally {
    std::int64_t visible = 0; ///< units from U+0020 on
    std::int64_t lineFeeds = 0;
    PNuXmlChar lastLineFeed = nullptr;
    std::int64_t visibleAfterLineFeed = 0; ///< units from U+0020 on behind the last line feed

    void add(PNuXmlChar place) noexcept {
        if (*place >= cNuSpace) {
            ++visible;
            ++visibleAfterLineFeed;
        } else if (*place == lineFeed) {
            ++lineFeeds;
            lastLineFeed = place;
            visibleAfterLineFeed = 0;
        }
    }
};

Tally tallyUnits(PNuXmlChar place, PNuXmlChar end) noexcept {
    Tally tally;
#if defined(__SSE2__)
    constexpr int blockLength = 16;
    for (; end - place >= blockLength; place += blockLength) {
        const auto* blocks = reinterpret_cast<const __m128i*>(place);
        const __m128i bytes = _mm_packs_epi16(_mm_loadu_si128(blocks), _mm_loadu_si128(blocks + 1));
        const auto controls = static_cast<unsigned>(_mm_movemask_epi8(
            _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(cNuSpaceA - 1)), bytes)));
        if (controls == 0) {
            tally.visible += blockLength;
            tally.visibleAfterLineFeed += blockLength;
            continue;
        }
        const auto feeds = static_cast<unsigned>(
            _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(lineFeed))));
        tally.visible += blockLength - std::popcount(controls);
        if (feeds == 0) {
            tally.visibleAfterLineFeed += blockLength - std::popcount(controls);
            continue;
        }
        const int last = 31 - std::countl_zero(feeds);
        tally.lineFeeds += std::popcount(feeds);
        tally.lastLineFeed = place + last;
        tally.visibleAfterLineFeed = blockLength - 1 - last - std::popcount(controls >> (last + 1));
    }
#endif
    for (; place < end; ++place) {
        tally.add(place);
    }
    return tally;
}

} // namespace

void TextCounter::deliverAny(PNuXmlChar place) noexcept {
    countUpTo(place);
    ++column;
    ++charCount;
    counted_ = place + 1;
}

void TextCounter::countUpTo(PNuXmlChar end) noexcept {
    if (end <= counted_) {
        return;
    }
    const Tally tally = tallyUnits(counted_, end);
    charCount += tally.visible + uncountedLineFeeds_;
    line += tally.lineFeeds;
    if (tally.lineFeeds == 0) {
        column += tally.visible;
    } else {
        column = tally.visibleAfterLineFeed + (tally.lastLineFeed == deliveredLineFeed_ ? 1 : 0);
    }
    uncountedLineFeeds_ = 0;
    counted_ = end;
}

} // namespace nu
