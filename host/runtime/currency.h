#pragma once

#include <compare>
#include <cstdint>

namespace host {

/// An amount with exactly four decimals: a 64-bit integer that counts ten-thousandths. It reaches
/// from -922337203685477.5808 to 922337203685477.5807.
struct Currency {
    static constexpr std::int64_t unit = 10'000; ///< What 1 is in ten-thousandths.

    std::int64_t scaled = 0; ///< The amount in ten-thousandths.

    /// The nearest double.
    [[nodiscard]] constexpr double toDouble() const noexcept {
        return static_cast<double>(toLongDouble());
    }
    /// The same with what else the long double of the machine can hold.
    [[nodiscard]] constexpr long double toLongDouble() const noexcept {
        return static_cast<long double>(scaled) / static_cast<long double>(unit);
    }

    friend constexpr auto operator<=>(const Currency&, const Currency&) noexcept = default;
};

} // namespace host
