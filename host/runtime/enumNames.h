#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

/// \file
/// Names of the values of enumerations. All of it is done while the compiler runs.

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
