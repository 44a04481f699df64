#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// XML character data to the text that it stands for: entity and character references become the
/// characters they stand for. The way back from NuStrToXML (escape.h).
///
/// A reference reaches from "&" to the next ";", and is none when a space or the end comes first.
/// What is no reference, or names no known entity, stays in the text as it is; the search for the
/// next reference goes on behind it.

/// The unescaped form of UTF-16 text. Knows the entities of HTML 4.01, "&apos;", and character
/// references in decimal ("&#65;") and hexadecimal ("&#x41;") digits. Throws host::EConvertError
/// for a character reference whose digits are no number of 32 bits.
///
/// Deliberate: a character reference gives one code unit, its number modulo 65536, so "&#128512;"
/// is U+F600 and no surrogate pair; and names are told apart by a 32-bit key only, so a few names
/// that are none decode as well ("&Alpgb;" like "&Alpha;").
[[nodiscard]] NUXML_API std::u16string NuXMLToStr(std::u16string_view text);

namespace nu {

/// Gives the text from `start` on its unescaped form, where it stands: what NuXMLToStr makes of it.
/// The text is unspecified from there on when that throws.
void unescapeFrom(std::u16string& text, std::size_t start);

/// The same for well-formed UTF-8, decoded and unescaped in one go. Gives the end of the text.
/// \param bytes behind which unescapeReach more can be read
/// \param units room for one for each byte, and unescapeReach more
char16_t* unescapeUtf8(std::string_view bytes, char16_t* units);
inline constexpr std::size_t unescapeReach = 16;

} // namespace nu

/// The unescaped form of 8-bit text. Character references work as in UTF-16 text and are written in
/// the system code page.
///
/// Deliberate: of a name only the first letter counts, in either case: "a" gives "&", "g" ">", "l"
/// "<" and "q" a double quote. So "&apos;" gives "&", and no HTML entity is known.
[[nodiscard]] NUXML_API std::string NuXMLToStr(std::string_view text);
