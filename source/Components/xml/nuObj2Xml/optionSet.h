#pragma once

#include <cstdint>
#include <initializer_list>

namespace nu {

/// A set of options, each of which is one bit: `{noAddXSI, noUseXSIPrefix}` or
/// `noAddXSI | noUseXSIPrefix`.
template <class Option> class OptionSet {
public:
    constexpr OptionSet() noexcept = default;
    constexpr OptionSet(Option option) noexcept : bits_(option) {}
    constexpr OptionSet(std::initializer_list<Option> options) noexcept {
        for (const Option option : options) {
            bits_ |= option;
        }
    }

    [[nodiscard]] constexpr bool has(Option option) const noexcept { return (bits_ & option) != 0; }
    /// The set as a number, and such a number as a set.
    [[nodiscard]] constexpr std::uint8_t bits() const noexcept { return bits_; }
    [[nodiscard]] static constexpr OptionSet fromBits(std::uint8_t bits) noexcept {
        OptionSet set;
        set.bits_ = bits;
        return set;
    }

    friend constexpr bool operator==(OptionSet, OptionSet) noexcept = default;
    friend constexpr OptionSet operator|(OptionSet left, OptionSet right) noexcept {
        return fromBits(static_cast<std::uint8_t>(left.bits_ | right.bits_));
    }

private:
    std::uint8_t bits_ = 0;
};

} // namespace nu
