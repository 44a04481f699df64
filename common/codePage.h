#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// 8-bit text in code pages. Known are UTF-8 (65001) and the single-byte pages 437, 737, 775, 850,
/// 852, 855, 857, 858, 860 to 863, 865, 866, 869, 874, 1250 to 1258, 20127 (ASCII), 20866 (KOI8-R),
/// 21866 (KOI8-U) and 28591 to 28606 without 28602 (ISO 8859-1 to -16). Code page 0 stands for the
/// system's; any other number raises host::EConvertError "Unknown code page %d".
///
/// Widening never fails. Bytes that a page leaves open become the C1 control code of the same value
/// in the Windows pages (874, 125x) where they are below 0xA0, and U+FFFD elsewhere. With 65001, a
/// text that is not well-formed UTF-8 as a whole is read as a whole as Windows-1252.
///
/// Narrowing writes "?" for every unit that the page has no byte for, two for a surrogate pair;
/// with 65001 only an unpaired surrogate is lost, which becomes U+FFFD.

/// UTF-8's number as a code page.
inline constexpr std::uint32_t cNuCodePageUtf8 = 65001;

/// UTF-16's, low byte first; not for what converts 8-bit text.
inline constexpr std::uint32_t cNuCodePageUtf16 = 1200;

/// The code page that 0 stands for, process-wide.
///
/// When the library is loaded it is taken from the first of the environment variables LC_ALL,
/// LC_CTYPE and LANG that is not empty: a single-byte character set known here behind the "."
/// ("de_DE.ISO-8859-15") gives its page, anything else 65001.
NUXML_API std::uint32_t NuGetSystemCodePage() noexcept;

/// Changes the system code page for all threads; 0 takes it from the environment again.
NUXML_API void NuSetSystemCodePage(std::uint32_t codePage);

/// The code page that a name of a character set means, whatever its letter case and punctuation:
/// 65001 for UTF-8, the number of a single-byte page that is known here, 0 for any other name.
NUXML_API std::uint32_t NuFindCodePage(std::string_view characterSet);

/// Widens to memory with room for `text.size()` units and returns their number; the units behind
/// may be overwritten.
NUXML_API std::size_t NuWidenAnsi(std::string_view text, char16_t* units,
                                  std::uint32_t codePage = 0);

/// 8-bit text as UTF-16.
NUXML_API std::u16string NuAnsiStringToWideString(std::string_view text,
                                                  std::uint32_t codePage = 0);

/// UTF-16 as 8-bit text.
NUXML_API std::string NuWideStringToAnsiString(std::u16string_view text,
                                               std::uint32_t codePage = 0);

/// The same; `lost` receives the number of units that the code page cannot hold.
NUXML_API std::string NuWideStringToAnsiString(std::u16string_view text, std::uint32_t codePage,
                                               std::size_t& lost);

/// Narrows up to the first unit that a single-byte page does not have and returns the number of
/// units narrowed, which is that of the bytes written. `bytes` needs room for `text.size()`.
/// Control codes that stand for bytes which a Windows page leaves open are none of that page here:
/// others may refuse such bytes.
NUXML_API std::size_t NuNarrowAnsiPrefix(std::u16string_view text, std::uint32_t codePage,
                                         char* bytes);
