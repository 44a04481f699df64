#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nu {

/// How far bytes are text that may stand in an XML document: well-formed UTF-8 of characters that
/// XML 1.0 allows.
struct CheckedText {
    /// What ended it.
    enum class Stop : std::uint8_t {
        All,       ///< nothing did
        CutShort,  ///< what is left begins a sequence whose rest is missing
        Malformed, ///< what is left begins with bytes that are no UTF-8
        NotAllowed ///< the next character is none that XML allows
    };

    std::size_t length; ///< bytes that are all right
    Stop stop;
    char32_t codePoint; ///< the character that is not allowed
};

/// Checks from the first byte on.
[[nodiscard]] CheckedText checkText(std::string_view bytes) noexcept;

} // namespace nu
