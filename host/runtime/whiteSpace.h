#pragma once

#include <cstddef>
#include <string_view>

/// \file
/// White space of XML, and texts without it.

namespace host {

/// White space of XML: tab, line feed, carriage return and space.
constexpr bool isWhiteSpace(char16_t unit) noexcept {
    return unit == u' ' || unit == u'\n' || unit == u'\t' || unit == u'\r';
}

/// The text without white space at its ends.
constexpr std::u16string_view trimmed(std::u16string_view text) noexcept {
    while (!text.empty() && isWhiteSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isWhiteSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// Removes the next word from the front, with the white space before it; empty at the end.
constexpr std::u16string_view takeWord(std::u16string_view& text) noexcept {
    while (!text.empty() && isWhiteSpace(text.front())) {
        text.remove_prefix(1);
    }
    std::size_t length = 0;
    while (length < text.size() && !isWhiteSpace(text[length])) {
        ++length;
    }
    const std::u16string_view word = text.substr(0, length);
    text.remove_prefix(length);
    return word;
}

} // namespace host
