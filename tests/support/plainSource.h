#pragma once

#include <cstddef>
#include <string>

#include "host/runtime/memoryStream.h"
#include "plainRuns.h"

namespace support {

/// The character source as its rules say it, one unit after the other and every counter at once.
/// Slow and plain on purpose: what is fast is compared with it. Make it with new, end it with Free.
class PlainSource final : public PlainRuns {
public:
    PlainSource(std::u16string_view text, const host::Ref<host::IErrorHandler>& errorHandler)
        : PlainRuns(&nothing(), false, errorHandler), text_(text) {
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
    PNuXmlChar ResetBuffer() override {
        keepFromHere();
        return text_.data();
    }
    std::int64_t GetStreamPos() override { return 2 * (next_ - text_.data()); }
    [[nodiscard]] bool peeksAt(char16_t first, char16_t second) {
        const PNuXmlChar place = PeekXmlChar();
        return place != last_ && place[0] == first && place[1] == second;
    }

private:
    static host::TStream& nothing() {
        static host::TMemoryStream stream;
        return stream;
    }
    void failAtEnd() {
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

    std::u16string text_;
    PNuXmlChar next_;
    PNuXmlChar last_;
};

} // namespace support
