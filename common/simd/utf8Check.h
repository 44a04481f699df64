#pragma once

#include <cstddef>
#include <string_view>

#include "common/utf8.h"

/// \file
/// How NuIsUtf8 checks where processors have no wide blocks. It is apart so that it can be held
/// against the other form on a processor that has them.

namespace nu::simd::detail {

inline bool isUtf8ByDecoding(std::string_view bytes) noexcept {
    // Into memory that stays in the nearest cache.
    constexpr std::size_t pieceSize = 4096;
    char16_t units[pieceSize];
    while (!bytes.empty()) {
        const std::size_t decoded = NuDecodeUtf8Prefix(bytes.substr(0, pieceSize), units).Bytes;
        if (decoded == 0) {
            return false;
        }
        bytes.remove_prefix(decoded);
    }
    return true;
}

} // namespace nu::simd::detail
