#pragma once

#include <cstddef>

#include "nuXmlParser/baseParser.h"
#include "nuXmlParser/markupBlock.h"

namespace support {

/// What the scanner needs of a source beside the character operations, made of these alone. It
/// offers no text at hand, so that the scanner takes each of its steps.
class PlainRuns : public TNuXmlBaseParser {
public:
    using TNuXmlBaseParser::TNuXmlBaseParser;

    template <nu::StopSet set> void readUntil() {
        do {
            ReadXmlChar();
        } while (!eof_ && !isStop<set>(*current_));
    }
    template <bool keepsControls = false, class Append>
    void copyUntil(char16_t stop, Append&& append) {
        while (!eof_ && *current_ != stop) {
            append(current_, std::size_t{1});
            if constexpr (keepsControls) {
                ReadRawChar();
            } else {
                ReadXmlChar();
            }
        }
    }
    static constexpr bool hasTextAtHand = false;
    static constexpr bool hasBytesAtHand = false;
    void keepFromHere() { kept_ = current_; }
    [[nodiscard]] PNuXmlChar keptPlace() const { return kept_; }
    [[nodiscard]] PNuXmlChar CurrChar() const override { return current_; }
    [[nodiscard]] char16_t current() const { return *current_; }
    [[nodiscard]] PNuXmlChar currentPlace() const { return current_; }
    [[nodiscard]] bool hasEnded() const { return eof_; }

protected:
    void updateCounters() override { setCounters(line_, column_, charCount_); }
    void releaseText() noexcept override {}

    PNuXmlChar current_ = nullptr;
    PNuXmlChar kept_ = nullptr;
    std::int64_t line_ = 1;
    std::int64_t column_ = 0;
    std::int64_t charCount_ = 0;

private:
    template <nu::StopSet set> [[nodiscard]] static bool isStop(char16_t unit) {
        switch (set) {
        case nu::StopSet::Less:
            return unit == u'<';
        case nu::StopSet::Quote:
            return unit == u'"';
        case nu::StopSet::Name:
            return unit == u' ' || unit == u'>' || unit == u'/' || unit == u':' || unit == u'=';
        case nu::StopSet::Solid:
            return unit > 0x20;
        }
        return false;
    }
};

} // namespace support
