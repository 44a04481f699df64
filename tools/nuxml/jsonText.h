#pragma once

#include <string_view>

namespace tool {

/// Whether a text is a number as JSON writes it: "-1.5e3", not "+1", "01" or ".5".
[[nodiscard]] bool isJsonNumber(std::u16string_view text) noexcept;

} // namespace tool
