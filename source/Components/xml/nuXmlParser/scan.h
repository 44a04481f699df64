#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "common/simd/block.h"
#include "common/simd/wideBlock.h"

/// \file
/// Finds the next character that matters, many at a time. The characters sought are among the
/// first 64 of ASCII, where all of XML's markup stands but the brackets of CDATA.

namespace nu {

/// The number of characters that findInBlock looks at.
inline constexpr std::size_t scanBlock = simd::blockSize;

/// Whether a character is one of `sought`.
template <char... sought, class Unit> bool isOneOf(Unit unit) noexcept {
    static_assert(((sought >= 0 && sought < 64) && ...));
    constexpr std::uint64_t bits = ((std::uint64_t{1} << sought) | ...);
    const auto code = static_cast<std::make_unsigned_t<Unit>>(unit);
    return code < 64 && (bits >> code & 1) != 0;
}

/// One bit for each of the scanBlock characters from `from` on, set where it is one of `sought`.
template <char... sought, class Unit> unsigned findInBlock(const Unit* from) noexcept {
    return simd::isAnyOf<sought...>(simd::loadCharacters(from)).mask();
}

/// findOneOf for less than a block.
template <char... sought, class Unit>
const Unit* findInRest(const Unit* from, const Unit* end) noexcept {
    // Two pieces overlap; a match that both hold is found in the first.
    const auto placeOf = [from, end](unsigned found, int piece) {
        if (found == 0) {
            return end;
        }
        const int index = std::countr_zero(found);
        return index < piece ? from + index : end - (2 * piece - index);
    };
    if (end - from >= 8) {
        const auto both = simd::Block::loadPieces<8>(from, end - 8);
        return placeOf(simd::isAnyOf<sought...>(both).mask(), 8);
    }
    if (end - from >= 4) {
        const auto both = simd::Block::loadPieces<4>(from, end - 4);
        return placeOf(simd::isAnyOf<sought...>(both).mask() & 0xFF, 4);
    }
    while (from != end && !isOneOf<sought...>(*from)) {
        ++from;
    }
    return from;
}

/// The first place from `from` on that holds `stop` or a control character, or `end`.
inline const char16_t* findControlOr(char16_t stop, const char16_t* from,
                                     const char16_t* end) noexcept {
    constexpr char16_t firstSolid = 0x20;
    // As bytes, two units may be one: of those only a stop of ASCII is exact.
    constexpr auto step = static_cast<std::ptrdiff_t>(scanBlock);
    constexpr char16_t firstInexact = 0x7F;
    const auto stops = simd::Block::all(stop);
    for (; stop < firstInexact && end - from >= step; from += step) {
        const auto units = simd::loadCharacters(from);
        const unsigned found = (units.isAtMost(firstSolid - 1) | units.equals(stops)).mask();
        if (found != 0) {
            return from + std::countr_zero(found);
        }
    }
    while (from != end && *from >= firstSolid && *from != stop) {
        ++from;
    }
    return from;
}

/// The first place from `from` on that holds one of `sought`, or `end`.
template <char... sought, class Unit>
const Unit* findOneOf(const Unit* from, const Unit* end) noexcept {
    constexpr auto step = static_cast<std::ptrdiff_t>(scanBlock);
    if (end - from < step) {
        return findInRest<sought...>(from, end);
    }
    for (; end - from >= step; from += step) {
        if (const unsigned found = findInBlock<sought...>(from); found != 0) {
            return from + std::countr_zero(found);
        }
        if (end - from >= 128 && simd::hasWideBlocks()) {
            from = simd::skipWideBlocks<sought...>(from + step, end) - step;
        }
    }
    // The rest as the tail of a block that starts in what is known to hold none.
    const unsigned found = findInBlock<sought...>(end - step);
    return found != 0 ? end - step + std::countr_zero(found) : end;
}

} // namespace nu
