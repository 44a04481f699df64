#include "common/utf8StreamAdapter.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"
#include "host/runtime/utf8Sequence.h"

namespace {

using namespace std::string_view_literals;

constexpr std::size_t unitSize = sizeof(char16_t);
constexpr std::size_t longestSequence = 4;
constexpr std::size_t bytesPerUnit = 3; // at most, in either direction

host::Utf8Sequence readSequence(std::string_view bytes) noexcept {
    const auto* begin = reinterpret_cast<const unsigned char*>(bytes.data());
    return host::readUtf8Sequence(begin, begin + bytes.size());
}

bool isContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

TNuUTF8StreamAdapter::TNuUTF8StreamAdapter(host::TStream* stream, bool writeBOM, bool ownsStream)
    : stream_(stream) {
    if (stream == nullptr) {
        throw host::Exception(u"You must assign a stream to the UTF-8 adapter!");
    }
    if (writeBOM) {
        constexpr std::string_view mark = "\xEF\xBB\xBF"sv;
        stream->WriteBuffer(mark.data(), mark.size());
    }
    if (ownsStream) {
        owned_.reset(stream);
    }
}

TNuUTF8StreamAdapter::~TNuUTF8StreamAdapter() {
    try {
        if (waitingCount_ > 0) {
            Finish();
        }
    } catch (...) {
        // Nobody is left to tell; who wants to know calls Finish first.
    }
}

std::size_t TNuUTF8StreamAdapter::Read(void* buffer, std::size_t count) {
    if (count == 0) {
        return 0;
    }
    // 1. The other half of a unit, unless the stream beneath has been moved since.
    if (halfUnitPosition_ >= 0) {
        const bool isHere = stream_->GetPosition() == halfUnitPosition_;
        halfUnitPosition_ = -1;
        if (isHere) {
            *static_cast<char*>(buffer) = halfUnit_;
            ++transferred_;
            return 1;
        }
    }

    // 2. Whole units.
    makeBlocks();
    const std::size_t length =
        readUnits(std::clamp<std::size_t>(count / unitSize, 1, blockLength)) * unitSize;
    const std::size_t delivered = std::min(count, length);
    std::memcpy(buffer, units_.get(), delivered);
    transferred_ += static_cast<std::int64_t>(delivered);
    if (delivered < length) {
        halfUnit_ = static_cast<char>(units_[0] >> 8);
        halfUnitPosition_ = stream_->GetPosition();
    }
    return delivered;
}

/// Decodes what one read of the stream beneath gives, at least a unit before the end, and steps
/// back over what does not fit or is cut off.
std::size_t TNuUTF8StreamAdapter::readUnits(std::size_t room) {
    // 1. As many bytes as there is room: no sequence has more units than bytes.
    std::size_t fill = readBytes(0, std::max(room, longestSequence));
    if (fill > 0 && isContinuation(bytes_[0]) && readSecondHalf(fill)) {
        return 1;
    }

    // 2. The text, run by run; where only a few units fit, character by character.
    std::string_view rest(bytes_.get(), fill);
    std::size_t length = 0;
    bool hasEnded = false;
    while (!rest.empty() && length < room) {
        TNuUtf8Prefix run =
            NuDecodeUtf8Run(rest.substr(0, room - length), false, units_.get() + length);
        if (run.Bytes == 0) {
            const host::Utf8Sequence sequence = readSequence(rest);
            if (sequence.truncated && !hasEnded) {
                if (length > 0) {
                    break;
                }
                std::memmove(bytes_.get(), rest.data(), rest.size());
                const std::size_t more = readBytes(rest.size(), longestSequence - rest.size());
                hasEnded = more == 0;
                rest = std::string_view(bytes_.get(), rest.size() + more);
                continue;
            }
            char16_t pair[2] = {};
            const bool isPair = host::appendCodePoint(pair, sequence.codePoint) - pair == 2;
            const bool fits = !isPair || room - length >= 2;
            run = {fits ? sequence.length : std::size_t{sequence.length} - 1,
                   isPair && fits ? std::size_t{2} : std::size_t{1}};
            std::copy_n(pair, run.Units, units_.get() + length);
        }
        rest.remove_prefix(run.Bytes);
        length += run.Units;
    }

    // 3. The position tells where to go on.
    if (!rest.empty()) {
        stream_->Seek(-static_cast<std::int64_t>(rest.size()), host::SeekOrigin::Current);
    }
    return length;
}

std::size_t TNuUTF8StreamAdapter::readBytes(std::size_t offset, std::size_t count) {
    const std::size_t got = stream_->Read(bytes_.get() + offset, count);
    if (got > count) {
        throw host::EReadError(host::messages::readError);
    }
    return got;
}

/// Whether the first of the `bytesRead` bytes is the last one of a character whose first unit was
/// delivered. If so the second unit is in the block and the stream beneath behind the character.
bool TNuUTF8StreamAdapter::readSecondHalf(std::size_t bytesRead) {
    const std::int64_t behind = stream_->GetPosition();
    const std::int64_t place = behind - static_cast<std::int64_t>(bytesRead);
    constexpr std::size_t before = longestSequence - 1;
    if (place < static_cast<std::int64_t>(before)) {
        return false;
    }
    char bytes[longestSequence];
    stream_->SetPosition(place - static_cast<std::int64_t>(before));
    stream_->ReadBuffer(bytes, before);
    bytes[before] = bytes_[0];
    const host::Utf8Sequence sequence = readSequence({bytes, longestSequence});
    const bool isSecondHalf = sequence.length == longestSequence && sequence.wellFormed;
    if (isSecondHalf) {
        char16_t pair[2] = {};
        host::appendCodePoint(pair, sequence.codePoint);
        units_[0] = pair[1];
    }
    stream_->SetPosition(isSecondHalf ? place + 1 : behind);
    return isSecondHalf;
}

std::size_t TNuUTF8StreamAdapter::Write(const void* buffer, std::size_t count) {
    makeBlocks();
    const auto* source = static_cast<const char*>(buffer);
    for (std::size_t left = count; left > 0;) {
        // 1. A block of what waits and what is new.
        auto* const block = reinterpret_cast<char*>(units_.get());
        const std::size_t piece = std::min(left, blockLength * unitSize - waitingCount_);
        std::memcpy(block, waiting_, waitingCount_);
        std::memcpy(block + waitingCount_, source, piece);
        const std::size_t fill = waitingCount_ + piece;
        source += piece;
        left -= piece;

        // 2. What does not make a character yet waits. After a failure nothing does.
        std::size_t length = fill / unitSize;
        length -= length > 0 && host::isHighSurrogate(units_[length - 1]) ? 1 : 0;
        waitingCount_ = 0;
        stream_->WriteBuffer(bytes_.get(), NuEncodeUtf8({units_.get(), length}, bytes_.get()));
        waitingCount_ = fill - length * unitSize;
        std::memcpy(waiting_, block + length * unitSize, waitingCount_);
    }
    transferred_ += static_cast<std::int64_t>(count);
    return count;
}

std::int64_t TNuUTF8StreamAdapter::Seek(std::int64_t offset, host::SeekOrigin origin) {
    if (offset != 0 || origin != host::SeekOrigin::Current) {
        throw host::EStreamError(host::messages::seekError);
    }
    return transferred_;
}

void TNuUTF8StreamAdapter::Flush() { stream_->Flush(); }

void TNuUTF8StreamAdapter::Finish() {
    const bool hasUnit = waitingCount_ >= unitSize;
    waitingCount_ = 0;
    if (hasUnit) {
        char bytes[bytesPerUnit];
        stream_->WriteBuffer(bytes, NuEncodeUtf8({&host::replacementCharacter, 1}, bytes));
    }
    stream_->Flush();
}

void TNuUTF8StreamAdapter::makeBlocks() {
    if (units_ == nullptr) {
        units_ = std::make_unique_for_overwrite<char16_t[]>(blockLength);
        bytes_ = std::make_unique_for_overwrite<char[]>(bytesPerUnit * blockLength);
    }
}
