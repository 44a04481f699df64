#include "host/runtime/unicode.h"

#include <cstddef>

#include "host/runtime/utf8Sequence.h"

namespace host {

namespace {

void appendUtf8(std::string& target, char32_t code) {
    auto trail = [&](unsigned shift) {
        target += static_cast<char>(0x80U | ((code >> shift) & 0x3FU));
    };
    if (code < 0x80) {
        target += static_cast<char>(code);
    } else if (code < 0x800) {
        target += static_cast<char>(0xC0U | (code >> 6U));
        trail(0);
    } else if (code < 0x10000) {
        target += static_cast<char>(0xE0U | (code >> 12U));
        trail(6);
        trail(0);
    } else {
        target += static_cast<char>(0xF0U | (code >> 18U));
        trail(12);
        trail(6);
        trail(0);
    }
}

} // namespace

std::string utf16ToUtf8(std::u16string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        char32_t code = text[index];
        if (isSurrogate(text[index])) {
            const bool isPair = isHighSurrogate(text[index]) && index + 1 < text.size() &&
                                isLowSurrogate(text[index + 1]);
            code = isPair ? 0x10000 + ((code - 0xD800) << 10U) + (text[++index] - 0xDC00U)
                          : replacementCharacter;
        }
        appendUtf8(result, code);
    }
    return result;
}

std::u16string utf8ToUtf16(std::string_view bytes) {
    std::u16string result;
    result.reserve(bytes.size());
    const auto* place = reinterpret_cast<const unsigned char*>(bytes.data());
    const unsigned char* const end = place + bytes.size();
    while (place != end) {
        const Utf8Sequence sequence = readUtf8Sequence(place, end);
        place += sequence.length;
        char16_t units[2];
        result.append(units, appendCodePoint(units, sequence.codePoint));
    }
    return result;
}

} // namespace host
