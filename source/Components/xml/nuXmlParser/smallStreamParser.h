#pragma once

#include "common/encoding.h"
#include "nuXmlParser/passedLength.h"
#include "nuXmlParser/textDecoder.h"
#include "nuXmlParser/textMemory.h"
#include "nuXmlParser/textParser.h"
#include "nuXmlParser/textSupply.h"

/// The character source that has the whole rest of its stream at hand and reads by pointer.
///
/// The text is decoded at once, or, with a window, as it is read: then only what follows the last
/// ResetBuffer stays in memory and everything moves when more is decoded. Either way what the bytes
/// are is settled before the first character. A stream in memory is read in place: it must outlive
/// the parser and stay unchanged; UTF-16 there is not even copied.
///
/// The end flag rises with the last character, and the next read throws. A NUL is the end of the
/// input for ReadXmlChar and a character like any other for ReadRawChar.
class NUXML_API TNuXmlSmallStreamParser final : public nu::TextParser<TNuXmlSmallStreamParser> {
public:
    /// The window length that holds every text.
    static constexpr std::size_t wholeText = static_cast<std::size_t>(-1);

    /// Decodes the stream from its position on. Throws host::ESAXException for a missing argument,
    /// host::EConvertError for malformed UTF-8 behind a UTF-8 mark, host::Exception
    /// "Invalid encoding" for a mark of another encoding, ENuSaxHandledAbort after reporting that
    /// 8-bit text without any ">" is no XML.
    /// \param windowLength the characters to decode ahead; wholeText decodes all
    /// \param prefersBytes whether text in another encoding is copied as UTF-8, for who reads
    ///                     bytesFromHere; UTF-16 with unpaired surrogates cannot be
    TNuXmlSmallStreamParser(host::TStream* sourceStream, bool ownsStream,
                            const host::Ref<host::IErrorHandler>& errorHandler,
                            std::size_t windowLength = wholeText, bool prefersBytes = false);
    /// \cond internal
    /// Decodes what a supply gives. The stream is only what is named as the source.
    TNuXmlSmallStreamParser(host::TStream* sourceStream,
                            const host::Ref<host::IErrorHandler>& errorHandler,
                            std::size_t windowLength, nu::TextSupply& supply);
    /// \endcond
    ~TNuXmlSmallStreamParser() override;

    /// The offset of the next character in the decoded text, in bytes.
    std::int64_t GetStreamPos() override;
    PNuXmlChar ResetBuffer() override {
        keepFromHere();
        return buffer_;
    }
    PNuXmlChar ReadRawChar() override;
    PNuXmlChar PeekXmlChar() override;
    PNuXmlChar PeekCardinal() override { return PeekXmlChar(); }

    /// Whether the text was allocated here; otherwise it lies in the stream's memory.
    [[nodiscard]] bool OwnsBuffer() const noexcept { return ownsBuffer_; }
    /// The first character of the decoded text.
    [[nodiscard]] PNuXmlChar Buffer() const noexcept { return buffer_; }

    /// \cond internal
    // Where the text is UTF-8, the scanner can have the bytes that it comes from.
    static constexpr bool hasBytesAtHand = true;
    [[nodiscard]] bool isUtf8() const noexcept { return decoder_.isUtf8(); }

    /// ReadXmlChar, at least once, until the current character may be one of `set` or the input has
    /// ended.
    template <nu::StopSet set> void readUntil() {
        if (isExhausted_) {
            raiseUnexpectedEof();
        }
        PNuXmlChar place = block_.find<set>(readPtr_, lastPtr_);
        while (place == lastPtr_ && extendAt(place)) {
            place = block_.find<set>(place, lastPtr_);
        }
        deliver(place);
    }
    /// Whether the next two characters, controls before the first skipped, are these.
    [[nodiscard]] bool peeksAt(NuXmlChar first, NuXmlChar second) {
        const PNuXmlChar place = PeekXmlChar();
        return place != lastPtr_ && place[0] == first && place[1] == second;
    }
    /// The text from the current character on stays in memory; pointers to it are good until more
    /// is decoded.
    void keepFromHere() noexcept { keep_ = currPtr_; }
    /// Decodes more text, which moves what is kept. False when nothing more stands behind what was
    /// the last character.
    bool extendWindow() { return (decoder_.hasMore() || takeSupply()) && decodeMore(); }
    /// What ReadRawChar does to the counters for the character at `place`, whether it is a line
    /// feed or no control character.
    void countRaw(PNuXmlChar place) noexcept { counter_.deliverRaw(place); }
    /// The bytes from the current character to the end of the text, for whoever reads them without
    /// this parser for a while; empty where the text is not UTF-8. NULs may stand behind them.
    [[nodiscard]] std::string_view bytesFromHere() noexcept;
    /// For whoever moves the end of what is passed on through `bytes`, which come from
    /// bytesFromHere, as if all had been read up to the character there, which is none of the
    /// control characters and not the last one. Until continueBehindPassed nothing but the
    /// counters may be asked for.
    nu::PassedBytes& startPassing(std::string_view bytes) noexcept;
    /// Delivers the character at the end of what was passed.
    void continueBehindPassed();
    /// Decodes the tag whose "<" is all that is at hand of what a supply gives; false where it is
    /// not.
    bool extendByTag() { return isMoreMarked_ && readPtr_ == lastPtr_ && extendWindow(); }
    /// From now on decoding more moves nothing, so that places in the text stay good until
    /// continueBehindPassed.
    void stayInPlace();
    /// Looking ahead has no consequences here.
    void countPeek() noexcept {}
    /// Text goes when keepFromHere says so.
    void releaseBefore(PNuXmlChar /*place*/) noexcept {}
    /// \endcond

protected:
    void Initialize() override;
    void updateCounters() override;
    void releaseText() noexcept override;

private:
    friend class nu::TextParser<TNuXmlSmallStreamParser>;

    void deliver(PNuXmlChar place) noexcept {
        currPtr_ = place;
        if (place == lastPtr_ || *place == cNuEOF) [[unlikely]] {
            deliverEnd();
        } else {
            readPtr_ = place + 1;
        }
    }
    /// Decodes more text behind `place`, which stays on its character.
    bool extendAt(PNuXmlChar& place) {
        const std::ptrdiff_t offset = place - keep_;
        const bool isMore = extendWindow();
        place = keep_ + offset;
        return isMore;
    }
    PNuXmlChar readBeyondControls();
    bool takeSupply();
    bool decodeMore();
    [[nodiscard]] NUXML_LOCAL const char* currentByte() noexcept;
    NUXML_LOCAL void markMore() noexcept;
    NUXML_LOCAL void beginWindow();
    NUXML_LOCAL void beginBehindPassed(std::ptrdiff_t counted);
    NUXML_LOCAL void notePassed() noexcept;
    [[nodiscard]] std::size_t markRoom() const noexcept { return supply_ != nullptr ? 1 : 0; }
    [[nodiscard]] bool isSupplyPassable() const noexcept {
        return isMoreMarked_ && readPtr_ == lastPtr_ && !decoder_.hasMore();
    }
    [[nodiscard]] NUXML_LOCAL bool restFitsBehind() const noexcept;
    NUXML_LOCAL void moveText(std::size_t windowLength);
    void deliverEnd() noexcept;
    NUXML_LOCAL void openText(TNuEncoding encoding, host::TStream& stream);
    NUXML_LOCAL void openUtf16(host::TStream& stream, std::size_t size);
    NUXML_LOCAL void openBytes(nu::TextDecoder::Opening opening);
    NUXML_LOCAL void useText(PNuXmlChar text, std::size_t length) noexcept;

    PNuXmlChar buffer_;
    bool ownsBuffer_ = true;
    bool isExhausted_ = true; ///< nothing is left to read: the end flag is set, or there is no text
    bool endIsCounted_ = true; ///< false while the counters lack the character that ended the input
    nu::TextDecoder decoder_;
    nu::TextMemory memory_; ///< the window
    bool prefersBytes_;
    std::size_t windowLength_;         ///< room of the window
    std::size_t stepLength_;           ///< the characters to decode at once, or as many as are kept
    PNuXmlChar knownUnit_ = nullptr;   ///< a place in the window, and where it stands in the bytes
    const char* knownByte_ = nullptr;  ///< null where that is not known
    nu::TextSupply* supply_ = nullptr; ///< of the text, or null
    /// The last unit of the window is none of the text: it stands for what the supply promises, so
    /// that whatever stands before it is not the last one.
    bool isMoreMarked_ = false;
    nu::PassedBytes passing_; ///< see startPassing; not in the counters
    bool isPassing_ = false;
    bool hasPassedBytes_ = false;
    std::int64_t droppedLength_ = 0; ///< characters that stood before the window
    // Of a supply: what was passed stands before the window, too.
    const char* passedFrom_ = nullptr; ///< what was passed last is in the length up to here
    nu::PassedLength passedLength_;
};

inline PNuXmlChar TNuXmlSmallStreamParser::ReadRawChar() {
    if (isExhausted_) {
        raiseUnexpectedEof();
    }
    currPtr_ = readPtr_;
    if (currPtr_ == lastPtr_ && !extendWindow()) {
        deliverEnd();
    } else {
        ++readPtr_;
        counter_.deliverRaw(currPtr_);
        if (*currPtr_ < cNuSpace && *currPtr_ != nu::TextCounter::lineFeed) [[unlikely]] {
            counter_.deliverAny(currPtr_);
        }
    }
    return currPtr_;
}

inline PNuXmlChar TNuXmlSmallStreamParser::PeekXmlChar() {
    peekPtr_ = readPtr_;
    while ((peekPtr_ != lastPtr_ || extendAt(peekPtr_)) && *peekPtr_ < cNuSpace) {
        ++peekPtr_;
    }
    return peekPtr_;
}
