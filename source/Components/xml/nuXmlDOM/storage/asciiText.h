#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "common/simd/block.h"
#include "nuXmlDOM/storage/asciiWord.h"

/// \file
/// ASCII text between its two forms: one byte and two bytes a character.

namespace nu {

inline bool isAsciiText(std::u16string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
}

/// Writes `text` as bytes, one a character; gives false when a character is not ASCII, what was
/// written is then of no use.
inline bool narrowAscii(std::u16string_view text, char* bytes) noexcept {
    const char16_t* units = text.data();
    const std::size_t length = text.size();
    if (length < 8) {
        std::uint64_t packed = 0;
        const bool isAscii = packAscii(text, packed);
        std::memcpy(bytes, &packed, length);
        return isAscii;
    }
    if (length < simd::blockSize) {
        const std::size_t last = length - simd::blockSize / 2;
        return simd::narrowAsciiHalf(units, bytes) &&
               simd::narrowAsciiHalf(units + last, bytes + last);
    }
    for (std::size_t start = 0; start + simd::blockSize < length; start += simd::blockSize) {
        if (!simd::narrowAsciiBlock(units + start, bytes + start)) {
            return false;
        }
    }
    const std::size_t last = length - simd::blockSize;
    return simd::narrowAsciiBlock(units + last, bytes + last);
}

/// Writes bytes that are ASCII as units.
inline void widenAscii(std::string_view bytes, char16_t* units) noexcept {
    const auto* from = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t left = bytes.size();
    for (; left >= simd::blockSize; left -= simd::blockSize) {
        simd::widenBlock(from, units);
        from += simd::blockSize;
        units += simd::blockSize;
    }
    std::copy_n(from, left, units);
}

} // namespace nu
