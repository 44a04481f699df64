#pragma once

#include <algorithm>
#include <cstddef>

#include "nuXmlParser/baseParser.h"
#include "nuXmlParser/markupBlock.h"
#include "nuXmlParser/scan.h"
#include "nuXmlParser/textCounter.h"

namespace nu {

/// What both parsers have in common: places in the text that is at hand, and runs over it, each of
/// which does what a loop over the character operations of `Parser` would do. How text gets there,
/// and what its end is, is for the parser.
template <class Parser> class TextParser : public TNuXmlBaseParser {
public:
    PNuXmlChar ReadXmlChar() final {
        // Behind the last character, and behind a NUL that ended the text, this holds for none.
        if (readPtr_ != lastPtr_ && *readPtr_ >= cNuSpace) [[likely]] {
            currPtr_ = readPtr_++;
            return currPtr_;
        }
        return parser().readBeyondControls();
    }
    PNuXmlChar PeekWord() final { return parser().PeekXmlChar(); }
    [[nodiscard]] PNuXmlChar CurrChar() const final { return currPtr_; }

    /// The character delivered last; moves when the text does.
    [[nodiscard]] PNuXmlChar CurrPtr() const noexcept { return currPtr_; }
    /// Behind the character delivered last, where the next read begins.
    [[nodiscard]] PNuXmlChar ReadPtr() const noexcept { return readPtr_; }
    /// The last place that may be looked at. In the small parser that is the last character, not
    /// one behind it; of an empty text the place where it would start.
    [[nodiscard]] PNuXmlChar LastPtr() const noexcept { return lastPtr_; }
    /// What the last look ahead found; null before the first.
    [[nodiscard]] PNuXmlChar PeekPtr() const noexcept { return peekPtr_; }

    /// \cond internal
    // For the scanner: the text around the current character can be looked at by pointer, and a
    // read may move to any place of it.
    static constexpr bool hasTextAtHand = true;

    /// While the current character is not `stop` and the input has not ended: hands the current
    /// character to `append` (pointer and length, a run at a time) and does ReadXmlChar, or
    /// ReadRawChar where control characters are to be kept.
    template <bool keepsControls = false, class Append>
    void copyUntil(NuXmlChar stop, Append&& append) {
        while (!eof_ && *currPtr_ != stop) {
            const PNuXmlChar next = currPtr_ + 1;
            const PNuXmlChar end = findControlOr(stop, next, std::max(next, lastPtr_));
            append(currPtr_, static_cast<std::size_t>(end - currPtr_));
            moveTo(end - 1);
            if constexpr (keepsControls) {
                parser().ReadRawChar();
            } else {
                ReadXmlChar();
            }
        }
    }
    /// Where the kept text is now.
    [[nodiscard]] PNuXmlChar keptPlace() const noexcept { return keep_; }
    /// The first unit of `set`, NUL or LastPtr() at or after `place`, without moving.
    template <StopSet set> [[nodiscard]] PNuXmlChar findFrom(PNuXmlChar place) noexcept {
        return block_.find<set>(place, lastPtr_);
    }
    /// The same; tells also whether no unit of `absent` is known to stand before that.
    template <StopSet set, StopSet absent>
    [[nodiscard]] PNuXmlChar findFrom(PNuXmlChar place, bool& isFree) noexcept {
        return block_.find<set, absent>(place, lastPtr_, isFree);
    }
    /// Delivers the character at `place`, which is none of the control characters and not the last,
    /// as if all before it had been read.
    void moveTo(PNuXmlChar place) noexcept {
        currPtr_ = place;
        readPtr_ = place + 1;
    }
    [[nodiscard]] NuXmlChar current() const noexcept { return *currPtr_; }
    [[nodiscard]] PNuXmlChar currentPlace() const noexcept { return currPtr_; }
    [[nodiscard]] bool hasEnded() const noexcept { return eof_; }

protected:
    using TNuXmlBaseParser::TNuXmlBaseParser;

    PNuXmlChar currPtr_ = nullptr;
    PNuXmlChar readPtr_ = nullptr;
    PNuXmlChar lastPtr_ = nullptr;
    PNuXmlChar peekPtr_ = nullptr;
    PNuXmlChar keep_ = nullptr; ///< everything before it may go when more is decoded
    MarkupBlock block_;
    TextCounter counter_;
    /// \endcond

private:
    Parser& parser() noexcept { return static_cast<Parser&>(*this); }
};

} // namespace nu
