#pragma once

#include <algorithm>
#include <memory>
#include <string>

#include "common/encoding.h"
#include "common/text.h"
#include "common/utf8StreamAdapter.h"
#include "nuXmlParser/parserErrors.h"
#include "plainRuns.h"

namespace support {

/// The large-stream parser as its rules say it: each unit comes from the stream when it is
/// delivered, into a buffer that holds what came since the last ResetBuffer, and a look ahead reads
/// and then puts back the position of the stream and two pointers, nothing else. Slow and plain on
/// purpose: what is fast is compared with it. Make it with new, end it with Free.
class PlainLargeSource final : public PlainRuns {
public:
    PlainLargeSource(host::TStream* stream, bool ownsStream,
                     const host::Ref<host::IErrorHandler>& errorHandler,
                     std::size_t bufferSize = 0x2000000)
        : PlainRuns(stream, ownsStream, errorHandler), size_(bufferSize) {
        Initialize();
    }

    PNuXmlChar ReadRawChar() override {
        if (eof_) {
            raiseUnexpectedEof();
        }
        if (static_cast<std::size_t>(next_ - buffer_.get()) * 2 + 2 >= size_) {
            RaiseFatalError(u"The buffersize is not large enought to hold all the data!");
        }
        char16_t* const slot = next_;
        current_ = slot;
        *slot = 0;
        eof_ = readStream_->Read(slot, encoding_ == neAnsi ? 1 : 2) == 0;
        ++next_;
        if (*slot == u'\n') {
            ++line_;
            column_ = 0;
        }
        ++charCount_;
        ++column_;
        return current_;
    }
    PNuXmlChar ReadXmlChar() override {
        do {
            ReadRawChar();
        } while (!eof_ && *current_ < 0x20);
        return current_;
    }
    PNuXmlChar PeekXmlChar() override {
        return peek([] {});
    }
    PNuXmlChar PeekWord() override { return PeekXmlChar(); }
    PNuXmlChar PeekCardinal() override {
        char16_t* place = nullptr;
        return peek([&] {
            place = next_ - 1;
            ReadXmlChar();
            place[1] = *current_; // beside the first, whatever stood between
            current_ = place;
        });
    }
    PNuXmlChar ResetBuffer() override {
        const std::u16string kept(current_, static_cast<PNuXmlChar>(std::max(next_, peek_)));
        current_ = buffer_.get();
        next_ = buffer_.get() + 1;
        kept.copy(buffer_.get(), kept.size());
        peek_ = buffer_.get() + kept.size();
        kept_ = current_;
        return buffer_.get();
    }
    [[nodiscard]] bool peeksAt(char16_t first, char16_t second) {
        bool isPair = false;
        static_cast<void>(peek([&] {
            char16_t* const place = next_ - 1;
            const char16_t found = *place;
            if (!eof_) {
                isPair = *ReadXmlChar() == second && found == first;
            }
            current_ = place;
        }));
        return isPair;
    }

protected:
    void Initialize() override {
        TNuXmlBaseParser::Initialize();
        host::TStream& stream = *SourceStream();
        encoding_ = NuGetEncoding(stream);
        if (encoding_ == neAnsi) {
            const std::int64_t start = stream.GetPosition();
            std::u16string header;
            unsigned char byte = 0;
            bool hasEnded = false;
            do {
                hasEnded = stream.Read(&byte, 1) == 0;
                if (!hasEnded) {
                    header += byte;
                }
            } while (!hasEnded && byte != '>' && header.size() < 1025);
            if (hasEnded || header.size() == 1025) {
                RaiseFatalError(nu::messages::noXml);
            }
            stream.SetPosition(start);
            encoding_ = NuContainsText(header, u"utf-8") ? neUtf8 : neAnsi;
        }
        if (encoding_ == neUtf8) {
            adapter_ = std::make_unique<TNuUTF8StreamAdapter>(&stream);
        }
        readStream_ = adapter_ ? adapter_.get() : &stream;
        if (encoding_ != neAnsi && encoding_ != neUtf8 && encoding_ != neUtf16LittleEndian) {
            throw host::Exception(u"Invalid encoding");
        }
        buffer_ = std::make_unique<char16_t[]>(size_ / 2);
        current_ = next_ = buffer_.get();
    }

private:
    template <class Then> PNuXmlChar peek(Then&& then) {
        if (eof_) {
            raiseUnexpectedEof();
        }
        const std::int64_t position = SourceStream()->GetPosition();
        const PNuXmlChar current = current_;
        char16_t* const next = next_;
        ReadXmlChar();
        peek_ = next_ - 1;
        then();
        SourceStream()->SetPosition(position);
        current_ = current;
        next_ = next;
        return peek_;
    }

    std::size_t size_;
    TNuEncoding encoding_ = neAnsi;
    std::unique_ptr<TNuUTF8StreamAdapter> adapter_;
    host::TStream* readStream_ = nullptr;
    std::unique_ptr<char16_t[]> buffer_;
    char16_t* next_ = nullptr;
    char16_t* peek_ = nullptr;
};

} // namespace support
