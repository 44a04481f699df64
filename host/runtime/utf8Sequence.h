#pragma once

#include <cstdint>

#include "host/runtime/unicode.h"

namespace host {

/// One step through UTF-8 text.
struct Utf8Sequence {
    std::uint8_t length; ///< Bytes of the sequence; of the maximal bad prefix when malformed.
    bool wellFormed;     ///< False: `length` bytes stand for one U+FFFD, `codePoint` is U+FFFD.
    bool truncated;      ///< Malformed only because the text ends inside the sequence.
    char32_t codePoint;
};

/// Reads the sequence at `at`, which must be before `end`, by table 3-7 of the Unicode standard:
/// overlong forms, surrogates and values above U+10FFFF are malformed. A malformed sequence
/// takes as many bytes as could have begun a well-formed one, and at least one.
inline Utf8Sequence readUtf8Sequence(const unsigned char* at, const unsigned char* end) noexcept {
    const unsigned lead = *at;
    if (lead < 0x80) {
        return {1, true, false, lead};
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return {1, false, false, replacementCharacter};
    }
    const unsigned following = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    // Only the second byte's range depends on the first.
    unsigned least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t codePoint = lead & (0x3Fu >> following);
    for (std::uint8_t count = 1; count <= following; ++count) {
        const bool atEnd = at + count == end;
        if (atEnd || at[count] < least || at[count] > most) {
            return {count, false, atEnd, replacementCharacter};
        }
        codePoint = codePoint << 6 | (at[count] & 0x3Fu);
        least = 0x80;
        most = 0xBF;
    }
    return {static_cast<std::uint8_t>(following + 1), true, false, codePoint};
}

/// Writes a code point as one or two units and returns the place behind them.
inline char16_t* appendCodePoint(char16_t* units, char32_t codePoint) noexcept {
    if (codePoint < 0x10000) {
        *units++ = static_cast<char16_t>(codePoint);
        return units;
    }
    *units++ = static_cast<char16_t>(0xD7C0u + (codePoint >> 10));
    *units++ = static_cast<char16_t>(0xDC00u | (codePoint & 0x3FFu));
    return units;
}

} // namespace host
