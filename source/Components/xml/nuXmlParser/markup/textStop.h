#pragma once

#include <bit>

#include "common/simd.h"

namespace nu {

/// The first of `<`, `&`, `>` and CR from `place` on, or `end`.
[[nodiscard]] inline const char* findTextStop(const char* place, const char* end) noexcept {
#if defined(__SSE2__)
    constexpr auto blockSize = static_cast<std::ptrdiff_t>(simd::blockSize);
    for (; end - place >= blockSize; place += blockSize) {
        const __m128i block = simd::loadBlock(place);
        const auto is = [block](char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
        const __m128i stops =
            _mm_or_si128(_mm_or_si128(is('<'), is('>')), _mm_or_si128(is('&'), is('\r')));
        const auto mask = static_cast<unsigned>(_mm_movemask_epi8(stops));
        if (mask != 0) {
            return place + std::countr_zero(mask);
        }
    }
#endif
    while (place != end && *place != '<' && *place != '>' && *place != '&' && *place != '\r') {
        ++place;
    }
    return place;
}

} // namespace nu
