#pragma once

#include <optional>

#include "host/runtime/variant.h"

namespace host {

/// The value of a variant that is a number, a boolean or a date; nothing for all others. Every
/// integer is exact: `long double` has no fewer than 64 binary digits.
std::optional<long double> numberOf(const Variant& value) noexcept;

/// The text of a variant that is a string, or the text of its number; nothing for all others.
std::optional<std::u16string> textOf(const Variant& value);

} // namespace host
