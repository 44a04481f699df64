#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "nuXmlParser/chars.h"

class TNuDOMDocument;

namespace nu {

enum class SavedForm : std::uint8_t { Utf8, Utf16, EightBit };

/// What a document is saved in.
struct SavedEncoding {
    SavedForm form;
    std::uint32_t codePage = 0; ///< of the 8-bit form; UTF-8 is one as well
};

/// What a document is saved in, by its declaration and the code page of the system.
[[nodiscard]] SavedEncoding savedEncodingOf(const TNuDOMDocument& document);

/// What a code page is saved in. Throws host::EConvertError for one that is not known.
[[nodiscard]] SavedEncoding savedEncodingOf(std::uint32_t codePage);

/// Where a name stands in the data of an XML declaration, without its quotes.
struct NamePlace {
    std::size_t start;
    std::size_t length;
};

/// Where the data of a declaration names the encoding, in quotes or apostrophes, if it does.
[[nodiscard]] std::optional<NamePlace> findEncodingName(std::u16string_view data) noexcept;

} // namespace nu
