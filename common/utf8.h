#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/runtime/export.h"

/// \file
/// UTF-8 and UTF-16, as the Unicode standard defines both. Malformed UTF-8 is what table 3-7 of
/// that standard does not list: overlong forms, surrogates, values above U+10FFFF, sequences cut
/// short. Sizes of UTF-8 are in bytes, sizes of UTF-16 in units. No byte-order mark is looked for
/// or written.

/// How far decoding came.
struct TNuUtf8Prefix {
    std::size_t Bytes; ///< Bytes that were well-formed.
    std::size_t Units; ///< UTF-16 units they became.
};

/// Decodes up to the first malformed sequence. `units` needs room for `bytes.size()` units; those
/// behind the returned count may be overwritten unless the whole text was well-formed.
NUXML_API TNuUtf8Prefix NuDecodeUtf8Prefix(std::string_view bytes, char16_t* units) noexcept;

/// Decodes all or nothing: the number of units, or nothing when anything is malformed. `units`
/// needs room for `bytes.size()` units; on success only the returned number of them is written,
/// otherwise their content is unspecified.
NUXML_API std::optional<std::size_t> NuDecodeUtf8(std::string_view bytes, char16_t* units) noexcept;

/// Whether all of it is well-formed.
NUXML_API bool NuIsUtf8(std::string_view bytes) noexcept;

/// The UTF-16 units that well-formed UTF-8 becomes.
NUXML_API std::size_t NuUtf16Length(std::string_view bytes) noexcept;

/// Decodes all or nothing into a string.
NUXML_API std::optional<std::u16string> NuUtf8ToWideString(std::string_view bytes);

/// Decodes anything, a run at a time: the well-formed text up to the first malformed sequence or,
/// if one comes first, its maximal bad prefix (at least one byte) as U+FFFD. A sequence that the
/// end of `bytes` cuts off is malformed if `isAll`; otherwise nothing is made of it, because the
/// rest may come. `units` needs room for `bytes.size()` units; those behind the returned count may
/// be overwritten.
NUXML_API TNuUtf8Prefix NuDecodeUtf8Run(std::string_view bytes, bool isAll,
                                        char16_t* units) noexcept;

/// Decodes anything: each maximal bad prefix of a sequence (at least one byte) becomes U+FFFD.
NUXML_API std::u16string NuFromUtf8(std::string_view bytes);

/// Encodes into memory with room for three bytes a unit and returns the bytes written; memory
/// behind them, within that room, may be overwritten. An unpaired surrogate becomes U+FFFD.
NUXML_API std::size_t NuEncodeUtf8(std::u16string_view units, char* bytes) noexcept;

/// Encodes into a string. An unpaired surrogate becomes U+FFFD.
NUXML_API std::string NuToUtf8(std::u16string_view units);
