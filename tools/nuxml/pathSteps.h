#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// A step of a path, or one filter of it.
struct PathPart {
    std::size_t end; ///< the path up to here has this part as its last one
    std::u16string text;
    std::string meaning;
};

/// The parts of one alternative of a path in their order.
[[nodiscard]] std::vector<PathPart> partsOf(std::u16string_view path);

/// The alternatives of a path, which " | " stands between.
[[nodiscard]] std::vector<std::u16string> alternativesOf(std::u16string_view path);

} // namespace tool
