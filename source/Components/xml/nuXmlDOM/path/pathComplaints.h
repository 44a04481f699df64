#pragma once

#include <string_view>

#include "nuXmlDOM/path/pathProgram.h"
#include "nuXmlParser/chars.h"

/// \file
/// What a path may ask for in words that other languages know and this one takes for names, which
/// then select nothing. Each function gives the complaint, empty without one.

namespace nu {

/// About the test of a step: functions, axes, bars and blanks in it.
[[nodiscard]] NuXmlString complaintAboutTest(std::u16string_view test);
/// About a name: blanks and bars in it.
[[nodiscard]] NuXmlString complaintAboutName(std::u16string_view name);
/// About "name operator literal" in a filter: operators and words that there are not.
[[nodiscard]] NuXmlString complaintAboutComparison(std::u16string_view comparison);
/// What a selection says that gets to a mistake.
[[nodiscard]] std::u16string_view textOf(PathMistake mistake) noexcept;
/// About "and" and "or" outside of quotes.
[[nodiscard]] NuXmlString complaintAboutWords(std::u16string_view text);

} // namespace nu
