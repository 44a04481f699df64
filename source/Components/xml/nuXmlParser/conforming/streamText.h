#pragma once

#include <optional>
#include <string_view>

#include "host/runtime/stream.h"

namespace nu {

/// What is left of a stream whose bytes lie in memory; nothing for any other.
[[nodiscard]] std::optional<std::string_view> restInMemory(host::TStream& stream);

/// Whether it is a stream of text that is UTF-16 by its kind: what it declares was written for its
/// bytes elsewhere.
[[nodiscard]] bool isWideText(host::TStream& stream);

} // namespace nu
