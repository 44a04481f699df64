#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "common/simd/block.h"

/// \file
/// ASCII text between its two forms: one byte and two bytes a character.

namespace nu {

/// Four units that lie together, the first one lowest.
inline std::uint64_t loadFour(const char16_t* units) noexcept {
    std::uint64_t four = 0;
    std::memcpy(&four, units, sizeof four);
    return four;
}

/// The low bytes of four units, the first one lowest.
inline std::uint32_t packFour(std::uint64_t four) noexcept {
    four = (four | four >> 8) & 0x0000FFFF0000FFFFu;
    return static_cast<std::uint32_t>(four | four >> 16);
}

/// Whether none of the units that were loaded by fours, all put together by "or", is beyond ASCII.
inline bool isAsciiOfFour(std::uint64_t all) noexcept { return (all & 0xFF80FF80FF80FF80u) == 0; }

/// Gives up to 8 units as bytes of a word, the first one lowest; false when one is not ASCII, what
/// was given is then of no use.
inline bool packAscii(std::u16string_view text, std::uint64_t& packed) noexcept {
    const char16_t* units = text.data();
    const std::size_t length = text.size();
    // Pieces that overlap instead of a loop, whose number of turns nobody can guess.
    if (length >= 4) {
        const std::uint64_t first = loadFour(units);
        const std::uint64_t last = loadFour(units + length - 4);
        packed = packFour(first) | std::uint64_t{packFour(last)} << (length - 4) * 8;
        return isAsciiOfFour(first | last);
    }
    packed = 0;
    if (length == 0) {
        return true;
    }
    const unsigned first = units[0];
    const unsigned middle = units[length / 2];
    const unsigned last = units[length - 1];
    packed = first | middle << length / 2 * 8 | last << (length - 1) * 8;
    return (first | middle | last) < 0x80;
}

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
