#include "closestWord.h"

#include <algorithm>
#include <vector>

namespace tool {

namespace {

/// Of a single letter any other could be meant, and words are short: a longer one is no typing
/// mistake.
constexpr std::size_t shortestWord = 3;
constexpr std::size_t longestWord = 40;

/// How many characters have to be changed, put in, left out or exchanged with their neighbour.
std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> beforeLast(to.size() + 1);
    std::vector<std::size_t> last(to.size() + 1);
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t j = 0; j <= to.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= from.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t change = from[i - 1] == to[j - 1] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + change});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row[to.size()];
}

} // namespace

std::string_view closestWord(std::string_view typed, std::span<const std::string_view> words) {
    std::string_view closest;
    if (typed.size() < shortestWord || typed.size() > longestWord) {
        return closest;
    }
    // A third of the word may be wrong, but the beginning of one is meant as that.
    std::size_t least = std::max<std::size_t>(typed.size() / 3, 1) + 1;
    for (const std::string_view word : words) {
        const bool isBeginning = typed.size() > 2 && word.starts_with(typed);
        const std::size_t steps = isBeginning ? 1 : distance(typed, word);
        if (steps < least) {
            least = steps;
            closest = word;
        }
    }
    return closest;
}

std::string suggestionFor(std::string_view typed, std::span<const std::string_view> words) {
    const std::string_view closest = closestWord(typed, words);
    return closest.empty() ? std::string() : " (did you mean " + std::string(closest) + "?)";
}

} // namespace tool
