#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// Letter case by the simple case folding of the Unicode standard: one unit becomes one unit, the
/// same in every locale. Characters beyond U+FFFF fold to themselves.

namespace nu {

/// Folds a unit that is not ASCII.
NUXML_API char16_t foldBeyondAscii(char16_t unit) noexcept;

} // namespace nu

/// The ASCII letter in lower case; everything else as it is.
constexpr char16_t NuLowerAscii(char16_t unit) noexcept {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

/// True when `text` is the word `lowerWord`, or differs from it in the case of ASCII letters only;
/// for the words that a standard fixes.
inline bool NuEqualAsciiWord(std::u16string_view text, std::u16string_view lowerWord) noexcept {
    return std::equal(text.begin(), text.end(), lowerWord.begin(), lowerWord.end(),
                      [](char16_t unit, char16_t lower) { return NuLowerAscii(unit) == lower; });
}

/// The unit that all letter cases of a character have in common (a lower case letter as a rule).
inline char16_t NuFoldCase(char16_t unit) noexcept {
    return unit < 0x80 ? NuLowerAscii(unit) : nu::foldBeyondAscii(unit);
}

/// True when two texts differ in letter case at most.
NUXML_API bool NuEqualFolded(std::u16string_view left, std::u16string_view right) noexcept;

/// The text with every unit folded.
NUXML_API std::u16string NuFolded(std::u16string_view text);

/// The text in lower case, unit by unit. Other than folding it leaves alone what is in lower case
/// already, like a final sigma.
NUXML_API std::u16string NuLowered(std::u16string_view text);
