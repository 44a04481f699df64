#pragma once

#include <optional>
#include <string_view>

#include "nuXmlParser.h"

namespace tool {

/// The options of all commands that read documents.
inline constexpr std::string_view largeOption = "--large";
inline constexpr std::string_view rawOption = "--raw";
inline constexpr std::string_view whiteOption = "--white";
/// Of commands that write one.
inline constexpr std::string_view forceOption = "--force";

/// How documents are read, as the command line says.
struct ReadingOptions {
    bool isLarge = false;                    ///< in pieces, however short
    bool isRaw = false;                      ///< by the rules of the reader alone
    bool isForced = false;                   ///< what can be read of a faulty one will do
    std::optional<std::string_view> white{}; ///< which white space is content

    /// For the stage in front of the reader; nothing where there is none. Throws UsageError.
    [[nodiscard]] std::optional<TNuConformingOptions> conforming() const;
};

} // namespace tool
