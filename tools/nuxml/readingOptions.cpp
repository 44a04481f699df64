#include "readingOptions.h"

#include <string>

#include "arguments.h"

namespace tool {

namespace {

TNuConformingWhiteSpace whiteSpaceOf(std::string_view word) {
    if (word == "all") {
        return cwAll;
    }
    if (word == "inline") {
        return cwInline;
    }
    if (word == "drop") {
        return cwReader;
    }
    throw UsageError("--white is all, inline or drop, not " + std::string(word));
}

} // namespace

std::optional<TNuConformingOptions> ReadingOptions::conforming() const {
    if (isRaw) {
        if (white) {
            throw UsageError("--raw and --white exclude each other");
        }
        return std::nullopt;
    }
    TNuConformingOptions options;
    options.whiteSpace = whiteSpaceOf(white.value_or("inline"));
    options.onFault = isForced ? cfPassOn : cfStop;
    options.keepEncodingName = true;
    return options;
}

} // namespace tool
