#pragma once

#include <cstdint>
#include <initializer_list>

/// \file
/// Sets of values of an enumeration.

namespace host {

/// A set of values of an enumeration whose values are 0 to 63.
template <class Enum> class Set {
public:
    /// What the set is made of.
    using Value = Enum;

    constexpr Set() = default;
    constexpr Set(std::initializer_list<Enum> values) {
        for (const Enum value : values) {
            include(value);
        }
    }

    /// Puts a value in; it may be there already.
    constexpr void include(Enum value) noexcept { bits_ |= bit(value); }
    /// Takes a value out; it need not be there.
    constexpr void exclude(Enum value) noexcept { bits_ &= ~bit(value); }
    /// Whether the value is in the set.
    [[nodiscard]] constexpr bool contains(Enum value) const noexcept {
        return (bits_ & bit(value)) != 0;
    }
    /// Whether there is no value in it.
    [[nodiscard]] constexpr bool empty() const noexcept { return bits_ == 0; }
    /// One bit for each value.
    [[nodiscard]] constexpr std::uint64_t bits() const noexcept { return bits_; }

    friend constexpr bool operator==(const Set&, const Set&) noexcept = default;

private:
    static constexpr std::uint64_t bit(Enum value) noexcept {
        return std::uint64_t{1} << (static_cast<std::uint64_t>(value) & 63U);
    }

    std::uint64_t bits_ = 0;
};

} // namespace host
