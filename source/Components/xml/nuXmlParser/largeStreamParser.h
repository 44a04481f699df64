#pragma once

#include <exception>
#include <optional>

#include "common/encoding.h"
#include "nuXmlParser/reservedMemory.h"
#include "nuXmlParser/streamDecoder.h"
#include "nuXmlParser/textParser.h"

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
class NUXML_API TNuXmlLargeStreamParser final : public nu::TextParser<TNuXmlLargeStreamParser> {
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
    /// Throws ENuSaxFatalError "Unexpected EOF" once the end flag is set, as the other two do.
    PNuXmlChar PeekXmlChar() override;
    /// The next two characters from U+0020 on, side by side also where control characters stand
    /// between them. Throws at the end of the input, too.
    PNuXmlChar PeekCardinal() override;

    /// What the mark at the beginning, or the lack of one, told.
    [[nodiscard]] TNuEncoding Encoding() const noexcept { return encoding_; }

    /// \cond internal
    static constexpr bool hasBytesAtHand = false;

    /// ReadXmlChar, at least once, until the current character may be one of `set` or the input has
    /// ended.
    template <nu::StopSet set> void readUntil() {
        if (eof_) {
            raiseUnexpectedEof();
        }
        PNuXmlChar place = block_.find<set>(readPtr_, lastPtr_);
        // A NUL stops every search but is none of the characters sought.
        while (place == lastPtr_ || *place == cNuEOF) {
            if (place != lastPtr_) {
                ++place;
            } else if (!reachBeyond(place)) {
                return;
            }
            place = block_.find<set>(place, lastPtr_);
        }
        moveTo(place);
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
    /// Decodes more where little is left. False when there is no more, or enough.
    bool extendWindow();
    /// ReadRawChar counts like any other read here.
    void countRaw(PNuXmlChar /*place*/) noexcept {}
    /// What a look ahead to the next character, from U+0020 on, does to the counters.
    void countPeek() noexcept { counter_.countLook(currPtr_); }
    /// What ResetBuffer would have done when the character at `place` was current.
    void releaseBefore(PNuXmlChar place) noexcept { bufferStart_ = numberOf(place); }
    /// \endcond

protected:
    void Initialize() override;
    void updateCounters() override;
    void releaseText() noexcept override;

private:
    friend class nu::TextParser<TNuXmlLargeStreamParser>;

    /// Units are numbered from the start of the input.
    [[nodiscard]] std::int64_t numberOf(PNuXmlChar place) const noexcept {
        return droppedLength_ + (place - start_);
    }
    [[nodiscard]] NUXML_LOCAL bool isFull() const noexcept;
    [[nodiscard]] NUXML_LOCAL std::size_t room() const noexcept;
    NUXML_LOCAL void useText(NuXmlChar* units) noexcept;
    [[nodiscard]] NUXML_LOCAL TNuEncoding findEncoding(host::TStream& stream);
    PNuXmlChar readBeyondControls();
    PNuXmlChar peekFrom(PNuXmlChar from);
    bool reachBeyond(PNuXmlChar place);
    NUXML_LOCAL bool showMore();
    NUXML_LOCAL bool showDecoded() noexcept;
    NUXML_LOCAL bool decodeMore();
    void moveText();

    TNuEncoding encoding_ = neAnsi;
    std::size_t blockLength_;
    std::optional<nu::StreamDecoder> decoder_;
    std::exception_ptr failure_; ///< what the stream threw when it was read ahead

    nu::ReservedMemory memory_;
    NuXmlChar* start_; ///< behind one NUL
    NuXmlChar* end_;   ///< behind what is decoded; two NULs follow
    NuXmlChar peekedPair_[2] = {};
    NuXmlChar noText_[3] = {};       ///< stands for the text where there is none
    std::int64_t droppedLength_ = 0; ///< units that stood before start_
    std::int64_t bufferStart_ = 0;   ///< number of the unit with which the buffer starts
};

inline PNuXmlChar TNuXmlLargeStreamParser::ReadRawChar() {
    if (eof_) {
        raiseUnexpectedEof();
    }
    if (readPtr_ != lastPtr_ || reachBeyond(readPtr_)) {
        moveTo(readPtr_);
    }
    return currPtr_;
}
