#pragma once

#include <cstdint>

#include "host/runtime/export.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// Lines, columns and character reads of a text that is read front to back, counted only when
/// somebody looks and then exactly.
///
/// Every unit from U+0020 on is one read and one column; control characters are dropped by the
/// reads that skip them and count only when a raw read delivers them. So the reads tell nothing
/// but the control characters they deliver, and the rest is found in the text when it is asked for:
/// each unit is looked at once, however often somebody asks.
class NUXML_API TextCounter {
public:
    static constexpr NuXmlChar lineFeed = 0x0A;

    std::int64_t line = 1;
    std::int64_t column = 0;
    std::int64_t charCount = 0;

    /// Starts at the first unit of a text.
    void start(PNuXmlChar text) noexcept { *this = {}, counted_ = text; }

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
    /// The text from `from` on, and all before it counted, has moved to `to`.
    void follow(PNuXmlChar from, PNuXmlChar to) noexcept {
        counted_ = to + (counted_ - from);
        deliveredLineFeed_ = deliveredLineFeed_ == nullptr || deliveredLineFeed_ < from
                                 ? nullptr
                                 : to + (deliveredLineFeed_ - from);
    }
    /// Counts everything before `end`.
    void countUpTo(PNuXmlChar end) noexcept;

private:
    PNuXmlChar counted_ = nullptr;           ///< everything before it is in the counters
    PNuXmlChar deliveredLineFeed_ = nullptr; ///< the last line feed that a raw read delivered
    std::int64_t uncountedLineFeeds_ = 0;    ///< delivered line feeds behind `counted_`
};

} // namespace nu
