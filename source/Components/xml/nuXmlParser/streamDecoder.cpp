#include "nuXmlParser/streamDecoder.h"

#include <algorithm>
#include <cstring>

#include "common/codePage.h"
#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"
#include "host/runtime/utf8Sequence.h"

namespace nu {

namespace {

/// Every byte is the character of the same code.
constexpr std::uint32_t codePageLatin1 = 28591;

} // namespace

StreamDecoder::StreamDecoder(host::TStream& stream, TNuEncoding encoding, std::size_t blockSize)
    : stream_(stream), encoding_(encoding), block_(blockSize), blockSize_(blockSize),
      rest_(block_.bytes()), blockEnd_(stream.GetPosition()) {
    runEnds_.push_back({0, blockEnd_});
}

std::size_t StreamDecoder::decode(NuXmlChar* units, std::size_t room) {
    for (;;) {
        if (const std::size_t length = decodeRest(units, room); length > 0 || hasEnded_) {
            return length;
        }
        readBlock();
    }
}

/// A sequence that the block cut off comes before the next bytes.
void StreamDecoder::readBlock() {
    auto* const block = reinterpret_cast<char*>(block_.data());
    const std::size_t room = blockSize_ - rest_.size();
    std::memmove(block, rest_.data(), rest_.size());
    rest_ = {block, rest_.size()};
    const std::size_t got = stream_.Read(block + rest_.size(), room);
    if (got > room) {
        throw host::EReadError(host::messages::readError);
    }
    hasEnded_ = got == 0;
    rest_ = {block, rest_.size() + got};
    blockEnd_ += static_cast<std::int64_t>(got);
}

std::size_t StreamDecoder::decodeRest(NuXmlChar* units, std::size_t room) {
    if (encoding_ == neUtf8) {
        return decodeUtf8(units, room);
    }
    if (encoding_ == neUtf16LittleEndian) {
        return decodeUtf16(units, room);
    }
    const std::string_view bytes = rest_.substr(0, room);
    return endRun(bytes.size(), NuWidenAnsi(bytes, units, codePageLatin1));
}

std::size_t StreamDecoder::decodeUtf8(NuXmlChar* units, std::size_t room) {
    std::size_t length = 0;
    while (length < room && !rest_.empty()) {
        const std::string_view piece = rest_.substr(0, room - length);
        // What the room cuts off is not the end.
        const bool isAll = hasEnded_ && piece.size() == rest_.size();
        const TNuUtf8Prefix run = NuDecodeUtf8Run(piece, isAll, units + length);
        if (run.Bytes == 0) {
            break;
        }
        length += endRun(run.Bytes, run.Units);
    }
    return length;
}

std::size_t StreamDecoder::decodeUtf16(NuXmlChar* units, std::size_t room) {
    const std::size_t length = std::min(rest_.size() / cNuXmlCharSize, room);
    if (length == 0 && hasEnded_ && !rest_.empty()) {
        units[0] = static_cast<unsigned char>(rest_[0]);
        return endRun(1, 1);
    }
    std::memcpy(units, rest_.data(), length * cNuXmlCharSize);
    return endRun(length * cNuXmlCharSize, length);
}

/// The next `bytes` bytes have become `units` units.
std::size_t StreamDecoder::endRun(std::size_t bytes, std::size_t units) {
    if (units > 0) {
        rest_.remove_prefix(bytes);
        const RunEnd& before = runEnds_.back();
        runEnds_.push_back({before.number + static_cast<std::int64_t>(units),
                            before.position + static_cast<std::int64_t>(bytes)});
    }
    return units;
}

void StreamDecoder::forgetBefore(std::int64_t number) noexcept {
    while (runEnds_.front().number < number && runEnds_.size() > 1) {
        runEnds_.pop_front();
    }
}

std::int64_t StreamDecoder::positionOf(std::int64_t number, PNuXmlChar place) const noexcept {
    // Back from the end of the run, because its start may be gone. A run of something malformed is
    // one unit long, so that only its ends are asked for.
    const auto end = std::lower_bound(
        runEnds_.begin(), runEnds_.end(), number,
        [](const RunEnd& runEnd, std::int64_t wanted) { return runEnd.number < wanted; });
    if (end == runEnds_.end()) {
        return runEnds_.back().position;
    }
    std::int64_t position = end->position;
    for (std::int64_t left = end->number - number; left > 0; --left) {
        position -= bytesOf(*place++);
    }
    return position;
}

std::int64_t StreamDecoder::bytesOf(NuXmlChar unit) const noexcept {
    if (encoding_ != neUtf8) {
        return encoding_ == neUtf16LittleEndian ? cNuXmlCharSize : 1;
    }
    // The four bytes of a pair belong to its first unit but for one.
    return unit < 0x80 || host::isLowSurrogate(unit) ? 1 : unit < 0x800 ? 2 : 3;
}

void StreamDecoder::leaveStreamAt(std::int64_t position) {
    if (position != blockEnd_) {
        stream_.SetPosition(position);
    }
}

} // namespace nu
