#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// Searching in UTF-16 text.

/// A set of 8-bit characters. Characters above U+00FF are never members, not even when named.
class TNuCharSet {
public:
    constexpr TNuCharSet(std::u16string_view members) noexcept {
        for (const char16_t member : members) {
            if (member < 0x100) {
                words_[member >> 6] |= std::uint64_t{1} << (member & 63);
            }
        }
    }
    constexpr TNuCharSet(const char16_t* members) noexcept
        : TNuCharSet(std::u16string_view(members)) {}

    [[nodiscard]] constexpr bool Contains(char16_t unit) const noexcept {
        return unit < 0x100 && (words_[unit >> 6] >> (unit & 63) & 1) != 0;
    }

private:
    std::array<std::uint64_t, 4> words_{};
};

/// True when the set has the character.
constexpr bool NuCharInSet(char16_t unit, const TNuCharSet& set) noexcept {
    return set.Contains(unit);
}

/// True when `part` occurs in `text` in any letter case (simple Unicode case folding). An empty
/// part occurs in every text. The time grows with the sum of the two lengths.
NUXML_API bool NuContainsText(std::u16string_view text, std::u16string_view part);
