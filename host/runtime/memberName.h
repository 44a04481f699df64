#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// \file
/// The names of members, taken at compile time from how the compiler spells a pointer to one.

namespace host {

/// \cond internal
namespace detail {

/// The spelling of this function holds that of its template argument, and nothing else with "::"
/// behind it: a result of a class would be explained there.
template <auto Member> constexpr const char* spelling() noexcept { return __PRETTY_FUNCTION__; }

/// What stands behind the last "::" of the argument, which is the last that the spelling holds.
constexpr std::string_view lastName(std::string_view spelled) noexcept {
    const std::size_t start = spelled.rfind("::") + 2;
    const std::size_t end = spelled.find_first_of(";,)]", start);
    return spelled.substr(start, end - start);
}

constexpr bool isUpper(char character) noexcept { return character >= 'A' && character <= 'Z'; }

/// "Score" for "GetScore" and "getScore"; other names, "Gets" among them, stay as they are.
constexpr std::string_view withoutGet(std::string_view name) noexcept {
    const bool isGetter = name.size() > 3 && (name.starts_with("Get") || name.starts_with("get")) &&
                          (isUpper(name[3]) || name[3] == '_' || (name[3] & '\x80') != 0);
    return isGetter ? name.substr(name[3] == '_' ? 4 : 3) : name;
}

/// UTF-8, which compilers write names in, as UTF-16. Names are well-formed.
template <std::size_t bytes> struct WideName {
    std::array<char16_t, bytes> units{};
    std::size_t size = 0;

    constexpr explicit WideName(std::string_view name) noexcept {
        for (std::size_t index = 0; index < name.size();) {
            add(takeCharacter(name, index));
        }
    }

    static constexpr std::uint32_t takeCharacter(std::string_view name, std::size_t& index) {
        const auto lead = static_cast<unsigned char>(name[index++]);
        const int more = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        std::uint32_t character = more == 0 ? lead : lead & (0x3FU >> more);
        for (int left = more; left > 0 && index < name.size(); --left) {
            character = character << 6U | (static_cast<unsigned char>(name[index++]) & 0x3FU);
        }
        return character;
    }

    constexpr void add(std::uint32_t character) noexcept {
        if (character >= 0x10000) {
            units[size++] = static_cast<char16_t>(0xD7C0 + (character >> 10U));
            character = 0xDC00 | (character & 0x3FFU);
        }
        units[size++] = static_cast<char16_t>(character);
    }
};

template <auto Member>
inline constexpr auto wideName = [] {
    constexpr std::string_view name = withoutGet(lastName(spelling<Member>()));
    return WideName<name.size() + 1>(name);
}();

} // namespace detail
/// \endcond

/// The name of a member that is given by a pointer, without the "Get" of a getter: "Street" for
/// `&TAddress::Street`, "Score" for `&TPerson::GetScore`. For g++ and clang; elsewhere names have
/// to be written out.
template <auto Member>
inline constexpr std::u16string_view memberName{detail::wideName<Member>.units.data(),
                                                detail::wideName<Member>.size};

} // namespace host
