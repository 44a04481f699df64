#pragma once

#include <string>
#include <string_view>

namespace tool {

/// How the text of a document stands on its lines, so that a changed one can be written the same
/// way.
struct SourceLayout {
    bool hasLineBreak = false;    ///< there is more than one line
    bool hasLines = false;        ///< the last end tag stands on a line of its own
    bool endsLinesWithCR = false; ///< "\r\n" instead of "\n"
    bool endsWithLine = false;    ///< the last line ends as well
};

/// Finds the layout of a text that it sees in pieces.
class LayoutFinder {
public:
    /// What follows in the text.
    void see(std::string_view piece);
    /// The layout of what was seen.
    [[nodiscard]] SourceLayout layout() const;

private:
    bool hasLF_ = false;
    bool hasCR_ = false;
    std::string tail_; ///< the end of what was seen
};

} // namespace tool
