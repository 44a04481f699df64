#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "arguments.h"
#include "nuXmlDOM.h"

namespace tool {

/// The options that change a document.
inline constexpr std::string_view setOption = "--set";
inline constexpr std::string_view createOption = "--create";
inline constexpr std::string_view renameOption = "--rename";
inline constexpr std::string_view moveOption = "--move";
inline constexpr std::string_view deleteOption = "--delete";

/// Short names of the same.
inline constexpr std::pair<std::string_view, std::string_view> shortNames[] = {
    {"-s", setOption},  {"-c", createOption}, {"-r", renameOption},
    {"-m", moveOption}, {"-d", deleteOption},
};

/// One change, as the command line asks for it.
struct Change {
    GivenOption given;
    std::u16string path;
    std::u16string value; ///< a text, a name, or the path to move to
};

/// Reads what stands behind one of these options. Throws UsageError.
[[nodiscard]] Change changeOf(GivenOption given);

/// Makes a change and gives the number of nodes that were changed. Throws UsageError for what is
/// no document any more, and what selecting and the tree throw.
std::size_t applyChange(TNuDOMDocument& document, const Change& change);

} // namespace tool
