#pragma once

#include <cstdint>
#include <string_view>

namespace nu {

/// The line feeds in a text of bytes, counted in blocks.
[[nodiscard]] std::int64_t countLineFeeds(std::string_view bytes) noexcept;

} // namespace nu
