#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string_view>
#include <system_error>

namespace host {

/// Takes a number off the front of a text of bytes: digits, behind a minus perhaps if the type has
/// negative numbers, and what belongs to a number of a floating type. No plus, no blank, no word
/// such as "inf", and nothing that does not fit; the text then stays as it is.
template <class Number> std::optional<Number> takeDigits(std::string_view& text) noexcept {
    if constexpr (std::floating_point<Number>) {
        const std::size_t sign = text.starts_with('-') ? 1 : 0;
        if (text.size() <= sign || text[sign] < '0' || text[sign] > '9') {
            return std::nullopt;
        }
    }
    Number number{};
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// The number that all of a text of bytes stands for.
template <class Number> std::optional<Number> parseDigits(std::string_view text) noexcept {
    const std::optional<Number> number = takeDigits<Number>(text);
    return text.empty() ? number : std::nullopt;
}

} // namespace host
