#pragma once

#include <cstddef>

/// The bulk of UTF-8 conversion in blocks, for processors of which simd::hasWideBlocks says so.
namespace nu {

struct DecodeCursor {
    const unsigned char* next; ///< First byte not decoded, always at the start of a sequence.
    char16_t* units;           ///< Where its first unit belongs.
};

struct EncodeCursor {
    const char16_t* next; ///< First unit not encoded, never the second half of a pair.
    char* bytes;          ///< Where its first byte belongs.
};

/// Decodes well-formed UTF-8 and stops near the end or at the block that holds the first malformed
/// sequence. Units behind the returned place may be overwritten, but only as many as well-formed
/// text up to the end would fill.
DecodeCursor decodeUtf8Blocks(const unsigned char* next, const unsigned char* end,
                              char16_t* units) noexcept;

/// Encodes UTF-16 and stops near the end or before a block that holds surrogates. Writes only into
/// the room of three bytes a unit.
EncodeCursor encodeUtf8Blocks(const char16_t* next, const char16_t* end, char* bytes) noexcept;

} // namespace nu
