#pragma once

#include "common/encoding.h"
#include "nuXmlParser/baseParser.h"
#include "nuXmlParser/markupBlock.h"
#include "nuXmlParser/textCounter.h"
#include "nuXmlParser/textMemory.h"

/// The character source that decodes the whole rest of its stream at once and then reads by
/// pointer.
///
/// UTF-16 that lies in a memory stream is not copied: the stream must outlive the parser and stay
/// unchanged. The end flag rises with the last character, and the next read throws. A NUL is the
/// end of the input for ReadXmlChar and a character like any other for ReadRawChar.
class NUXML_API TNuXmlSmallStreamParser final : public TNuXmlBaseParser {
public:
    /// Decodes the stream from its position on. Throws host::ESAXException for a missing argument,
    /// host::EConvertError for malformed UTF-8 behind a UTF-8 mark, host::Exception
    /// "Invalid encoding" for a mark of another encoding, ENuSaxHandledAbort after reporting that
    /// 8-bit text without any ">" is no XML.
    TNuXmlSmallStreamParser(host::TStream* sourceStream, bool ownsStream,
                            const host::Ref<host::IErrorHandler>& errorHandler);
    ~TNuXmlSmallStreamParser() override;

    /// The offset of the next character in the decoded text, in bytes.
    std::int64_t GetStreamPos() override;
    PNuXmlChar ResetBuffer() override { return buffer_; }
    PNuXmlChar ReadRawChar() override;
    PNuXmlChar ReadXmlChar() override;
    PNuXmlChar PeekXmlChar() override;
    PNuXmlChar PeekCardinal() override { return PeekXmlChar(); }
    PNuXmlChar PeekWord() override { return PeekXmlChar(); }
    [[nodiscard]] PNuXmlChar CurrChar() const override { return currPtr_; }

    /// Whether the text was allocated here; otherwise it lies in the stream's memory.
    [[nodiscard]] bool OwnsBuffer() const noexcept { return ownsBuffer_; }
    [[nodiscard]] PNuXmlChar Buffer() const noexcept { return buffer_; }
    [[nodiscard]] PNuXmlChar CurrPtr() const noexcept { return currPtr_; }
    [[nodiscard]] PNuXmlChar ReadPtr() const noexcept { return readPtr_; }
    /// The last character, not one behind it; of an empty text the place where it would start.
    [[nodiscard]] PNuXmlChar LastPtr() const noexcept { return lastPtr_; }
    [[nodiscard]] PNuXmlChar PeekPtr() const noexcept { return peekPtr_; }

    // Run operations: each does what a loop over the character operations would do.

    /// ReadXmlChar, at least once, until the current character may be one of `set` or the input has
    /// ended.
    template <nu::StopSet set> void readUntil() {
        if (isExhausted_) {
            raiseUnexpectedEof();
        }
        deliver(block_.find<set>(readPtr_, lastPtr_));
    }
    /// While the current character is not `stop` and the input has not ended: hands the current
    /// character to `append` (pointer and length, a run at a time) and does ReadXmlChar.
    template <class Append> void copyUntil(NuXmlChar stop, Append&& append) {
        while (!eof_ && *currPtr_ != stop) {
            PNuXmlChar end = currPtr_ + 1;
            while (end < lastPtr_ && *end >= cNuSpace && *end != stop) {
                ++end;
            }
            append(currPtr_, static_cast<std::size_t>(end - currPtr_));
            readPtr_ = end;
            ReadXmlChar();
        }
    }
    /// Whether the next two characters, controls before the first skipped, are these.
    [[nodiscard]] bool peeksAt(NuXmlChar first, NuXmlChar second) {
        const PNuXmlChar place = PeekXmlChar();
        return place != lastPtr_ && place[0] == first && place[1] == second;
    }
    /// The first unit of `set` at or after `place`, or the place where the input ends, without
    /// moving.
    template <nu::StopSet set> [[nodiscard]] PNuXmlChar findFrom(PNuXmlChar place) noexcept {
        return block_.find<set>(place, lastPtr_);
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
    void Initialize() override;
    void updateCounters() override;
    void releaseText() noexcept override;

private:
    void deliver(PNuXmlChar place) noexcept {
        currPtr_ = place;
        if (place == lastPtr_ || *place == cNuEOF) [[unlikely]] {
            deliverEnd();
        } else {
            readPtr_ = place + 1;
        }
    }
    void deliverEnd() noexcept;
    void deliverRawControl() noexcept;
    void decode(TNuEncoding encoding, host::TStream& stream);
    void useUtf16(host::TStream& stream, std::size_t size);
    void decodeBytes(std::string_view bytes, bool isMarkedUtf8);
    void useText(PNuXmlChar text, std::size_t length) noexcept;

    PNuXmlChar buffer_;
    PNuXmlChar currPtr_;
    PNuXmlChar readPtr_;
    PNuXmlChar lastPtr_;
    PNuXmlChar peekPtr_ = nullptr;
    bool ownsBuffer_ = true;
    bool isExhausted_ = true; ///< nothing is left to read: the end flag is set, or there is no text
    bool endIsCounted_ = true; ///< false while the counters lack the character that ended the input
    nu::MarkupBlock block_;
    nu::TextCounter counter_;
    nu::TextMemory memory_;
};

inline PNuXmlChar TNuXmlSmallStreamParser::ReadRawChar() {
    if (isExhausted_) {
        raiseUnexpectedEof();
    }
    currPtr_ = readPtr_;
    if (currPtr_ == lastPtr_) {
        deliverEnd();
    } else {
        ++readPtr_;
        if (*currPtr_ < cNuSpace) {
            deliverRawControl();
        }
    }
    return currPtr_;
}

inline PNuXmlChar TNuXmlSmallStreamParser::ReadXmlChar() {
    if (isExhausted_) {
        raiseUnexpectedEof();
    }
    PNuXmlChar place = readPtr_;
    while (*place < cNuSpace && *place != cNuEOF && place != lastPtr_) {
        ++place;
    }
    deliver(place);
    return currPtr_;
}

inline PNuXmlChar TNuXmlSmallStreamParser::PeekXmlChar() {
    peekPtr_ = readPtr_;
    while (peekPtr_ != lastPtr_ && *peekPtr_ < cNuSpace) {
        ++peekPtr_;
    }
    return peekPtr_;
}
