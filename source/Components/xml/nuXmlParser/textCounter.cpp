#include "nuXmlParser/textCounter.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <type_traits>

#include "common/simd/tally.h"
#include "common/utf8.h"
#include "nuXmlParser/lineFeeds.h"

namespace nu {

namespace {

constexpr NuXmlChar lineFeed = TextCounter::lineFeed;

using simd::Tally;

template <class Unit> Tally tallyUnits(const Unit* place, const Unit* end) noexcept {
    Tally tally = simd::tallyBlocks(place, end);
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
