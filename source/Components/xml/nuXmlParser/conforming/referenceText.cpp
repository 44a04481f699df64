#include "nuXmlParser/conforming/referenceText.h"

#include <array>

#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

namespace {

struct Predefined {
    std::string_view name;
    char character;
};

constexpr std::array predefined = {Predefined{"lt", '<'}, Predefined{"gt", '>'},
                                   Predefined{"amp", '&'}, Predefined{"quot", '"'},
                                   Predefined{"apos", '\''}};

constexpr bool isXmlCharacter(char32_t codePoint) noexcept {
    return codePoint == 0x9 || codePoint == 0xA || codePoint == 0xD ||
           (codePoint >= 0x20 && codePoint < 0xD800) ||
           (codePoint >= 0xE000 && codePoint < 0xFFFE) ||
           (codePoint >= 0x10000 && codePoint <= 0x10FFFF);
}

} // namespace

TagText::Result ReferenceText::fail(std::u16string_view message, const char* place) {
    fault = {message.data(), place, name};
    return TagText::Result::Faulty;
}

TagText::Result ReferenceText::read(const char* mark, const char* textEnd) {
    name = {};
    if (mark + 1 == textEnd) {
        return TagText::Result::CutShort;
    }
    if (mark[1] == '#' && *mark == '&') {
        return readCharacter(mark, textEnd);
    }
    const char* const nameEnd = skipName(mark + 1, textEnd);
    if (nameEnd == textEnd) {
        return TagText::Result::CutShort;
    }
    if (nameEnd == mark + 1) {
        return fail(messages::bareAmpersand, mark);
    }
    name = {mark + 1, nameEnd};
    if (*nameEnd != ';') {
        return fail(messages::semicolonMissing, nameEnd);
    }
    end = nameEnd + 1;
    kind = Kind::Entity;
    for (const Predefined& each : predefined) {
        if (each.name == name && *mark == '&') {
            kind = Kind::Predefined;
            codePoint = static_cast<unsigned char>(each.character);
        }
    }
    return TagText::Result::Complete;
}

TagText::Result ReferenceText::readCharacter(const char* mark, const char* textEnd) {
    constexpr char32_t beyondAll = 0x110000;
    kind = Kind::Character;
    codePoint = 0;
    const char* place = mark + 2;
    const bool isHex = place != textEnd && *place == 'x';
    place += isHex ? 1 : 0;
    const char* const digits = place;
    for (; place != textEnd && isByte(*place, bcHex); ++place) {
        const bool isDigit = *place <= '9';
        if (!isDigit && !isHex) {
            break;
        }
        const auto value =
            static_cast<char32_t>(isDigit ? *place - '0' : (*place | 0x20) - 'a' + 10);
        codePoint = codePoint < beyondAll ? codePoint * (isHex ? 16 : 10) + value : beyondAll;
    }
    if (place == textEnd) {
        return TagText::Result::CutShort;
    }
    if (place == digits || *place != ';') {
        return fail(messages::referenceMalformed, mark);
    }
    if (!isXmlCharacter(codePoint)) {
        name = {mark, place + 1};
        return fail(messages::referenceNotAllowed, mark);
    }
    end = place + 1;
    return TagText::Result::Complete;
}

} // namespace nu
