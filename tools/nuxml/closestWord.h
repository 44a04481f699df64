#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tool {

/// The word that `typed` was probably meant to be: the one that the fewest changed, missing,
/// additional or exchanged characters lead to, if they are few; else empty.
[[nodiscard]] std::string_view closestWord(std::string_view typed,
                                           std::span<const std::string_view> words);

/// " (did you mean WORD?)", or nothing.
[[nodiscard]] std::string suggestionFor(std::string_view typed,
                                        std::span<const std::string_view> words);

} // namespace tool
