#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "nuXmlSax.h"

/// \file
/// What a parser tells of a document, in a form that two parsers can be compared by: elements with
/// their namespaces, attributes, all text with its white space, comments, instructions.

namespace support {

/// What came of a document.
struct Outline {
    std::string text;                        ///< one event a line, line breaks within as "\n"
    std::vector<std::int64_t> startTagLines; ///< where start tags end
    int warnings = 0;                        ///< that the reader gave; of expat, skipped references
    bool isWellFormed = true;
    std::int64_t faultLine = 0;
    std::string fault;
};

/// Of our reader behind the conforming stage.
[[nodiscard]] Outline conformingOutline(std::string_view bytes,
                                        const TNuConformingOptions& options = {});

#ifdef NUXML_HAS_EXPAT
/// Of expat, with namespaces, or without. References that may be skipped stand in the text as we
/// decode them. Nothing if expat cannot say because of the encoding.
[[nodiscard]] std::optional<Outline> expatOutline(std::string_view bytes,
                                                  bool hasNamespaces = true);
#endif

} // namespace support
