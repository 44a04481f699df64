#include "nuXmlParser/smallStreamParser.h"

#include <algorithm>
#include <cstring>

#include "common/codePage.h"
#include "common/encoding.h"
#include "common/text.h"
#include "common/utf8.h"
#include "host/runtime/memoryStream.h"
#include "nuXmlParser/parserErrors.h"

namespace {

/// What an empty text points to; two units, so that two can be read through any cursor.
constexpr NuXmlChar noText[2] = {};

constexpr NuXmlChar lineFeed = 0x0A;

/// Whether the first tag, or whatever ends at the first ">", speaks of UTF-8.
bool declaresUtf8(std::string_view header) {
    const std::u16string text(header.begin(), header.end());
    return NuContainsText(text, u"utf-8");
}

} // namespace

TNuXmlSmallStreamParser::TNuXmlSmallStreamParser(host::TStream* sourceStream, bool ownsStream,
                                                 const host::Ref<host::IErrorHandler>& errorHandler)
    : TNuXmlBaseParser(sourceStream, ownsStream, errorHandler) {
    Initialize();
}

TNuXmlSmallStreamParser::~TNuXmlSmallStreamParser() = default;

void TNuXmlSmallStreamParser::Initialize() {
    TNuXmlBaseParser::Initialize();
    useText(noText, 0);
    host::TStream& stream = *SourceStream();
    decode(NuGetEncoding(stream), stream);
    counter_.start(buffer_);
}

void TNuXmlSmallStreamParser::decode(TNuEncoding encoding, host::TStream& stream) {
    // 1. What is left from the position on is the text.
    const std::int64_t start = stream.GetPosition();
    const auto size = static_cast<std::size_t>(std::max<std::int64_t>(stream.GetSize() - start, 0));

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
        decodeBytes(size == 0 ? std::string_view() : std::string_view(bytes + start, size),
                    encoding == neUtf8);
    } else {
        const auto bytes = nu::TextMemory::read(stream, size);
        decodeBytes(bytes.bytes(), encoding == neUtf8);
    }
}

void TNuXmlSmallStreamParser::useUtf16(host::TStream& stream, std::size_t size) {
    const std::size_t length = size / cNuXmlCharSize;
    const auto* inMemory = dynamic_cast<host::TCustomMemoryStream*>(&stream);
    if (inMemory != nullptr && length > 0) {
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

void TNuXmlSmallStreamParser::decodeBytes(std::string_view bytes, bool isMarkedUtf8) {
    // 1. Without a mark the text up to the first ">" tells whether it is UTF-8.
    bool mayBeUtf8 = isMarkedUtf8;
    if (!isMarkedUtf8) {
        const std::size_t tagEnd = bytes.find(cNuGtA);
        if (tagEnd == bytes.npos) {
            RaiseFatalError(nu::messages::noXml);
        }
        mayBeUtf8 = declaresUtf8(bytes.substr(0, tagEnd + 1));
    }
    memory_ = nu::TextMemory(bytes.size() * cNuXmlCharSize);
    auto* units = reinterpret_cast<NuXmlChar*>(memory_.data());

    // 2. UTF-8 is decoded as a whole or not at all.
    std::size_t length = 0;
    if (mayBeUtf8) {
        length = NuDecodeUtf8(bytes, units).value_or(0);
        if (length == 0 && isMarkedUtf8) {
            throw host::EConvertError(nu::messages::invalidUtf8);
        }
    }

    // 3. Deliberate: UTF-8 that was only declared and is none is read as 8-bit text, without a
    // word.
    if (length == 0) {
        length = NuWidenAnsi(bytes, units);
    }
    useText(units, length);
}

void TNuXmlSmallStreamParser::useText(PNuXmlChar text, std::size_t length) noexcept {
    isExhausted_ = length == 0;
    buffer_ = isExhausted_ ? noText : text;
    currPtr_ = buffer_;
    readPtr_ = buffer_;
    lastPtr_ = isExhausted_ ? buffer_ : buffer_ + (length - 1);
    if (!isExhausted_) {
        block_.classify(buffer_, lastPtr_);
    }
}

std::int64_t TNuXmlSmallStreamParser::GetStreamPos() {
    return (readPtr_ - buffer_) * cNuXmlCharSize;
}

/// The last character, or the NUL that ends the text before it: the read position stays on it.
void TNuXmlSmallStreamParser::deliverEnd() noexcept {
    readPtr_ = currPtr_;
    eof_ = true;
    isExhausted_ = true;
    endIsCounted_ = false;
}

void TNuXmlSmallStreamParser::deliverRawControl() noexcept {
    if (*currPtr_ == lineFeed) {
        counter_.deliverLineFeed(currPtr_);
    } else {
        counter_.deliverAny(currPtr_);
    }
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
    memory_.release();
}
