#pragma once

#include <string>
#include <string_view>

namespace bench {

/// UTF-8 of UTF-16 text; an unpaired surrogate is converted like any other code point.
inline std::string narrow(std::u16string_view text) {
    std::string result;
    const auto append = [&result](char32_t bits) { result.push_back(static_cast<char>(bits)); };
    for (std::size_t index = 0; index < text.size(); ++index) {
        char32_t character = text[index];
        const bool startsPair = (character & 0xFC00) == 0xD800 && index + 1 < text.size() &&
                                (text[index + 1] & 0xFC00) == 0xDC00;
        if (startsPair) {
            character = 0x10000 + ((character & 0x3FF) << 10) + (text[++index] & 0x3FFu);
        }
        if (character < 0x80) {
            append(character);
        } else if (character < 0x800) {
            append(0xC0 | character >> 6);
            append(0x80 | (character & 0x3F));
        } else {
            if (character < 0x10000) {
                append(0xE0 | character >> 12);
            } else {
                append(0xF0 | character >> 18);
                append(0x80 | (character >> 12 & 0x3F));
            }
            append(0x80 | (character >> 6 & 0x3F));
            append(0x80 | (character & 0x3F));
        }
    }
    return result;
}

} // namespace bench
