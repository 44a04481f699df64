#pragma once

#include <algorithm>
#include <exception>
#include <optional>

#include "common/encoding.h"
#include "nuXmlParser/baseParser.h"
#include "nuXmlParser/markupBlock.h"
#include "nuXmlParser/reservedMemory.h"
#include "nuXmlParser/scan.h"
#include "nuXmlParser/streamDecoder.h"
#include "nuXmlParser/textCounter.h"

/// The character source for streams of any size: it keeps what was read since the last ResetBuffer
/// and a little that is decoded ahead, never more than BufSize bytes and a block. What it has read
/// stays where it is until the next ResetBuffer.
///
/// It is not the small parser with less memory; what it makes of a document can differ:
/// - The end of the input is a character of its own, a NUL, which comes with the end flag. A NUL
///   inside the text is a character like any other.
/// - Every character counts as a column and a read, also those that ReadXmlChar drops.
/// - Deliberate: a look ahead counts what it looks at, and reading it later counts it again. If it
///   finds the end, the end flag rises. Applications know the columns that come of it.
/// - 8-bit text is widened byte for byte, without a code page. UTF-8 that is declared up to the
///   first ">" is believed; malformed pieces become U+FFFD.
/// - Text that does not fit into the buffer is a fatal error.
///
/// The stream is read in blocks, so its own position runs ahead; GetStreamPos tells the logical
/// one, and the stream is left there in the end, unless it goes with the parser. Going back is
/// asked of it only at the start, up to 1025 bytes, and in that end.
class NUXML_API TNuXmlLargeStreamParser final : public TNuXmlBaseParser {
public:
    /// The size of the buffer in bytes.
    static constexpr std::size_t BufSize = 0x2000000;
    /// How many characters are decoded at once, unless something else is asked for.
    static constexpr std::size_t standardBlockLength = 32 * 1024;

    /// Finds out the encoding, and decodes nothing. Throws host::ESAXException for a missing
    /// argument, host::Exception "Invalid encoding" for a mark of another encoding than UTF-8 and
    /// UTF-16 (low byte first), ENuSaxHandledAbort after reporting that 8-bit text without a ">"
    /// among its first 1024 bytes is no XML.
    /// \param blockLength the characters to decode at once
    TNuXmlLargeStreamParser(host::TStream* sourceStream, bool ownsStream,
                            const host::Ref<host::IErrorHandler>& errorHandler,
                            std::size_t blockLength = standardBlockLength);
    ~TNuXmlLargeStreamParser() override;

    /// The position of the next character in the source stream.
    std::int64_t GetStreamPos() override;
    PNuXmlChar ResetBuffer() override;
    PNuXmlChar ReadRawChar() override;
    PNuXmlChar ReadXmlChar() override;
    /// Throws ENuSaxFatalError "Unexpected EOF" once the end flag is set, as the other two do.
    PNuXmlChar PeekXmlChar() override;
    /// The next two characters from U+0020 on, side by side also where control characters stand
    /// between them. Throws at the end of the input, too.
    PNuXmlChar PeekCardinal() override;
    PNuXmlChar PeekWord() override { return PeekXmlChar(); }
    [[nodiscard]] PNuXmlChar CurrChar() const override { return currPtr_; }

    /// What the mark at the beginning, or the lack of one, told.
    [[nodiscard]] TNuEncoding Encoding() const noexcept { return encoding_; }
    /// The character delivered last; moves when the buffer does.
    [[nodiscard]] PNuXmlChar CurrPtr() const noexcept { return currPtr_; }
    /// Behind the character delivered last, where the next read begins.
    [[nodiscard]] PNuXmlChar ReadPtr() const noexcept { return readPtr_; }
    /// What the last look ahead found; null before the first.
    [[nodiscard]] PNuXmlChar PeekPtr() const noexcept { return peekPtr_; }

    /// \cond internal
    // For the scanner: what is decoded can be looked at by pointer, and a read may move to any
    // place of it.
    static constexpr bool hasTextAtHand = true;
    static constexpr bool hasBytesAtHand = false;

    // Run operations: each does what a loop over the character operations would do.

    /// ReadXmlChar, at least once, until the current character may be one of `set` or the input has
    /// ended.
    template <nu::StopSet set> void readUntil() {
        if (eof_) {
            raiseUnexpectedEof();
        }
        PNuXmlChar place = block_.find<set>(readPtr_, last_);
        // A NUL stops every search but is none of the characters sought.
        while (place == last_ || *place == cNuEOF) {
            if (place != last_) {
                ++place;
            } else if (!reachBeyond(place)) {
                return;
            }
            place = block_.find<set>(place, last_);
        }
        moveTo(place);
    }
    /// While the current character is not `stop` and the input has not ended: hands the current
    /// character to `append` (pointer and length, a run at a time) and does ReadXmlChar, or
    /// ReadRawChar where control characters are to be kept.
    template <bool keepsControls = false, class Append>
    void copyUntil(NuXmlChar stop, Append&& append) {
        while (!eof_ && *currPtr_ != stop) {
            const PNuXmlChar next = currPtr_ + 1;
            const PNuXmlChar end = nu::findControlOr(stop, next, std::max(next, last_));
            append(currPtr_, static_cast<std::size_t>(end - currPtr_));
            currPtr_ = end - 1;
            readPtr_ = end;
            if constexpr (keepsControls) {
                ReadRawChar();
            } else {
                ReadXmlChar();
            }
        }
    }
    /// Whether the next two characters, controls skipped, are these. The end, if it is met, is no
    /// character here; the end flag tells of it.
    [[nodiscard]] bool peeksAt(NuXmlChar first, NuXmlChar second) {
        const PNuXmlChar place = PeekXmlChar();
        return !eof_ && *peekFrom(place + 1) == second && *place == first;
    }
    /// The text from the current character on stays in memory. It may move now, and not before the
    /// next call of this or ResetBuffer. It still fills the buffer.
    void keepFromHere() {
        keep_ = currPtr_;
        if (currPtr_ - start_ > static_cast<std::ptrdiff_t>(blockLength_)) {
            moveText();
        }
    }
    [[nodiscard]] PNuXmlChar keptPlace() const noexcept { return keep_; }
    /// Decodes more where little is left. False when there is no more, or enough.
    bool extendWindow();
    /// The last place that may be looked at: what stands before it is text.
    [[nodiscard]] PNuXmlChar LastPtr() const noexcept { return last_; }
    /// The first unit of `set`, NUL or LastPtr() at or after `place`, without moving.
    template <nu::StopSet set> [[nodiscard]] PNuXmlChar findFrom(PNuXmlChar place) noexcept {
        return block_.find<set>(place, last_);
    }
    /// The same; tells also whether no unit of `absent` is known to stand before that.
    template <nu::StopSet set, nu::StopSet absent>
    [[nodiscard]] PNuXmlChar findFrom(PNuXmlChar place, bool& isFree) noexcept {
        return block_.find<set, absent>(place, last_, isFree);
    }
    /// Delivers the character at `place`, as if all before it had been read.
    void moveTo(PNuXmlChar place) noexcept {
        currPtr_ = place;
        readPtr_ = place + 1;
    }
    /// ReadRawChar counts like any other read here.
    void countRaw(PNuXmlChar /*place*/) noexcept {}
    /// What a look ahead to the next character, from U+0020 on, does to the counters.
    void countPeek() noexcept { counter_.countLook(currPtr_); }
    /// What ResetBuffer would have done when the character at `place` was current.
    void releaseBefore(PNuXmlChar place) noexcept { bufferStart_ = numberOf(place); }
    [[nodiscard]] NuXmlChar current() const noexcept { return *currPtr_; }
    [[nodiscard]] PNuXmlChar currentPlace() const noexcept { return currPtr_; }
    [[nodiscard]] bool hasEnded() const noexcept { return eof_; }
    /// \endcond

protected:
    void Initialize() override;
    void updateCounters() override;
    void releaseText() noexcept override;

private:
    /// Units are numbered from the start of the input.
    [[nodiscard]] std::int64_t numberOf(PNuXmlChar place) const noexcept {
        return droppedLength_ + (place - start_);
    }
    [[nodiscard]] bool isFull() const noexcept;
    [[nodiscard]] std::size_t room() const noexcept;
    void useText(NuXmlChar* units) noexcept;
    [[nodiscard]] TNuEncoding findEncoding(host::TStream& stream);
    PNuXmlChar readBeyondControls();
    PNuXmlChar peekFrom(PNuXmlChar from);
    bool reachBeyond(PNuXmlChar place);
    bool showMore();
    bool showDecoded() noexcept;
    bool decodeMore();
    void moveText();

    TNuEncoding encoding_ = neAnsi;
    std::size_t blockLength_;
    std::optional<nu::StreamDecoder> decoder_;
    std::exception_ptr failure_; ///< what the stream threw when it was read ahead

    nu::ReservedMemory memory_;
    NuXmlChar* start_; ///< behind one NUL
    NuXmlChar* end_;   ///< behind what is decoded; two NULs follow
    PNuXmlChar last_;  ///< behind what may be delivered: end_, or where the buffer is full
    PNuXmlChar currPtr_;
    PNuXmlChar readPtr_;
    PNuXmlChar peekPtr_ = nullptr;
    PNuXmlChar keep_;
    NuXmlChar peekedPair_[2] = {};
    NuXmlChar noText_[3] = {};       ///< stands for the text where there is none
    std::int64_t droppedLength_ = 0; ///< units that stood before start_
    std::int64_t bufferStart_ = 0;   ///< number of the unit with which the buffer starts
    nu::MarkupBlock block_;
    nu::TextCounter counter_;
};

inline PNuXmlChar TNuXmlLargeStreamParser::ReadRawChar() {
    if (eof_) {
        raiseUnexpectedEof();
    }
    if (readPtr_ != last_ || reachBeyond(readPtr_)) {
        moveTo(readPtr_);
    }
    return currPtr_;
}

inline PNuXmlChar TNuXmlLargeStreamParser::ReadXmlChar() {
    // Once the end flag is set nothing of this kind is left.
    if (readPtr_ != last_ && *readPtr_ >= cNuSpace) [[likely]] {
        currPtr_ = readPtr_++;
        return currPtr_;
    }
    return readBeyondControls();
}
