#pragma once

#include <cstring>
#include <string_view>

#include "host/runtime/asciiCase.h"

namespace nu {

/// Whether texts are the same: compared as bytes, which is quicker than unit by unit.
inline bool isSame(std::u16string_view left, std::u16string_view right) noexcept {
    return left.size() == right.size() &&
           std::memcmp(left.data(), right.data(), left.size() * sizeof(char16_t)) == 0;
}

/// Whether names are the same in any letter case of ASCII; nearly always in the same.
inline bool isSameName(std::u16string_view left, std::u16string_view right) noexcept {
    return isSame(left, right) || host::equalIgnoringCase(left, right);
}

} // namespace nu
