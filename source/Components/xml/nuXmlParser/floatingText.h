#pragma once

#include <limits>
#include <optional>
#include <string_view>

#include "host/runtime/decimalText.h"
#include "host/runtime/whiteSpace.h"

namespace nu {

/// Reads a number as NuXMLToDouble does; nothing when the text is none. For float and double.
template <class Float> std::optional<Float> readFloating(std::u16string_view text) noexcept {
    const std::u16string_view number = host::trimmed(text);
    Float value = 0;
    if (host::parseFloating(number, value)) {
        return value;
    }
    if (number == u"INF" || number == u"+INF") {
        return std::numeric_limits<Float>::infinity();
    }
    if (number == u"-INF") {
        return -std::numeric_limits<Float>::infinity();
    }
    if (number == u"NaN") {
        return std::numeric_limits<Float>::quiet_NaN();
    }
    return std::nullopt;
}

} // namespace nu
