#pragma once

#include <cstdint>
#include <optional>

#include "host/runtime/export.h"

/// \file
/// Points in time as days since 1899-12-30.

namespace host {

/// A date and time of day without a zone, as a serial number: the days since 1899-12-30, with the
/// time of day as a fraction.
///
/// The fraction counts forward on both sides of zero: -1.25 is 06:00 on 1899-12-29, and -0.5 the
/// same as 0.5. The serials of one day before zero therefore fall while the day passes.
struct TDateTime {
    double serial = 0; ///< days since 1899-12-30

    friend constexpr bool operator==(const TDateTime&, const TDateTime&) noexcept = default;
};

/// The milliseconds of a day without leap seconds.
inline constexpr std::int64_t millisecondsPerDay = 86'400'000;

/// The milliseconds since 1899-12-30 00:00, rounded to the nearest; negative before that. Nothing
/// for a serial that is no number or further away than a million years.
NUXML_API std::optional<std::int64_t> toMilliseconds(TDateTime moment) noexcept;

/// The serial of a moment given in milliseconds since 1899-12-30 00:00.
NUXML_API TDateTime fromMilliseconds(std::int64_t milliseconds) noexcept;

/// The days since 1899-12-30 00:00 on an even scale, which orders moments; NaN for no number.
NUXML_API double toLinearDays(TDateTime moment) noexcept;

} // namespace host
