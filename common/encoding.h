#pragma once

#include <cstdint>

#include "host/runtime/stream.h"

/// \file
/// How the text of a stream is encoded.

/// The form of a stream's characters, as its byte-order mark tells. The values are fixed.
enum TNuEncoding : std::uint8_t {
    neAnsi = 1,              ///< 8-bit text without a mark
    neUtf8 = 2,              ///< UTF-8
    neUtf16LittleEndian = 4, ///< UTF-16, low byte first
    neUtf16BigEndian = 5,    ///< UTF-16, high byte first
    neUtf32LittleEndian = 6, ///< UTF-32, low byte first
    neUtf32BigEndian = 7,    ///< UTF-32, high byte first
};

/// Looks for a byte-order mark at the stream's position and leaves the stream behind it, or where
/// it was when there is none. FF FE 00 00 counts as the mark of UTF-32.
///
/// A TNuStringStream of width 2 says by itself that it holds UTF-16, so its text needs no mark and
/// the result is always neUtf16LittleEndian; a mark of that encoding is stepped over all the same.
/// Errors of the stream are passed on.
NUXML_API TNuEncoding NuGetEncoding(host::TStream& stream);
