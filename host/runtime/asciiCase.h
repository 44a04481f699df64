#pragma once

#include <algorithm>
#include <string_view>

namespace host {

/// The ASCII letter in lower case; everything else as it is.
constexpr char16_t lowerAscii(char16_t unit) noexcept {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

/// Whether two names differ in the letter case of ASCII at most.
constexpr bool equalIgnoringCase(std::u16string_view left, std::u16string_view right) noexcept {
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(),
        [](char16_t one, char16_t other) { return lowerAscii(one) == lowerAscii(other); });
}

} // namespace host
