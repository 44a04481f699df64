#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <span>
#include <string_view>
#include <type_traits>

#include "host/runtime/export.h"

/// \file
/// Names of the values of enumerations, and sets of such values.

namespace host {

/// A value of an enumeration and its name.
struct EnumName {
    std::int64_t value = 0;   ///< the number of the enumerator
    std::u16string_view name; ///< as it is written into XML
};

/// A value with its name as an application writes it.
template <class Enum> struct NamedValue {
    Enum value;               ///< the enumerator
    std::u16string_view name; ///< as it is written into XML
};

/// The table of names that an application gives an enumeration, for host::EnumNames.
template <class Enum, std::size_t count>
constexpr std::array<EnumName, count> names(const NamedValue<Enum> (&values)[count]) {
    std::array<EnumName, count> table{};
    for (std::size_t index = 0; index < count; ++index) {
        table[index] = {static_cast<std::int64_t>(values[index].value), values[index].name};
    }
    return table;
}

/// The names of an enumeration's values. Specialize it, with a table `all`, for every enumeration
/// that is published:
/// ```
/// template <> struct host::EnumNames<Color> {
///     static constexpr auto all = host::names<Color>({{Color::Red, u"clRed"}, ...});
/// };
/// ```
/// A name is no number and holds neither a comma nor a blank.
template <class Enum> struct EnumNames;

/// Whether the values of an enumeration are bits, so that one of them can stand for several names.
/// Specialize it with true for such an enumeration.
template <class Enum> inline constexpr bool isSet = false;

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

/// \cond internal
namespace detail {

template <class Enum>
concept NamedEnum = std::is_enum_v<Enum> && requires {
    EnumNames<Enum>::all;
};

/// A name is told from a number by its first character.
constexpr bool isEnumName(std::u16string_view name) noexcept {
    return !name.empty() && name.find_first_of(u", \t\r\n") == name.npos &&
           name.find_first_of(u"+-0123456789") != 0;
}

template <std::size_t count>
constexpr bool areEnumNames(const std::array<EnumName, count>& table) noexcept {
    for (std::size_t index = 0; index < count; ++index) {
        for (std::size_t other = 0; other < index; ++other) {
            if (table[other].name == table[index].name) {
                return false;
            }
        }
        if (!isEnumName(table[index].name)) {
            return false;
        }
    }
    return true;
}

template <std::size_t count>
constexpr bool areSetValues(const std::array<EnumName, count>& table) noexcept {
    for (const EnumName& entry : table) {
        if (entry.value < 0 || entry.value > 63) {
            return false;
        }
    }
    return true;
}

} // namespace detail
/// \endcond

} // namespace host
