#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// \file
/// Short ASCII text in words of the processor.

namespace nu {

/// Four units that lie together, the first one lowest.
inline std::uint64_t loadFour(const char16_t* units) noexcept {
    std::uint64_t four = 0;
    std::memcpy(&four, units, sizeof four);
    return four;
}

/// One in each of four units, and the highest bit of each.
inline constexpr std::uint64_t eachOfFour = 0x0001000100010001u;
inline constexpr std::uint64_t highestOfFour = 0x8000800080008000u;

/// Whether one of four units is zero.
inline bool hasZeroOfFour(std::uint64_t four) noexcept {
    return ((four - eachOfFour) & ~four & highestOfFour) != 0;
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

} // namespace nu
