#pragma once

#include <bit>

#include "common/simd/block.h"

namespace nu {

/// The first of `<`, `&`, `>` and CR from `place` on, or `end`.
[[nodiscard]] inline const char* findTextStop(const char* place, const char* end) noexcept {
    constexpr auto blockSize = static_cast<std::ptrdiff_t>(simd::blockSize);
    for (; end - place >= blockSize; place += blockSize) {
        const auto stops = simd::isAnyOf<'<', '>', '&', '\r'>(simd::Block::load(place));
        if (const unsigned mask = stops.mask(); mask != 0) {
            return place + std::countr_zero(mask);
        }
    }
    while (place != end && *place != '<' && *place != '>' && *place != '&' && *place != '\r') {
        ++place;
    }
    return place;
}

} // namespace nu
