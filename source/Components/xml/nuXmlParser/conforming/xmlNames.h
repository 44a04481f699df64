#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// \file
/// Names and white space in UTF-8, by XML 1.0, fifth edition, productions 3 to 8, and Namespaces
/// in XML 1.0. The text is well-formed UTF-8.

namespace nu {

/// What a byte can be.
enum ByteClass : std::uint8_t {
    bcNameStart = 1, ///< begins a name; a byte of a longer sequence may
    bcNameChar = 2,  ///< goes on with one; likewise
    bcSpace = 4,
    bcHigh = 8, ///< belongs to a longer sequence
    bcHex = 16,
};

inline constexpr std::array<std::uint8_t, 256> byteClasses = [] {
    std::array<std::uint8_t, 256> classes{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        const unsigned folded = byte | 0x20;
        const bool isDigit = byte >= '0' && byte <= '9';
        const bool isLetter = folded >= 'a' && folded <= 'z';
        const bool isStart = byte >= 0x80 || isLetter || byte == '_' || byte == ':';
        classes[byte] = static_cast<std::uint8_t>(
            (isStart ? bcNameStart | bcNameChar : 0) |
            (isDigit || byte == '-' || byte == '.' ? bcNameChar : 0) |
            (byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r' ? bcSpace : 0) |
            (byte >= 0x80 ? bcHigh : 0) |
            (isDigit || (folded >= 'a' && folded <= 'f' && byte >= 'A' && byte < 0x80) ? bcHex
                                                                                       : 0));
    }
    return classes;
}();

[[nodiscard]] inline bool isByte(char byte, unsigned classes) noexcept {
    return (byteClasses[static_cast<unsigned char>(byte)] & classes) != 0;
}
[[nodiscard]] inline bool isSpace(char byte) noexcept { return isByte(byte, bcSpace); }

/// Behind the white space at `place`.
[[nodiscard]] inline const char* skipSpace(const char* place, const char* end) noexcept {
    while (place != end && isSpace(*place)) {
        ++place;
    }
    return place;
}

/// Behind the name at `place`; `place` itself where none begins there.
[[nodiscard]] const char* skipName(const char* place, const char* end) noexcept;
/// The same for a token of name characters, whatever it begins with.
[[nodiscard]] const char* skipNameToken(const char* place, const char* end) noexcept;

/// How a name stands to Namespaces in XML: at most one colon, and a name on both sides of it.
[[nodiscard]] bool isQualifiedName(std::string_view name) noexcept;
/// The prefix of a qualified name, empty without one, and the rest.
[[nodiscard]] inline std::string_view prefixOf(std::string_view name) noexcept {
    const std::size_t colon = name.find(':');
    return colon == name.npos ? std::string_view() : name.substr(0, colon);
}
[[nodiscard]] inline std::string_view localNameOf(std::string_view name) noexcept {
    return name.substr(name.find(':') + 1);
}

} // namespace nu
