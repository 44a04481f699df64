#include "nuXmlParser/smallStreamParser.h"

#include <algorithm>
#include <cstring>

#include "host/runtime/memoryStream.h"
#include "nuXmlParser/parserErrors.h"

namespace {

/// What an empty text points to; two units, so that two can be read through any cursor.
constexpr NuXmlChar noText[2] = {};

/// Half of a window must hold any sequence of bytes.
constexpr std::size_t shortestWindow = 16;

} // namespace

TNuXmlSmallStreamParser::TNuXmlSmallStreamParser(host::TStream* sourceStream, bool ownsStream,
                                                 const host::Ref<host::IErrorHandler>& errorHandler,
                                                 std::size_t windowLength)
    : TNuXmlBaseParser(sourceStream, ownsStream, errorHandler),
      windowLength_(std::max(windowLength, shortestWindow)) {
    Initialize();
}

TNuXmlSmallStreamParser::~TNuXmlSmallStreamParser() = default;

void TNuXmlSmallStreamParser::Initialize() {
    TNuXmlBaseParser::Initialize();
    useText(noText, 0);
    host::TStream& stream = *SourceStream();
    openText(NuGetEncoding(stream), stream);
    counter_.start(buffer_);
}

void TNuXmlSmallStreamParser::openText(TNuEncoding encoding, host::TStream& stream) {
    // 1. What is left from the position on is the text.
    const std::int64_t start = std::max<std::int64_t>(stream.GetPosition(), 0);
    const std::int64_t claimed = stream.GetSize();
    const auto size = static_cast<std::size_t>(claimed > start ? claimed - start : 0);

    // 2. UTF-16 needs no decoding.
    if (encoding == neUtf16LittleEndian) {
        useUtf16(stream, size);
        return;
    }
    if (encoding != neAnsi && encoding != neUtf8) {
        throw host::Exception(nu::messages::invalidEncoding);
    }

    // 3. Bytes that lie in memory are decoded from there.
    if (const auto* memory = dynamic_cast<host::TCustomMemoryStream*>(&stream)) {
        const auto* bytes = reinterpret_cast<const char*>(memory->Memory());
        stream.Seek(0, host::SeekOrigin::End);
        openBytes(
            decoder_.open(size == 0 ? std::string_view() : std::string_view(bytes + start, size),
                          encoding == neUtf8));
    } else {
        openBytes(decoder_.open(nu::TextMemory::read(stream, size), encoding == neUtf8));
    }
}

void TNuXmlSmallStreamParser::openBytes(nu::TextDecoder::Opening opening) {
    if (opening == nu::TextDecoder::Opening::NoMarkup) {
        RaiseFatalError(nu::messages::noXml);
    }
    if (opening == nu::TextDecoder::Opening::MalformedUtf8) {
        throw host::EConvertError(nu::messages::invalidUtf8);
    }
    windowLength_ = std::min(windowLength_, std::max(decoder_.unitsAtMost(), shortestWindow));
    memory_ = nu::TextMemory(windowLength_ * cNuXmlCharSize);
    auto* units = reinterpret_cast<NuXmlChar*>(memory_.data());
    useText(units, decoder_.decode(units, windowLength_));
}

PNuXmlChar TNuXmlSmallStreamParser::readBeyondControls() {
    if (isExhausted_) {
        raiseUnexpectedEof();
    }
    PNuXmlChar place = readPtr_;
    while ((place != lastPtr_ || extendAt(place)) && *place < cNuSpace && *place != cNuEOF) {
        ++place;
    }
    deliver(place);
    return currPtr_;
}

/// Puts the kept text to the start of the window and more text behind it.
bool TNuXmlSmallStreamParser::decodeMore() {
    // 1. What goes is counted before it is gone.
    counter_.countUpTo(keep_);

    // 2. Half of the window must be free; text that needs more gets a window of twice the size.
    const auto kept = static_cast<std::size_t>(lastPtr_ - keep_) + 1;
    auto* units = reinterpret_cast<NuXmlChar*>(memory_.data());
    if (kept > windowLength_ / 2) {
        nu::TextMemory grown(2 * windowLength_ * cNuXmlCharSize);
        units = reinterpret_cast<NuXmlChar*>(grown.data());
        std::memcpy(units, keep_, kept * cNuXmlCharSize);
        moveText(units);
        memory_ = std::move(grown);
        windowLength_ *= 2;
    } else {
        std::memmove(units, keep_, kept * cNuXmlCharSize);
        moveText(units);
    }

    // 3. More text.
    lastPtr_ = units + (kept - 1) + decoder_.decode(units + kept, windowLength_ - kept);
    return true;
}

/// The text from the kept place on has moved to `units`.
void TNuXmlSmallStreamParser::moveText(PNuXmlChar units) noexcept {
    droppedLength_ += keep_ - buffer_;
    counter_.follow(keep_, units);
    currPtr_ = units + (currPtr_ - keep_);
    readPtr_ = units + (readPtr_ - keep_);
    peekPtr_ = peekPtr_ < keep_ ? nullptr : units + (peekPtr_ - keep_);
    buffer_ = units;
    keep_ = units;
    block_.forget();
}

void TNuXmlSmallStreamParser::useUtf16(host::TStream& stream, std::size_t size) {
    const std::size_t length = size / cNuXmlCharSize;
    const auto* inMemory = dynamic_cast<host::TCustomMemoryStream*>(&stream);
    if (inMemory != nullptr && length == 0) {
        ownsBuffer_ = false;
        return;
    }
    if (inMemory != nullptr) {
        const std::byte* text = inMemory->Memory() + stream.GetPosition();
        if (reinterpret_cast<std::uintptr_t>(text) % alignof(NuXmlChar) == 0) {
            useText(reinterpret_cast<PNuXmlChar>(text), length);
            ownsBuffer_ = false;
            return;
        }
    }
    memory_ = nu::TextMemory::read(stream, size);
    useText(reinterpret_cast<PNuXmlChar>(memory_.data()), length);
}

void TNuXmlSmallStreamParser::useText(PNuXmlChar text, std::size_t length) noexcept {
    isExhausted_ = length == 0;
    buffer_ = isExhausted_ ? noText : text;
    currPtr_ = buffer_;
    readPtr_ = buffer_;
    keep_ = buffer_;
    lastPtr_ = isExhausted_ ? buffer_ : buffer_ + (length - 1);
    if (!isExhausted_) {
        block_.classify(buffer_, lastPtr_);
    }
}

std::int64_t TNuXmlSmallStreamParser::GetStreamPos() {
    return (droppedLength_ + (readPtr_ - buffer_)) * cNuXmlCharSize;
}

/// The last character, or the NUL that ends the text before it: the read position stays on it.
void TNuXmlSmallStreamParser::deliverEnd() noexcept {
    readPtr_ = currPtr_;
    eof_ = true;
    isExhausted_ = true;
    endIsCounted_ = false;
}

void TNuXmlSmallStreamParser::updateCounters() {
    if (!endIsCounted_) {
        counter_.deliverAny(currPtr_);
        endIsCounted_ = true;
    } else if (!isExhausted_) {
        counter_.countUpTo(readPtr_);
    }
    setCounters(counter_.line, counter_.column, counter_.charCount);
}

void TNuXmlSmallStreamParser::releaseText() noexcept {
    endIsCounted_ = true;
    useText(noText, 0);
    peekPtr_ = nullptr;
    block_.forget();
    decoder_ = {};
    memory_ = {};
}
