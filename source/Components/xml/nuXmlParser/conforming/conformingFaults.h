#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "nuXmlParser/conforming/sourcePlace.h"
#include "nuXmlParser/conforming/xmlFault.h"

/// \file
/// Faults made from their message, what it names (in UTF-8), and the place.

namespace nu {

[[nodiscard]] ENuXmlFault makeFault(std::u16string_view message, SourcePlace place);
/// A text that is too long to be read is cut.
[[nodiscard]] ENuXmlFault makeFault(std::u16string_view message, std::string_view text,
                                    SourcePlace place);
[[nodiscard]] ENuXmlFault makeFault(std::u16string_view message, std::u16string_view text,
                                    SourcePlace place);
[[nodiscard]] ENuXmlFault makeFault(std::u16string_view message, std::int64_t number,
                                    SourcePlace place);
/// The text of a fault as it is told about a name.
[[nodiscard]] std::u16string shortened(std::string_view text);
/// A character as four to six hexadecimal digits.
[[nodiscard]] std::u16string hexCode(char32_t codePoint);

} // namespace nu
