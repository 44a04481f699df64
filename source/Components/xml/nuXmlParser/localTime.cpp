#include "nuXmlParser/localTime.h"

#include <ctime>

#include "host/runtime/dateTime.h"

namespace nu {

namespace {

constexpr std::int64_t daysBefore1970 = 25'569;
constexpr std::int64_t millisecondsPerSecond = 1000;

std::int64_t roundedDown(std::int64_t number, std::int64_t divisor) noexcept {
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

} // namespace

std::int64_t offsetAtUtc(std::int64_t utc) noexcept {
    const std::time_t seconds = roundedDown(utc, millisecondsPerSecond) -
                                daysBefore1970 * host::millisecondsPerDay / millisecondsPerSecond;
    std::tm parts{};
    return ::localtime_r(&seconds, &parts) != nullptr ? parts.tm_gmtoff * millisecondsPerSecond : 0;
}

std::int64_t offsetAtLocal(std::int64_t local) noexcept {
    // mktime would do, were its choice among two moments not left to what it was asked before.
    // No offset reaches a day, so these two lie on either side of a change near the moment.
    const std::int64_t before = offsetAtUtc(local - host::millisecondsPerDay);
    const std::int64_t after = offsetAtUtc(local + host::millisecondsPerDay);
    if (before == after || offsetAtUtc(local - before) == before) {
        return before;
    }
    return offsetAtUtc(local - after) == after ? after : before;
}

} // namespace nu
