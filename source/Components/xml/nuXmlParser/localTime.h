#pragma once

#include <cstdint>

/// \file
/// The local time zone, as the C library has it. Moments count in milliseconds since 1899-12-30
/// 00:00, those of local time as a clock on the wall shows them.

namespace nu {

/// What local time is ahead of UTC at a moment of UTC, in milliseconds.
std::int64_t offsetAtUtc(std::int64_t utc) noexcept;

/// What local time is ahead of UTC at a moment of local time. Of a moment that comes twice the
/// first one is meant; one that is left out counts on with the offset before the gap.
std::int64_t offsetAtLocal(std::int64_t local) noexcept;

} // namespace nu
