#include "sourceLayout.h"

#include <algorithm>

namespace tool {

namespace {

/// How much of the end of a text is looked at, at least.
constexpr std::size_t longestTail = std::size_t{64} * 1024;

/// Whether the last end tag of the text stands alone on its line, behind another tag.
bool endsOnLineOfItsOwn(std::string_view text) {
    const std::size_t endTag = text.rfind("</");
    if (endTag == text.npos) {
        return false;
    }
    const std::size_t before = text.substr(0, endTag).find_last_not_of(" \t\r\n");
    return before != text.npos && text[before] == '>' &&
           text.substr(before, endTag - before).find_first_of("\r\n") != text.npos;
}

} // namespace

void LayoutFinder::see(std::string_view piece) {
    hasLF_ = hasLF_ || piece.find('\n') != piece.npos;
    hasCR_ = hasCR_ || piece.find('\r') != piece.npos;
    // The last end tag may stand in two pieces.
    piece.remove_prefix(piece.size() > longestTail ? piece.size() - longestTail : 0);
    if (tail_.size() + piece.size() > 2 * longestTail) {
        tail_.erase(0, tail_.size() - longestTail);
    }
    tail_ += piece;
}

SourceLayout LayoutFinder::layout() const {
    std::string tail = tail_;
    tail.erase(std::remove(tail.begin(), tail.end(), '\0'), tail.end()); // of UTF-16
    return {hasLF_ || hasCR_, endsOnLineOfItsOwn(tail), hasCR_,
            tail.ends_with('\n') || tail.ends_with('\r')};
}

} // namespace tool
