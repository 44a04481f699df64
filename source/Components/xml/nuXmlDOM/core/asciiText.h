#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "common/simd.h"

/// \file
/// ASCII text between its two forms: one byte and two bytes a character.

namespace nu {

/// Writes up to 15 units as bytes; gives false when one is not ASCII, what was written is then of
/// no use.
inline bool narrowTail(const char16_t* units, std::size_t length, char* bytes) noexcept {
    unsigned all = 0;
    for (std::size_t index = 0; index < length; ++index) {
        all |= units[index];
        bytes[index] = static_cast<char>(units[index]);
    }
    return all < 0x80;
}

/// Writes `text` as bytes, one a character; gives false when a character is not ASCII, what was
/// written is then of no use.
inline bool narrowAscii(std::u16string_view text, char* bytes) noexcept {
    const char16_t* units = text.data();
    std::size_t left = text.size();
    for (; left >= simd::blockSize; left -= simd::blockSize) {
        if (!simd::narrowAsciiBlock(units, bytes)) {
            return false;
        }
        units += simd::blockSize;
        bytes += simd::blockSize;
    }
    return narrowTail(units, left, bytes);
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

/// Whether bytes that are ASCII and units are the same text.
inline bool equalsAscii(std::string_view bytes, std::u16string_view units) noexcept {
    return bytes.size() == units.size() &&
           std::equal(bytes.begin(), bytes.end(), units.begin(), [](char byte, char16_t unit) {
               return static_cast<unsigned char>(byte) == unit;
           });
}

} // namespace nu
