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

    /// Whether the set holds that option.
    [[nodiscard]] constexpr bool has(Option option) const noexcept { return (bits_ & option) != 0; }
    /// The set as a number, a bit for each option.
    [[nodiscard]] constexpr std::uint8_t bits() const noexcept { return bits_; }
    /// The set that such a number stands for; bits that are no option are kept.
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
