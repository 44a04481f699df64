#pragma once

#include <cstdint>
#include <string_view>

#include "nuXmlParser/conforming/tagText.h"

namespace nu {

/// A reference as it stands in a text, XML 1.0 productions 66 to 69.
class ReferenceText {
public:
    enum class Kind : std::uint8_t {
        Character,
        Predefined, ///< one of the five that need no declaration
        Entity,
    };

    /// Takes the reference apart that `mark`, "&" or "%", begins.
    TagText::Result read(const char* mark, const char* textEnd);

    Kind kind = Kind::Entity;
    char32_t codePoint = 0; ///< of a character, or one of the five
    std::string_view name;
    const char* end = nullptr; ///< behind the ";"
    TagFault fault;

private:
    TagText::Result readCharacter(const char* mark, const char* textEnd);
    TagText::Result fail(std::u16string_view message, const char* place);
};

} // namespace nu
