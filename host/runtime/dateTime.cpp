#include "host/runtime/dateTime.h"

#include <cmath>

namespace host {

std::optional<std::int64_t> toMilliseconds(TDateTime moment) noexcept {
    constexpr double farthest = 365'242'500;
    if (!(std::abs(moment.serial) <= farthest)) {
        return std::nullopt;
    }
    // The day and the time of day one by one: their sum would cost digits.
    const double day = std::trunc(moment.serial);
    const double time = std::abs(moment.serial - day) * static_cast<double>(millisecondsPerDay);
    return static_cast<std::int64_t>(day) * millisecondsPerDay + std::llround(time);
}

TDateTime fromMilliseconds(std::int64_t milliseconds) noexcept {
    std::int64_t day = milliseconds / millisecondsPerDay;
    std::int64_t time = milliseconds % millisecondsPerDay;
    if (time < 0) {
        time += millisecondsPerDay;
        --day;
    }
    const double fraction = static_cast<double>(time) / static_cast<double>(millisecondsPerDay);
    const auto whole = static_cast<double>(day);
    return {day < 0 ? whole - fraction : whole + fraction};
}

double toLinearDays(TDateTime moment) noexcept {
    const double day = std::trunc(moment.serial);
    return day + std::abs(moment.serial - day);
}

} // namespace host
