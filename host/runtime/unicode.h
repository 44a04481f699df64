#pragma once

#include <string>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// UTF-8 and UTF-16: halves of pairs, and conversion for messages and names.

namespace host {

/// What stands for a malformed piece of UTF-8 and for an unpaired surrogate.
inline constexpr char16_t replacementCharacter = 0xFFFD;

/// Whether a unit of UTF-16 is half of a pair.
constexpr bool isSurrogate(char16_t unit) noexcept { return (unit & 0xF800) == 0xD800; }
/// Whether it is the first half.
constexpr bool isHighSurrogate(char16_t unit) noexcept { return (unit & 0xFC00) == 0xD800; }
/// Whether it is the second half.
constexpr bool isLowSurrogate(char16_t unit) noexcept { return (unit & 0xFC00) == 0xDC00; }

/// UTF-8 form of UTF-16 text. An unpaired surrogate becomes U+FFFD, so the result is always valid
/// UTF-8. Meant for messages, names and paths; bulk text has faster ways in the common package.
NUXML_API std::string utf16ToUtf8(std::u16string_view text);

/// UTF-16 form of UTF-8 text. Each maximal ill-formed stretch becomes one U+FFFD.
NUXML_API std::u16string utf8ToUtf16(std::string_view bytes);

} // namespace host
