#pragma once

#include <bit>
#include <cstdint>
#include <string>

/// \file
/// The characters of XML markup and the types of XML text.

/// One unit of XML text: a UTF-16 code unit.
using NuXmlChar = char16_t;
/// A cursor into decoded text.
using PNuXmlChar = const NuXmlChar*;
/// A text of UTF-16 code units.
using NuXmlString = std::u16string;

/// \name Markup
/// Each character stands in three forms: "A" as 8-bit, "W" as UTF-16, and without a letter as an
/// XML character.
/// @{

/// U+0026, which begins references; as 8-bit.
inline constexpr char cNuAmpA = '&';
/// The same in UTF-16.
inline constexpr char16_t cNuAmpW = u'&';
/// The same as an XML character.
inline constexpr NuXmlChar cNuAmp = cNuAmpW;

/// U+0027, one of the two quotes of values; as 8-bit.
inline constexpr char cNuAposA = '\'';
/// The same in UTF-16.
inline constexpr char16_t cNuAposW = u'\'';
/// The same as an XML character.
inline constexpr NuXmlChar cNuApos = cNuAposW;

/// U+003D, between a name and its value; as 8-bit.
inline constexpr char cNuEqualA = '=';
/// The same in UTF-16.
inline constexpr char16_t cNuEqualW = u'=';
/// The same as an XML character.
inline constexpr NuXmlChar cNuEqual = cNuEqualW;

/// U+003E, which ends tags; as 8-bit.
inline constexpr char cNuGtA = '>';
/// The same in UTF-16.
inline constexpr char16_t cNuGtW = u'>';
/// The same as an XML character.
inline constexpr NuXmlChar cNuGt = cNuGtW;

/// U+003C, which begins markup; as 8-bit.
inline constexpr char cNuLtA = '<';
/// The same in UTF-16.
inline constexpr char16_t cNuLtW = u'<';
/// The same as an XML character.
inline constexpr NuXmlChar cNuLt = cNuLtW;

/// U+003F, in the marks of instructions; as 8-bit.
inline constexpr char cNuQuestA = '?';
/// The same in UTF-16.
inline constexpr char16_t cNuQuestW = u'?';
/// The same as an XML character.
inline constexpr NuXmlChar cNuQuest = cNuQuestW;

/// U+0022, the other quote of values; as 8-bit.
inline constexpr char cNuQuoteA = '"';
/// The same in UTF-16.
inline constexpr char16_t cNuQuoteW = u'"';
/// The same as an XML character.
inline constexpr NuXmlChar cNuQuote = cNuQuoteW;

/// U+002F, in end tags; as 8-bit.
inline constexpr char cNuSlashA = '/';
/// The same in UTF-16.
inline constexpr char16_t cNuSlashW = u'/';
/// The same as an XML character.
inline constexpr NuXmlChar cNuSlash = cNuSlashW;

/// U+0020, the lowest character that is not skipped as a control character; as 8-bit.
inline constexpr char cNuSpaceA = ' ';
/// The same in UTF-16.
inline constexpr char16_t cNuSpaceW = u' ';
/// The same as an XML character.
inline constexpr NuXmlChar cNuSpace = cNuSpaceW;

/// U+0021, in the marks of comments, sections and the document type; as 8-bit.
inline constexpr char cNuExclA = '!';
/// The same in UTF-16.
inline constexpr char16_t cNuExclW = u'!';
/// The same as an XML character.
inline constexpr NuXmlChar cNuExcl = cNuExclW;

/// Deliberate: a hyphen-minus, not a line feed; the "line" is a dash, and callers know the name.
inline constexpr char cNuLineA = '-';
/// The same hyphen in UTF-16.
inline constexpr char16_t cNuLineW = u'-';
/// The same hyphen as an XML character.
inline constexpr NuXmlChar cNuLine = cNuLineW;

/// U+003A, between prefix and local name; as 8-bit.
inline constexpr char cNuColonA = ':';
/// The same in UTF-16.
inline constexpr char16_t cNuColonW = u':';
/// The same as an XML character.
inline constexpr NuXmlChar cNuColon = cNuColonW;

/// U+003B, which ends references; as 8-bit.
inline constexpr char cNuSemiColonA = ';';
/// The same in UTF-16.
inline constexpr char16_t cNuSemiColonW = u';';
/// The same as an XML character.
inline constexpr NuXmlChar cNuSemiColon = cNuSemiColonW;

/// @}

/// The character that stands for the end of the input.
inline constexpr char cNuEOF = 0;
/// "]" and ">" as they lie in memory, read as one 32-bit value: the tail of a CDATA section's end.
inline constexpr std::uint32_t cNuCDATAEnd = 0x003E005D;
/// Bytes of one XML character.
inline constexpr std::uint8_t cNuXmlCharSize = 2;
/// The character width of a string stream that holds XML text.
inline constexpr std::uint8_t cNuXmlStringType = 2;

static_assert(sizeof(NuXmlChar) == cNuXmlCharSize);
static_assert(std::endian::native == std::endian::little,
              "UTF-16 little-endian input is read in place");
