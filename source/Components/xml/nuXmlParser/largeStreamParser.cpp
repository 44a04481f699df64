#include "nuXmlParser/largeStreamParser.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "nuXmlParser/parserErrors.h"
#include "nuXmlParser/textDecoder.h"

namespace {

/// Characters that can be read from the start of the buffer; the next one does not fit.
constexpr std::int64_t bufferLength = TNuXmlLargeStreamParser::BufSize / cNuXmlCharSize - 1;

/// The first ">" must come before that many bytes.
constexpr std::size_t headerLimit = 1025;

constexpr std::size_t shortestBlock = 16;

/// The unit before the text and the two behind it.
constexpr std::size_t nulsAround = 3;

/// Room for a full buffer, for what may stand before it until the next move, and for a block that
/// is decoded ahead of it.
constexpr std::size_t roomFor(std::size_t blockLength) noexcept {
    return static_cast<std::size_t>(bufferLength) + 4 * blockLength;
}

} // namespace

TNuXmlLargeStreamParser::TNuXmlLargeStreamParser(host::TStream* sourceStream, bool ownsStream,
                                                 const host::Ref<host::IErrorHandler>& errorHandler,
                                                 std::size_t blockLength)
    : TextParser(sourceStream, ownsStream, errorHandler),
      blockLength_(std::max(blockLength, shortestBlock)) {
    Initialize();
}

TNuXmlLargeStreamParser::~TNuXmlLargeStreamParser() { releaseText(); }

void TNuXmlLargeStreamParser::Initialize() {
    // 1. What the bytes are.
    TNuXmlBaseParser::Initialize();
    useText(noText_);
    counter_.start(start_, true);
    host::TStream& stream = *SourceStream();
    encoding_ = findEncoding(stream);
    decoder_.emplace(stream, encoding_, 2 * blockLength_);

    // 2. The buffer.
    memory_.reserve((roomFor(blockLength_) + nulsAround) * cNuXmlCharSize);
    useText(reinterpret_cast<NuXmlChar*>(memory_.data()));
    counter_.continueAt(start_);
}

/// The text goes to `units` from now on, and there is none yet.
void TNuXmlLargeStreamParser::useText(NuXmlChar* units) noexcept {
    std::fill_n(units, nulsAround, NuXmlChar{0});
    start_ = units + 1;
    end_ = start_;
    // What may be delivered ends at end_, or where the buffer is full.
    lastPtr_ = currPtr_ = readPtr_ = keep_ = start_;
    block_.forget();
}

TNuEncoding TNuXmlLargeStreamParser::findEncoding(host::TStream& stream) {
    const TNuEncoding encoding = NuGetEncoding(stream);
    if (encoding == neUtf8 || encoding == neUtf16LittleEndian) {
        return encoding;
    }
    if (encoding != neAnsi) {
        throw host::Exception(nu::messages::invalidEncoding);
    }

    // Unmarked text tells by its first tag whether it is UTF-8.
    const std::int64_t start = stream.GetPosition();
    std::array<char, headerLimit> bytes;
    std::string_view header(bytes.data(), 0);
    std::size_t tagEnd = header.npos;
    while (tagEnd == header.npos && header.size() < headerLimit) {
        const std::size_t room = headerLimit - header.size();
        const std::size_t got = stream.Read(bytes.data() + header.size(), room);
        if (got == 0 || got > room) {
            break;
        }
        header = {bytes.data(), header.size() + got};
        tagEnd = header.find(cNuGtA);
    }
    if (tagEnd >= headerLimit - 1) {
        RaiseFatalError(nu::messages::noXml);
    }
    stream.SetPosition(start);
    return nu::declaresUtf8(header.substr(0, tagEnd + 1)) ? neUtf8 : neAnsi;
}

PNuXmlChar TNuXmlLargeStreamParser::ResetBuffer() {
    if (currPtr_ == readPtr_) {
        // Deliberate: before the first read this leaves a hole, a NUL, where a character would be.
        currPtr_ = readPtr_ - 1;
    }
    releaseBefore(currPtr_);
    peekPtr_ = peekPtr_ == nullptr ? readPtr_ : std::max(peekPtr_, readPtr_);
    keepFromHere();
    return currPtr_;
}

PNuXmlChar TNuXmlLargeStreamParser::readBeyondControls() {
    if (eof_) {
        raiseUnexpectedEof();
    }
    PNuXmlChar place = readPtr_;
    for (;;) {
        while (place != lastPtr_ && *place < cNuSpace) {
            ++place;
        }
        if (place != lastPtr_) {
            moveTo(place);
            return currPtr_;
        }
        if (!reachBeyond(place)) {
            return currPtr_;
        }
    }
}

PNuXmlChar TNuXmlLargeStreamParser::PeekXmlChar() {
    if (eof_) {
        raiseUnexpectedEof();
    }
    counter_.countUpTo(readPtr_);
    peekPtr_ = peekFrom(readPtr_);
    return peekPtr_;
}

PNuXmlChar TNuXmlLargeStreamParser::PeekCardinal() {
    const PNuXmlChar first = PeekXmlChar();
    if (eof_) {
        // Reading on behind the end fails, and what has been read then stays read.
        moveTo(first);
        counter_.continueAt(readPtr_);
        raiseUnexpectedEof();
    }
    const PNuXmlChar second = peekFrom(first + 1);
    if (second == first + 1) {
        return first;
    }
    peekedPair_[0] = *first;
    peekedPair_[1] = *second;
    return peekedPair_;
}

/// The first character at or after `from` that is no control character, or the end of the input,
/// with everything counted that a read would count.
PNuXmlChar TNuXmlLargeStreamParser::peekFrom(PNuXmlChar from) {
    PNuXmlChar place = from;
    for (;;) {
        while (place != lastPtr_ && *place < cNuSpace) {
            ++place;
        }
        const bool isFound = place != lastPtr_;
        counter_.countExtra(from, place + (isFound ? 1 : 0));
        if (isFound) {
            return place;
        }
        from = place;
        if (!showMore()) {
            counter_.countExtra(from, place + 1);
            eof_ = true;
            lastPtr_ = readPtr_; // nothing can be read any more
            block_.forget();
            return place;
        }
    }
}

/// Everything before `place`, which is where the visible text ends, is delivered. Gets more, or
/// delivers the end and says so by false.
bool TNuXmlLargeStreamParser::reachBeyond(PNuXmlChar place) {
    if (place != readPtr_) {
        currPtr_ = place - 1;
        readPtr_ = place;
    }
    if (showMore()) {
        return true;
    }
    moveTo(place);
    eof_ = true;
    return false;
}

/// Moves the end of the visible text on; false at the end of the input.
bool TNuXmlLargeStreamParser::showMore() {
    if (showDecoded()) {
        return true;
    }
    if (isFull()) {
        RaiseFatalError(nu::messages::bufferTooSmall);
    }
    if (!decodeMore()) {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        return false;
    }
    return showDecoded();
}

/// What is decoded is visible as far as it fits into the buffer. Whether that is more than before.
bool TNuXmlLargeStreamParser::showDecoded() noexcept {
    const PNuXmlChar end =
        start_ +
        std::min<std::int64_t>(end_ - start_, bufferStart_ + bufferLength - droppedLength_);
    if (end <= lastPtr_) {
        return false;
    }
    lastPtr_ = end;
    block_.forget();
    return true;
}

bool TNuXmlLargeStreamParser::extendWindow() {
    const bool isEnough = lastPtr_ - currPtr_ >= static_cast<std::ptrdiff_t>(blockLength_ / 2);
    return !isEnough && lastPtr_ == end_ && !isFull() && decodeMore() && showDecoded();
}

bool TNuXmlLargeStreamParser::isFull() const noexcept {
    return numberOf(lastPtr_) - bufferStart_ >= bufferLength || room() < shortestBlock;
}

std::size_t TNuXmlLargeStreamParser::room() const noexcept {
    return roomFor(blockLength_) - static_cast<std::size_t>(end_ - start_);
}

/// Decodes a block behind what is decoded. False at the end, or when the stream fails: then
/// everything before the failure is to be delivered first.
bool TNuXmlLargeStreamParser::decodeMore() {
    if (failure_ || !decoder_) {
        return false;
    }
    std::size_t length = 0;
    try {
        decoder_->forgetBefore(numberOf(readPtr_));
        length = decoder_->decode(end_, std::min(room(), blockLength_));
    } catch (...) {
        failure_ = std::current_exception();
    }
    end_ += length;
    end_[0] = end_[1] = 0;
    return length > 0;
}

/// Moves the kept text to the start of the memory.
void TNuXmlLargeStreamParser::moveText() {
    const std::ptrdiff_t distance = keep_ - start_;
    counter_.countUpTo(keep_);
    counter_.follow(keep_, start_);
    std::memmove(start_, keep_, static_cast<std::size_t>(end_ + 2 - keep_) * cNuXmlCharSize);
    peekPtr_ = peekPtr_ < keep_ ? nullptr : peekPtr_ - distance;
    for (PNuXmlChar* place : {&lastPtr_, &currPtr_, &readPtr_, &keep_}) {
        *place -= distance;
    }
    end_ -= distance;
    droppedLength_ += distance;
    block_.forget();
}

std::int64_t TNuXmlLargeStreamParser::GetStreamPos() {
    if (!decoder_) {
        return TNuXmlBaseParser::GetStreamPos();
    }
    const PNuXmlChar place = std::min<PNuXmlChar>(readPtr_, end_);
    return decoder_->positionOf(numberOf(place), place);
}

void TNuXmlLargeStreamParser::updateCounters() {
    counter_.countUpTo(readPtr_);
    setCounters(counter_.line, counter_.column, counter_.charCount);
}

void TNuXmlLargeStreamParser::releaseText() noexcept {
    if (decoder_ && !OwnsStream()) {
        try {
            decoder_->leaveStreamAt(GetStreamPos());
        } catch (...) {
            // A stream that cannot go back stays where it is.
        }
    }
    useText(noText_);
    counter_.continueAt(readPtr_);
    peekPtr_ = nullptr;
    decoder_.reset();
    memory_.release();
}
