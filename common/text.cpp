#include "common/text.h"

#include <cstddef>
#include <string>
#include <vector>

#include "common/caseFolding.h"

namespace {

// For each length of a beginning of `part`: how much of it remains matched when the unit behind it
// does not fit (the longest shorter beginning that the matched text also ends with).
std::vector<std::size_t> remainingMatches(std::u16string_view part) {
    std::vector<std::size_t> remaining(part.size(), 0);
    std::size_t matched = 0;
    for (std::size_t index = 1; index < part.size(); ++index) {
        while (matched > 0 && part[index] != part[matched]) {
            matched = remaining[matched - 1];
        }
        matched += part[index] == part[matched] ? 1 : 0;
        remaining[index] = matched;
    }
    return remaining;
}

} // namespace

bool NuContainsText(std::u16string_view text, std::u16string_view part) {
    if (part.empty()) {
        return true;
    }
    const std::u16string folded = NuFolded(part);
    const std::vector<std::size_t> remaining = remainingMatches(folded);
    std::size_t matched = 0;
    for (const char16_t unit : text) {
        const char16_t letter = NuFoldCase(unit);
        while (matched > 0 && folded[matched] != letter) {
            matched = remaining[matched - 1];
        }
        matched += folded[matched] == letter ? 1 : 0;
        if (matched == folded.size()) {
            return true;
        }
    }
    return false;
}
