#include "nuXmlParser/conforming/sourcePlace.h"

#include <cstddef>

#include "common/utf8.h"
#include "nuXmlParser/lineFeeds.h"

namespace nu {

void PlaceCounter::moveOver(std::string_view text) noexcept {
    if (text.empty()) {
        return;
    }
    const bool hasCr = text.find('\r') != text.npos;
    const std::size_t lastBreak = hasCr ? text.find_last_of("\r\n") : text.rfind('\n');
    const bool endsWithCr = text.back() == '\r';
    if (lastBreak != text.npos) {
        breakLines(text.substr(0, lastBreak + 1));
        text.remove_prefix(lastBreak + 1);
    }
    place_.column += static_cast<std::int64_t>(NuUtf16Length(text));
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
        place_.line += countLineFeeds(text.substr(0, cr)) + 1;
        text.remove_prefix(cr + 1);
        if (text.starts_with('\n')) {
            text.remove_prefix(1);
        }
        cr = text.find('\r');
    }
    place_.line += countLineFeeds(text);
    place_.column = 1;
}

} // namespace nu
