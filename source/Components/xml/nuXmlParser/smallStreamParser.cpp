#include "nuXmlParser/smallStreamParser.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "common/expects.h"
#include "common/simd/block.h"
#include "common/utf8.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/utf8Sequence.h"
#include "nuXmlParser/parserErrors.h"

namespace {

/// What an empty text points to; two units, so that two can be read through any cursor.
constexpr NuXmlChar noText[2] = {};

/// Half of a window must hold any sequence of bytes.
constexpr std::size_t shortestWindow = 16;

/// The characters to decode at once where most of the text is read as bytes.
constexpr std::size_t stepBetweenBytes = 256;

std::size_t bytesOf(PNuXmlChar place, PNuXmlChar end) noexcept {
    std::size_t bytes = 0;
    // 1. Most of it is ASCII.
    std::array<char, nu::simd::blockSize> narrow;
    while (end - place >= std::ptrdiff_t{narrow.size()} &&
           nu::simd::narrowAsciiBlock(place, narrow.data())) {
        bytes += narrow.size();
        place += narrow.size();
    }
    // 2. The rest by its units.
    for (; place < end; ++place) {
        // The four bytes of a pair are two for each of its halves.
        const bool isHalf = host::isSurrogate(*place);
        bytes += 1U + (*place >= 0x80 ? 1U : 0U) + (*place >= 0x800 && !isHalf ? 1U : 0U);
    }
    return bytes;
}

bool hasLoneSurrogate(std::u16string_view units) noexcept {
    // 1. Most text has no surrogates: a loop without a branch.
    bool hasAny = false;
    for (const NuXmlChar unit : units) {
        hasAny |= host::isSurrogate(unit);
    }
    // 2. Each first half before a second one.
    for (std::size_t index = 0; hasAny && index < units.size(); ++index) {
        if (host::isHighSurrogate(units[index]) && index + 1 < units.size() &&
            host::isLowSurrogate(units[index + 1])) {
            ++index;
        } else if (host::isSurrogate(units[index])) {
            return true;
        }
    }
    return false;
}

} // namespace

TNuXmlSmallStreamParser::TNuXmlSmallStreamParser(host::TStream* sourceStream, bool ownsStream,
                                                 const host::Ref<host::IErrorHandler>& errorHandler,
                                                 std::size_t windowLength, bool prefersBytes)
    : TextParser(sourceStream, ownsStream, errorHandler), prefersBytes_(prefersBytes),
      windowLength_(std::max(windowLength, shortestWindow)), stepLength_(windowLength_) {
    Initialize();
}

TNuXmlSmallStreamParser::TNuXmlSmallStreamParser(host::TStream* sourceStream,
                                                 const host::Ref<host::IErrorHandler>& errorHandler,
                                                 std::size_t windowLength, nu::TextSupply& supply)
    : TextParser(sourceStream, false, errorHandler), prefersBytes_(true),
      windowLength_(std::max(windowLength, shortestWindow)), stepLength_(windowLength_),
      supply_(&supply) {
    TNuXmlBaseParser::Initialize();
    useText(noText, 0);
    memory_ = nu::TextMemory(windowLength_ * cNuXmlCharSize);
    if (takeSupply()) {
        beginWindow();
    }
    counter_.start(buffer_);
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
        openUtf16(stream, size);
        return;
    }
    if (encoding != neAnsi && encoding != neUtf8) {
        throw host::Exception(nu::messages::invalidEncoding);
    }

    // 3. Bytes that lie in memory are decoded from there.
    if (const auto* memory = nu::asMemoryStream(stream)) {
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
    if (prefersBytes_) {
        decoder_.encodeUtf8();
        decoder_.padShortText();
        stepLength_ = std::min(stepLength_, stepBetweenBytes);
    }
    windowLength_ = std::min(windowLength_, std::max(decoder_.unitsAtMost(), shortestWindow));
    memory_ = nu::TextMemory(windowLength_ * cNuXmlCharSize);
    auto* units = reinterpret_cast<NuXmlChar*>(memory_.data());
    knownUnit_ = units;
    knownByte_ = decoder_.rest().data();
    useText(units, decoder_.decode(units, std::min(windowLength_, stepLength_)));
}

/// Where the current character stands in the bytes.
const char* TNuXmlSmallStreamParser::currentByte() noexcept {
    knownByte_ = knownByte_ != nullptr ? knownByte_ + bytesOf(knownUnit_, currPtr_)
                                       : decoder_.rest().data() - bytesOf(currPtr_, lastPtr_ + 1);
    knownUnit_ = currPtr_;
    return knownByte_;
}

std::string_view TNuXmlSmallStreamParser::bytesFromHere() noexcept {
    if (supply_ != nullptr) {
        const std::string_view bytes =
            isSupplyPassable() ? supply_->textFrom(*currPtr_) : std::string_view();
        knownByte_ = bytes.data();
        return bytes;
    }
    if (!decoder_.isUtf8()) {
        return {};
    }
    const std::string_view text = decoder_.text();
    const char* const here = currentByte();
    const auto before = static_cast<std::size_t>(here - text.data());
    return {here, text.size() - before + decoder_.padding()};
}

nu::PassedBytes& TNuXmlSmallStreamParser::startPassing(std::string_view bytes) noexcept {
    // The current character was read and counts in the text before the bytes.
    passing_ = {bytes.data() + 1, bytes.data()};
    passedFrom_ = bytes.data();
    isPassing_ = true;
    decoder_.showLast(false);
    return passing_;
}

void TNuXmlSmallStreamParser::continueBehindPassed() {
    isPassing_ = false;
    decoder_.showLast(true);
    const char* const here = knownByte_;
    if (passing_.end == here) {
        return;
    }
    knownByte_ = passing_.end;
    // What the counters were asked for last may have been the character that comes now.
    const std::ptrdiff_t counted = passing_.start > passing_.end ? 1 : 0;

    if (supply_ != nullptr) {
        beginBehindPassed(counted);
        return;
    }
    nu::expects(here < passing_.end &&
                passing_.end <= decoder_.rest().data() + decoder_.rest().size());
    hasPassedBytes_ = true;

    // 1. Often little was passed, and the window goes on behind it.
    const std::string_view passed(here, static_cast<std::size_t>(passing_.end - here));
    if (static_cast<std::ptrdiff_t>(passed.size()) < lastPtr_ - currPtr_) {
        knownUnit_ = currPtr_ + NuUtf16Length(passed);
        counter_.passBytes(readPtr_, passing_, knownUnit_ + counted);
        moveTo(knownUnit_);
        return;
    }

    // 2. Otherwise it begins anew there.
    auto* units = reinterpret_cast<NuXmlChar*>(memory_.data());
    counter_.passBytes(readPtr_, passing_, units + counted);
    stepLength_ = std::min(stepLength_, stepBetweenBytes);
    decoder_.continueAt(passing_.end);
    useText(units, decoder_.decode(units, std::min(windowLength_, stepLength_)));
    ++readPtr_;
    peekPtr_ = nullptr;
    knownUnit_ = units;
}

/// The window begins anew with the last character that was passed, behind which the supply goes on.
void TNuXmlSmallStreamParser::beginBehindPassed(std::ptrdiff_t counted) {
    supply_->pass(passing_.end);
    notePassed();
    droppedLength_ += currPtr_ - buffer_;
    auto* units = reinterpret_cast<NuXmlChar*>(memory_.data());
    counter_.passBytes(readPtr_, passing_, units + counted);
    decoder_.continueWith({passing_.end, 1});
    beginWindow();
    ++readPtr_;
    peekPtr_ = nullptr;
}

void TNuXmlSmallStreamParser::notePassed() noexcept {
    if (passing_.end > passedFrom_) {
        passedLength_.add({passedFrom_, passing_.end});
        passedFrom_ = passing_.end;
    }
}

/// Gets the next piece from the supply, if there is one; false at the end.
bool TNuXmlSmallStreamParser::takeSupply() {
    if (supply_ == nullptr || !supply_->promisesMore()) {
        return false;
    }
    const std::string_view piece = supply_->next();
    decoder_.continueWith(piece);
    return !piece.empty();
}

/// Decodes from the beginning of the window on.
void TNuXmlSmallStreamParser::beginWindow() {
    auto* units = reinterpret_cast<NuXmlChar*>(memory_.data());
    const std::size_t length = decoder_.decode(units, std::min(windowLength_ - 1, stepLength_));
    lastPtr_ = units + (length - 1);
    markMore();
    useText(units, static_cast<std::size_t>(lastPtr_ - units) + 1);
}

/// Behind everything that is at hand of what the supply gives. The mark is a character like any
/// other, and is replaced before anybody gets it.
void TNuXmlSmallStreamParser::markMore() noexcept {
    isMoreMarked_ = supply_ != nullptr && !decoder_.hasMore() && supply_->promisesMore();
    if (isMoreMarked_) {
        auto* units = reinterpret_cast<NuXmlChar*>(memory_.data());
        units[++lastPtr_ - units] = cNuSpace;
    }
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

/// Puts the kept text to the start of the window, if need be, and more text behind it.
bool TNuXmlSmallStreamParser::decodeMore() {
    const auto kept = static_cast<std::size_t>(lastPtr_ - keep_) + 1;
    if (restFitsBehind()) {
        block_.forget();
    } else {
        // 1. What goes is counted before it is gone.
        counter_.countUpTo(keep_);

        // 2. Half of the window must be free; text that needs more gets a window of twice the size.
        moveText(kept > windowLength_ / 2 ? 2 * windowLength_ : windowLength_);
    }

    // 3. More text.
    auto* units = reinterpret_cast<NuXmlChar*>(memory_.data());
    const std::ptrdiff_t last = lastPtr_ - units;
    const std::ptrdiff_t used = last + 1 - (isMoreMarked_ ? 1 : 0);
    nu::expects(used > 0 && static_cast<std::size_t>(used) <= windowLength_);
    const std::size_t room = windowLength_ - static_cast<std::size_t>(used) - markRoom();
    lastPtr_ = units + used - 1 +
               decoder_.decode(units + used, std::min(room, std::max(kept, stepLength_)));
    markMore();
    // The mark may have been replaced by the one character that was left.
    return lastPtr_ - units > last;
}

/// Whether all that is left to decode, or that the supply gave, has room behind the text in the
/// window.
bool TNuXmlSmallStreamParser::restFitsBehind() const noexcept {
    const auto* units = reinterpret_cast<PNuXmlChar>(memory_.data());
    return windowLength_ - static_cast<std::size_t>(lastPtr_ + 1 - units) >=
           decoder_.unitsAtMost() + markRoom();
}

void TNuXmlSmallStreamParser::stayInPlace() {
    // What is at hand of a supply is not all of the tag if it is but its "<".
    if (isMoreMarked_ && readPtr_ == lastPtr_) {
        takeSupply();
    }
    if (decoder_.hasMore() && !restFitsBehind()) {
        counter_.countUpTo(keep_);
        moveText(static_cast<std::size_t>(lastPtr_ - keep_) + 1 + decoder_.unitsAtMost() +
                 markRoom());
    }
}

/// Moves the text from the kept place on to the start of the window, which gets this length.
void TNuXmlSmallStreamParser::moveText(std::size_t windowLength) {
    nu::expects(keep_ <= currPtr_ && currPtr_ <= readPtr_ && readPtr_ <= lastPtr_ + 1);
    const std::size_t size = (static_cast<std::size_t>(lastPtr_ - keep_) + 1) * cNuXmlCharSize;
    nu::TextMemory grown;
    if (windowLength != windowLength_) {
        grown = nu::TextMemory(windowLength * cNuXmlCharSize);
        std::memcpy(grown.data(), keep_, size);
        std::swap(memory_, grown);
        windowLength_ = windowLength;
    } else {
        std::memmove(memory_.data(), keep_, size);
    }
    const auto* units = reinterpret_cast<PNuXmlChar>(memory_.data());
    droppedLength_ += keep_ - buffer_;
    counter_.follow(keep_, units);
    if (knownUnit_ < keep_) {
        knownByte_ = nullptr;
    } else {
        knownUnit_ = units + (knownUnit_ - keep_);
    }
    currPtr_ = units + (currPtr_ - keep_);
    readPtr_ = units + (readPtr_ - keep_);
    lastPtr_ = units + (lastPtr_ - keep_);
    peekPtr_ = peekPtr_ < keep_ ? nullptr : units + (peekPtr_ - keep_);
    buffer_ = units;
    keep_ = units;
    block_.forget();
}

void TNuXmlSmallStreamParser::openUtf16(host::TStream& stream, std::size_t size) {
    // 1. Where it lies in memory it is read there.
    std::size_t length = size / cNuXmlCharSize;
    PNuXmlChar text = noText;
    const auto* inMemory = nu::asMemoryStream(stream);
    if (inMemory != nullptr && length > 0) {
        const std::byte* const place = inMemory->Memory() + stream.GetPosition();
        const bool isAligned = reinterpret_cast<std::uintptr_t>(place) % alignof(NuXmlChar) == 0;
        text = isAligned ? reinterpret_cast<PNuXmlChar>(place) : noText;
    }
    ownsBuffer_ = text == noText && (inMemory == nullptr || length > 0);
    if (ownsBuffer_) {
        memory_ = nu::TextMemory::read(stream, size);
        text = reinterpret_cast<PNuXmlChar>(memory_.data());
    }

    // 2. As bytes, or as it is.
    const std::u16string_view units(text, length);
    if (prefersBytes_ && length > 0 && !hasLoneSurrogate(units)) {
        ownsBuffer_ = true;
        openBytes(decoder_.open(nu::TextMemory::encoded(units), true));
    } else {
        useText(text, length);
    }
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
    std::int64_t length = droppedLength_ + (readPtr_ - buffer_);
    if (supply_ != nullptr) {
        if (isPassing_) {
            notePassed();
        }
        length += passedLength_.units();
    } else if (hasPassedBytes_ || isPassing_) {
        const std::string_view text = decoder_.text();
        const char* const end = isPassing_ ? passing_.end : currentByte();
        const auto size = static_cast<std::size_t>(end - text.data());
        length =
            static_cast<std::int64_t>(NuUtf16Length(text.substr(0, size))) + (readPtr_ - currPtr_);
    }
    return length * cNuXmlCharSize;
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
        if (isPassing_) {
            counter_.countPassing(passing_);
        }
    }
    setCounters(counter_.line, counter_.column, counter_.charCount);
}

void TNuXmlSmallStreamParser::releaseText() noexcept {
    isPassing_ = false;
    endIsCounted_ = true;
    useText(noText, 0);
    peekPtr_ = nullptr;
    block_.forget();
    decoder_ = {};
    memory_ = {};
}
