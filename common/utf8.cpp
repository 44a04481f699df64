#include "common/utf8.h"

#include <algorithm>

#include "common/simd/block.h"
#include "common/simd/utf8Blocks.h"
#include "common/simd/wideBlock.h"
#include "host/runtime/utf8Sequence.h"

namespace {

using nu::DecodeCursor;
using nu::EncodeCursor;

constexpr auto blockSize = static_cast<std::ptrdiff_t>(nu::simd::blockSize);

bool isContinuation(unsigned char byte) noexcept { return (byte & 0xC0) == 0x80; }

// Bytes below 0x80 in a row.
DecodeCursor decodeAscii(DecodeCursor cursor, const unsigned char* end) noexcept {
    while (end - cursor.next >= blockSize && nu::simd::isAsciiBlock(cursor.next)) {
        nu::simd::widenBlock(cursor.next, cursor.units);
        cursor.next += blockSize;
        cursor.units += blockSize;
    }
    while (cursor.next != end && *cursor.next < 0x80) {
        *cursor.units++ = *cursor.next++;
    }
    return cursor;
}

// Sequences of two bytes in a row.
DecodeCursor decodeTwos(DecodeCursor cursor, const unsigned char* end) noexcept {
    const unsigned char* at = cursor.next;
    char16_t* units = cursor.units;
    while (end - at >= 2 && at[0] >= 0xC2 && at[0] < 0xE0 && isContinuation(at[1])) {
        *units++ = static_cast<char16_t>((at[0] & 0x1F) << 6 | (at[1] & 0x3F));
        at += 2;
    }
    return {at, units};
}

// Sequences of three bytes in a row.
DecodeCursor decodeThrees(DecodeCursor cursor, const unsigned char* end) noexcept {
    const unsigned char* at = cursor.next;
    char16_t* units = cursor.units;
    while (end - at >= 3 && (at[0] & 0xF0) == 0xE0 && isContinuation(at[1]) &&
           isContinuation(at[2])) {
        const auto unit =
            static_cast<char16_t>((at[0] & 0x0F) << 12 | (at[1] & 0x3F) << 6 | (at[2] & 0x3F));
        if (unit < 0x800 || host::isSurrogate(unit)) {
            break;
        }
        *units++ = unit;
        at += 3;
    }
    return {at, units};
}

// Stops at the first malformed sequence.
DecodeCursor decodeRuns(DecodeCursor cursor, const unsigned char* end) noexcept {
    for (;;) {
        cursor = decodeAscii(cursor, end);
        if (cursor.next == end) {
            return cursor;
        }
        const unsigned char* const before = cursor.next;
        const unsigned lead = *before;
        if (lead < 0xE0) {
            cursor = decodeTwos(cursor, end);
        } else if (lead < 0xF0) {
            cursor = decodeThrees(cursor, end);
        } else if (const auto four = host::readUtf8Sequence(before, end); four.wellFormed) {
            cursor = {before + four.length, host::appendCodePoint(cursor.units, four.codePoint)};
        }
        if (cursor.next == before) {
            return cursor;
        }
    }
}

DecodeCursor decodePrefix(DecodeCursor cursor, const unsigned char* end) noexcept {
    if (nu::simd::hasWideBlocks()) {
        cursor = nu::decodeUtf8Blocks(cursor.next, end, cursor.units);
    }
    return decodeRuns(cursor, end);
}

const unsigned char* beginOf(std::string_view bytes) noexcept {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

// Encodes one character, an unpaired surrogate as U+FFFD.
EncodeCursor encodeOne(EncodeCursor cursor, const char16_t* end) noexcept {
    char32_t codePoint = *cursor.next++;
    if (codePoint < 0x80) {
        *cursor.bytes++ = static_cast<char>(codePoint);
        return cursor;
    }
    if (codePoint < 0x800) {
        *cursor.bytes++ = static_cast<char>(0xC0 | codePoint >> 6);
        *cursor.bytes++ = static_cast<char>(0x80 | (codePoint & 0x3F));
        return cursor;
    }
    if (host::isSurrogate(static_cast<char16_t>(codePoint))) {
        if (codePoint < 0xDC00 && cursor.next != end && host::isLowSurrogate(*cursor.next)) {
            codePoint = 0x10000 + ((codePoint & 0x3FF) << 10 | (*cursor.next++ & 0x3FF));
            *cursor.bytes++ = static_cast<char>(0xF0 | codePoint >> 18);
            *cursor.bytes++ = static_cast<char>(0x80 | (codePoint >> 12 & 0x3F));
            *cursor.bytes++ = static_cast<char>(0x80 | (codePoint >> 6 & 0x3F));
            *cursor.bytes++ = static_cast<char>(0x80 | (codePoint & 0x3F));
            return cursor;
        }
        codePoint = host::replacementCharacter;
    }
    *cursor.bytes++ = static_cast<char>(0xE0 | codePoint >> 12);
    *cursor.bytes++ = static_cast<char>(0x80 | (codePoint >> 6 & 0x3F));
    *cursor.bytes++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    return cursor;
}

} // namespace

TNuUtf8Prefix NuDecodeUtf8Prefix(std::string_view bytes, char16_t* units) noexcept {
    const unsigned char* const begin = beginOf(bytes);
    const DecodeCursor cursor = decodePrefix({begin, units}, begin + bytes.size());
    return {static_cast<std::size_t>(cursor.next - begin),
            static_cast<std::size_t>(cursor.units - units)};
}

std::optional<std::size_t> NuDecodeUtf8(std::string_view bytes, char16_t* units) noexcept {
    const TNuUtf8Prefix prefix = NuDecodeUtf8Prefix(bytes, units);
    if (prefix.Bytes != bytes.size()) {
        return std::nullopt;
    }
    return prefix.Units;
}

std::size_t NuUtf16Length(std::string_view bytes) noexcept {
    using nu::simd::Block;
    using nu::simd::blockSize;
    // Each first byte of a sequence is a unit, and that of four bytes another one. A byte of the
    // sums counts no further than this.
    constexpr std::size_t mostBlocks = 127;
    std::size_t units = 0;
    const char* place = bytes.data();
    for (std::size_t left = bytes.size() / blockSize; left > 0;) {
        const std::size_t blocks = std::min(left, mostBlocks);
        Block sums = Block::all(0);
        for (const char* const stop = place + blocks * blockSize; place != stop;
             place += blockSize) {
            const Block block = Block::load(place);
            sums = sums.less(block.beginsSequence()).less(block.isAtLeast(0xF0));
        }
        units += static_cast<std::size_t>(sums.sum());
        left -= blocks;
    }
    for (const char* const end = bytes.data() + bytes.size(); place != end; ++place) {
        const auto code = static_cast<unsigned char>(*place);
        units += ((code & 0xC0) != 0x80 ? 1U : 0U) + (code >= 0xF0 ? 1U : 0U);
    }
    return units;
}

std::optional<std::u16string> NuUtf8ToWideString(std::string_view bytes) {
    std::u16string text(bytes.size(), u'\0');
    const std::optional<std::size_t> count = NuDecodeUtf8(bytes, text.data());
    if (!count) {
        return std::nullopt;
    }
    text.resize(*count);
    return text;
}

TNuUtf8Prefix NuDecodeUtf8Run(std::string_view bytes, bool isAll, char16_t* units) noexcept {
    const TNuUtf8Prefix wellFormed = NuDecodeUtf8Prefix(bytes, units);
    if (wellFormed.Bytes != 0 || bytes.empty()) {
        return wellFormed;
    }
    const auto malformed = host::readUtf8Sequence(beginOf(bytes), beginOf(bytes) + bytes.size());
    if (malformed.truncated && !isAll) {
        return wellFormed;
    }
    *units = host::replacementCharacter;
    return {malformed.length, 1};
}

std::u16string NuFromUtf8(std::string_view bytes) {
    std::u16string text(bytes.size(), u'\0');
    std::size_t length = 0;
    while (!bytes.empty()) {
        const TNuUtf8Prefix run = NuDecodeUtf8Run(bytes, true, text.data() + length);
        bytes.remove_prefix(run.Bytes);
        length += run.Units;
    }
    text.resize(length);
    return text;
}

std::size_t NuEncodeUtf8(std::u16string_view units, char* bytes) noexcept {
    const char16_t* const end = units.data() + units.size();
    const bool byBlocks = nu::simd::hasWideBlocks();
    EncodeCursor cursor{units.data(), bytes};
    while (cursor.next != end) {
        if (byBlocks) {
            cursor = nu::encodeUtf8Blocks(cursor.next, end, cursor.bytes);
        } else if (end - cursor.next >= blockSize &&
                   nu::simd::narrowAsciiBlock(cursor.next, cursor.bytes)) {
            cursor = {cursor.next + blockSize, cursor.bytes + blockSize};
            continue;
        }
        // What is no matter of blocks goes singly, as far as a block could have gone.
        for (std::ptrdiff_t count = 0; count < blockSize && cursor.next != end; ++count) {
            cursor = encodeOne(cursor, end);
        }
    }
    return static_cast<std::size_t>(cursor.bytes - bytes);
}

std::string NuToUtf8(std::u16string_view units) {
    constexpr std::size_t pieceSize = 1024;
    std::string bytes;
    bytes.reserve(units.size());
    char piece[3 * pieceSize];
    while (!units.empty()) {
        std::size_t count = std::min(pieceSize, units.size());
        // A pair stays in one piece.
        if (count < units.size() && host::isHighSurrogate(units[count - 1])) {
            --count;
        }
        bytes.append(piece, NuEncodeUtf8(units.substr(0, count), piece));
        units.remove_prefix(count);
    }
    return bytes;
}
