#pragma once

#include <cstddef>
#include <string>

#include "host/runtime/memoryStream.h"
#include "nuXmlParser/baseParser.h"
#include "nuXmlParser/markupBlock.h"

namespace support {

/// The character source as its rules say it, one unit after the other and every counter at once.
/// Slow and plain on purpose: what is fast is compared with it. Make it with new, end it with Free.
///
/// It offers what the scanner needs of a source but no text at hand, so that the scanner takes each
/// of its steps.
class PlainSource final : public TNuXmlBaseParser {
public:
    PlainSource(std::u16string_view text, const host::Ref<host::IErrorHandler>& errorHandler)
        : TNuXmlBaseParser(&nothing(), false, errorHandler), text_(text) {
        Initialize();
        current_ = next_ = text_.data();
        last_ = text_.data() + (text_.empty() ? 0 : text_.size() - 1);
    }

    PNuXmlChar ReadRawChar() override {
        failAtEnd();
        current_ = next_;
        eof_ = next_ == last_;
        advance();
        ++charCount_;
        ++column_;
        return current_;
    }
    PNuXmlChar ReadXmlChar() override {
        failAtEnd();
        do {
            current_ = next_;
            eof_ = next_ == last_ || *next_ == 0;
            advance();
        } while (*current_ < 0x20 && !eof_);
        ++charCount_;
        ++column_;
        return current_;
    }
    PNuXmlChar PeekXmlChar() override {
        PNuXmlChar peeked = next_;
        while (peeked != last_ && *peeked < 0x20) {
            ++peeked;
        }
        return peeked;
    }
    PNuXmlChar PeekCardinal() override { return PeekXmlChar(); }
    PNuXmlChar PeekWord() override { return PeekXmlChar(); }
    [[nodiscard]] PNuXmlChar CurrChar() const override { return current_; }
    PNuXmlChar ResetBuffer() override {
        keepFromHere();
        return text_.data();
    }
    std::int64_t GetStreamPos() override { return 2 * (next_ - text_.data()); }

    template <nu::StopSet set> void readUntil() {
        do {
            ReadXmlChar();
        } while (!eof_ && !isStop<set>(*current_));
    }
    template <class Append> void copyUntil(char16_t stop, Append&& append) {
        while (!eof_ && *current_ != stop) {
            append(current_, std::size_t{1});
            ReadXmlChar();
        }
    }
    [[nodiscard]] bool peeksAt(char16_t first, char16_t second) {
        const PNuXmlChar place = PeekXmlChar();
        return place != last_ && place[0] == first && place[1] == second;
    }
    static constexpr bool hasTextAtHand = false;
    void keepFromHere() { kept_ = current_; }
    [[nodiscard]] PNuXmlChar keptPlace() const { return kept_; }
    [[nodiscard]] char16_t current() const { return *current_; }
    [[nodiscard]] PNuXmlChar currentPlace() const { return current_; }
    [[nodiscard]] bool hasEnded() const { return eof_; }

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

    static host::TStream& nothing() {
        static host::TMemoryStream stream;
        return stream;
    }
    void failAtEnd() const {
        if (eof_ || text_.empty()) {
            raiseUnexpectedEof();
        }
    }
    void advance() {
        if (!eof_) {
            ++next_;
            if (*current_ == u'\n') {
                ++line_;
                column_ = 0;
            }
        }
    }
    void updateCounters() override { setCounters(line_, column_, charCount_); }
    void releaseText() noexcept override {}

    std::u16string text_;
    PNuXmlChar current_;
    PNuXmlChar next_;
    PNuXmlChar last_;
    PNuXmlChar kept_ = nullptr;
    std::int64_t line_ = 1;
    std::int64_t column_ = 0;
    std::int64_t charCount_ = 0;
};

} // namespace support
