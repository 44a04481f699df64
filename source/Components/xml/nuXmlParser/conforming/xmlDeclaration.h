#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace nu {

/// The XML declaration of a document, XML 1.0 production 23.
struct XmlDeclaration {
    std::string_view version;
    std::string_view encoding;   ///< empty where none is named
    std::string_view standalone; ///< "yes", "no" or empty
    /// Whether the reader reads it as it stands: in double quotes, with single spaces only.
    bool isPlain = true;

    /// What is wrong with it and where, from the "<" on; null where nothing is.
    const char16_t* fault = nullptr;
    std::size_t faultAt = 0;
    std::string_view faultText; ///< what the message names

    /// Reads a declaration from "<?xml" to "?>". All views are into `text`.
    [[nodiscard]] static XmlDeclaration read(std::string_view text);
    /// The declaration written anew, with another name of the encoding where there was one.
    [[nodiscard]] std::string write(std::string_view encodingName) const;
};

} // namespace nu
