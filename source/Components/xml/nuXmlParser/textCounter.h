#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "host/runtime/export.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// Text in UTF-8 that was passed without being decoded: what reads of the character behind it
/// would have counted. Control characters in it were skipped, but for those that raw reads
/// delivered: line feeds, and carriage returns right before one.
struct PassedBytes {
    const char* start = nullptr;
    const char* end = nullptr;
    const char* deliveredLineFeed = nullptr; ///< the last line feed that a raw read delivered
    std::int64_t deliveredControls = 0;      ///< how many control characters raw reads delivered
};

/// Lines, columns and character reads of a text that is read front to back, counted only when
/// somebody looks and then exactly.
///
/// Every unit from U+0020 on is one read and one column; control characters are dropped by the
/// reads that skip them and count only when a raw read delivers them. So the reads tell nothing
/// but the control characters they deliver, and the rest is found in the text when it is asked for:
/// each unit is looked at once, however often somebody asks. A source that counts every unit it
/// passes, control characters too, says so at the start and tells nothing.
class NUXML_API TextCounter {
public:
    static constexpr NuXmlChar lineFeed = 0x0A;

    std::int64_t line = 1;
    std::int64_t column = 0;
    std::int64_t charCount = 0;

    /// Starts at the first unit of a text.
    /// \param everyUnit whether control characters count like any other character; the reads need
    ///                  not tell of any then, and a line feed is column 1 of the line that it opens
    void start(PNuXmlChar text, bool everyUnit = false) noexcept {
        line = 1;
        column = 0;
        charCount = 0;
        counted_ = text;
        deliveredLineFeed_ = nullptr;
        uncountedLineFeeds_ = 0;
        lookCount_ = 0;
        everyUnit_ = everyUnit;
        passed_ = {};
    }
    /// Everything before `end` was read, then `passed`; what follows that, and is not counted, is
    /// at `next`.
    void passBytes(PNuXmlChar end, const PassedBytes& passed, PNuXmlChar next) noexcept {
        countUpTo(end);
        passed_ = passed;
        counted_ = next;
        deliveredLineFeed_ = nullptr;
    }

    /// Everything before `passing` is counted, and now what it passed, with the character at its
    /// end.
    void countPassing(PassedBytes& passing) noexcept;

    /// A raw read has delivered the unit at `place`. If it is a line feed, it has column 1 of the
    /// line that it opens. Free of branches, because line feeds behind tags come as they like.
    void deliverRaw(PNuXmlChar place) noexcept {
        const bool isLineFeed = *place == lineFeed;
        deliveredLineFeed_ = isLineFeed ? place : deliveredLineFeed_;
        uncountedLineFeeds_ += isLineFeed ? 1 : 0;
    }
    /// A read has delivered the unit at `place`, which counts as one column whatever it is: another
    /// control character, or the end of the text.
    void deliverAny(PNuXmlChar place) noexcept;
    /// When the unit at `place` was current, the next one, which is no line feed, was looked at and
    /// counted for that.
    void countLook(PNuXmlChar place) noexcept {
        if (lookCount_ == std::size(looks_)) [[unlikely]] {
            countUpTo(place + 1);
        }
        if (place < counted_) {
            ++column;
            ++charCount;
        } else {
            looks_[lookCount_++] = place;
        }
    }
    /// The text from `from` on, and all before it counted, has moved to `to`.
    void follow(PNuXmlChar from, PNuXmlChar to) noexcept {
        counted_ = to + (counted_ - from);
        for (std::size_t index = 0; index < lookCount_; ++index) {
            looks_[index] = to + (looks_[index] - from);
        }
        deliveredLineFeed_ = deliveredLineFeed_ == nullptr || deliveredLineFeed_ < from
                                 ? nullptr
                                 : to + (deliveredLineFeed_ - from);
    }
    /// What follows the text counted so far is at `place`.
    void continueAt(PNuXmlChar place) noexcept { counted_ = place; }
    /// Counts everything before `end`.
    void countUpTo(PNuXmlChar end) noexcept;
    /// Counts a stretch that is going to be counted once more, or was already.
    void countExtra(PNuXmlChar from, PNuXmlChar end) noexcept;

private:
    NUXML_LOCAL void addLooks(PNuXmlChar lastLineFeed, PNuXmlChar end) noexcept;
    NUXML_LOCAL void countBytes(const PassedBytes& passed, const char* end) noexcept;

    PassedBytes passed_;           ///< stand before `counted_` and are not in the counters
    PNuXmlChar counted_ = nullptr; ///< everything before it is in the counters
    PNuXmlChar deliveredLineFeed_ = nullptr; ///< the last line feed that a raw read delivered
    std::int64_t uncountedLineFeeds_ = 0;    ///< delivered line feeds behind `counted_`
    bool everyUnit_ = false;
    std::size_t lookCount_ = 0;
    PNuXmlChar looks_[64]; ///< where uncounted looks were made, in order
};

} // namespace nu
