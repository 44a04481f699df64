#include "nuXmlParser/conforming/sourcePlace.h"

#include <cstddef>

namespace nu {

namespace {

/// The UTF-16 units of UTF-8 text: one for each lead byte, two for those of four bytes.
std::int64_t unitsOf(std::string_view text) noexcept {
    std::int64_t units = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        units += (byte & 0xC0) != 0x80 ? 1 : 0;
        units += byte >= 0xF0 ? 1 : 0;
    }
    return units;
}

} // namespace

void PlaceCounter::moveOver(std::string_view text) noexcept {
    if (text.empty()) {
        return;
    }
    const std::size_t lastBreak = text.find_last_of("\r\n");
    const bool endsWithCr = text.back() == '\r';
    if (lastBreak != text.npos) {
        breakLines(text.substr(0, lastBreak + 1));
        text.remove_prefix(lastBreak + 1);
    }
    place_.column += unitsOf(text);
    isBehindCr_ = endsWithCr;
}

/// Moves over text that ends with a line break.
void PlaceCounter::breakLines(std::string_view text) noexcept {
    // 1. A CR that the LF belongs to has already been counted.
    if (isBehindCr_ && text.front() == '\n') {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return;
    }
    // 2. CR where there is one, with the LF behind it, then nothing but LF.
    std::size_t cr = text.find('\r');
    while (cr != text.npos) {
        for (const char c : text.substr(0, cr)) {
            place_.line += c == '\n' ? 1 : 0;
        }
        ++place_.line;
        text.remove_prefix(cr + 1);
        if (text.starts_with('\n')) {
            text.remove_prefix(1);
        }
        cr = text.find('\r');
    }
    for (const char c : text) {
        place_.line += c == '\n' ? 1 : 0;
    }
    place_.column = 1;
}

} // namespace nu
