#include "sourceLayout.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace tool {

namespace {

constexpr std::size_t blockSize = std::size_t{64} * 1024;

/// Whether the last end tag of the text stands alone on its line, behind another tag.
bool endsOnLineOfItsOwn(std::string_view text) {
    const std::size_t endTag = text.rfind("</");
    if (endTag == text.npos) {
        return false;
    }
    const std::size_t before = text.substr(0, endTag).find_last_not_of(" \t\r\n");
    return before != text.npos && text[before] == '>' &&
           text.substr(before, endTag - before).find('\n') != text.npos;
}

} // namespace

SourceLayout layoutOf(host::TStream& stream) {
    SourceLayout layout;
    std::vector<char> block(blockSize);
    std::string tail;
    stream.SetPosition(0);
    while (const std::size_t count = stream.Read(block.data(), block.size())) {
        layout.endsLinesWithCR =
            layout.endsLinesWithCR || std::memchr(block.data(), '\r', count) != nullptr;
        // The end tag may stand in two blocks.
        tail.erase(0, tail.size() > blockSize ? tail.size() - blockSize : 0);
        tail.append(block.data(), count);
    }
    stream.SetPosition(0);
    tail.erase(std::remove(tail.begin(), tail.end(), '\0'), tail.end()); // of UTF-16
    layout.hasLines = endsOnLineOfItsOwn(tail);
    layout.endsWithLine = tail.ends_with('\n');
    return layout;
}

} // namespace tool
