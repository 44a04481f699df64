#pragma once

#include <string_view>

namespace nu {

// The elements of lists and maps.
inline constexpr std::u16string_view itemName = u"item";
inline constexpr std::u16string_view keyName = u"key";
inline constexpr std::u16string_view valueName = u"value";

} // namespace nu
