#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "common/stringStream.h"

/// \file
/// Text to XML character data: `'`, `"`, `&`, `<` and `>` become the entity references that
/// XML 1.0 knows. Every other character stays as it is, control characters and unpaired surrogates
/// included. NuXMLToStr (unescape.h) leads back.

/// Appends `length` characters of `text`, escaped, to the content of a UTF-16 stream. A NUL
/// character is copied like any other. Throws host::EAssertionFailed when the stream's characters
/// are not UTF-16.
NUXML_API void NuStrToXML(const char16_t* text, std::size_t length, TNuStringStream& target);

/// The escaped form of UTF-16 text.
///
/// Deliberate: NUL characters are dropped, because no XML document can hold one; the form for
/// streams keeps them.
[[nodiscard]] NUXML_API std::u16string NuStrToXML(std::u16string_view text);

/// The escaped form of 8-bit text, UTF-8 included. NUL characters stay.
[[nodiscard]] NUXML_API std::string NuStrToXML(std::string_view text);
