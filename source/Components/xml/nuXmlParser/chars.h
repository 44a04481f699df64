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
/// Each character stands in three forms: "A" as 8-bit, "W" as UTF-16, and plain as an XML
/// character.
/// @{

inline constexpr char cNuAmpA = '&';
inline constexpr char16_t cNuAmpW = u'&';
inline constexpr NuXmlChar cNuAmp = cNuAmpW;

inline constexpr char cNuAposA = '\'';
inline constexpr char16_t cNuAposW = u'\'';
inline constexpr NuXmlChar cNuApos = cNuAposW;

inline constexpr char cNuEqualA = '=';
inline constexpr char16_t cNuEqualW = u'=';
inline constexpr NuXmlChar cNuEqual = cNuEqualW;

inline constexpr char cNuGtA = '>';
inline constexpr char16_t cNuGtW = u'>';
inline constexpr NuXmlChar cNuGt = cNuGtW;

inline constexpr char cNuLtA = '<';
inline constexpr char16_t cNuLtW = u'<';
inline constexpr NuXmlChar cNuLt = cNuLtW;

inline constexpr char cNuQuestA = '?';
inline constexpr char16_t cNuQuestW = u'?';
inline constexpr NuXmlChar cNuQuest = cNuQuestW;

inline constexpr char cNuQuoteA = '"';
inline constexpr char16_t cNuQuoteW = u'"';
inline constexpr NuXmlChar cNuQuote = cNuQuoteW;

inline constexpr char cNuSlashA = '/';
inline constexpr char16_t cNuSlashW = u'/';
inline constexpr NuXmlChar cNuSlash = cNuSlashW;

inline constexpr char cNuSpaceA = ' ';
inline constexpr char16_t cNuSpaceW = u' ';
inline constexpr NuXmlChar cNuSpace = cNuSpaceW;

inline constexpr char cNuExclA = '!';
inline constexpr char16_t cNuExclW = u'!';
inline constexpr NuXmlChar cNuExcl = cNuExclW;

/// Deliberate: a hyphen-minus, not a line feed; the "line" is a dash, and callers know the name.
inline constexpr char cNuLineA = '-';
inline constexpr char16_t cNuLineW = u'-';
inline constexpr NuXmlChar cNuLine = cNuLineW;

inline constexpr char cNuColonA = ':';
inline constexpr char16_t cNuColonW = u':';
inline constexpr NuXmlChar cNuColon = cNuColonW;

inline constexpr char cNuSemiColonA = ';';
inline constexpr char16_t cNuSemiColonW = u';';
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
