#include "nuXmlParser/conforming/tagText.h"

#include <array>

#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

namespace {

/// What a search through a value looks at.
constexpr std::array<bool, 256> valueStops = [] {
    std::array<bool, 256> stops{};
    for (const char c : {'"', '\'', '<', '&', '\t', '\n', '\r'}) {
        stops[static_cast<unsigned char>(c)] = true;
    }
    return stops;
}();

/// The character at `place` as a message names it.
std::string_view characterAt(const char* place, const char* end) noexcept {
    const char* next = place + 1;
    while (next != end && (static_cast<unsigned char>(*next) & 0xC0) == 0x80) {
        ++next;
    }
    return {place, next};
}

} // namespace

TagText::Result TagText::fail(std::u16string_view message, const char* place,
                              std::string_view text) {
    fault = {message.data(), place, text};
    return Result::Faulty;
}

TagText::Result TagText::readName(const char* start, const char* textEnd) {
    if (start == textEnd) {
        return Result::CutShort;
    }
    name = start;
    nameEnd = skipName(start, textEnd);
    if (nameEnd == textEnd) {
        return Result::CutShort;
    }
    return nameEnd == start ? fail(messages::notAName, start, "an element") : Result::Complete;
}

TagText::Result TagText::readStartTag(const char* less, const char* textEnd) {
    attributes.clear();
    // 1. The name.
    if (const Result result = readName(less + 1, textEnd); result != Result::Complete) {
        return result;
    }
    const char* place = nameEnd;
    for (;;) {
        // 2. White space, then the end of the tag or an attribute.
        endSpace = place;
        place = skipSpace(place, textEnd);
        if (place == textEnd) {
            return Result::CutShort;
        }
        if (*place == '>') {
            isEmptyElement = false;
            end = place + 1;
            return Result::Complete;
        }
        if (*place == '/') {
            if (place + 1 == textEnd) {
                return Result::CutShort;
            }
            if (place[1] != '>') {
                return fail(messages::characterInTag, place, "/");
            }
            isEmptyElement = true;
            end = place + 2;
            return Result::Complete;
        }
        // 3. The attribute.
        if (const Result result = readAttribute(endSpace, place, textEnd);
            result != Result::Complete) {
            return result;
        }
        place = attributes.back().valueEnd + 1;
    }
}

TagText::Result TagText::readAttribute(const char* space, const char* start, const char* textEnd) {
    TagAttribute attribute{space, start, skipName(start, textEnd), nullptr, nullptr, true, true};
    if (attribute.nameEnd == textEnd) {
        return Result::CutShort;
    }
    if (attribute.nameEnd == start) {
        return *start == '<' ? fail(messages::tagNotClosed, start)
                             : fail(messages::characterInTag, start, characterAt(start, textEnd));
    }
    if (space == start) {
        return attributes.empty()
                   ? fail(messages::characterInTag, start, characterAt(start, textEnd))
                   : fail(messages::spaceMissingBefore, start, attributes.back().nameText());
    }
    const char* const equal = skipSpace(attribute.nameEnd, textEnd);
    if (equal == textEnd) {
        return Result::CutShort;
    }
    if (*equal != '=') {
        return fail(messages::equalMissing, equal, attribute.nameText());
    }
    const char* const quote = skipSpace(equal + 1, textEnd);
    if (quote == textEnd) {
        return Result::CutShort;
    }
    if (*quote != '"' && *quote != '\'') {
        return fail(messages::quoteMissing, quote);
    }
    attribute.isPlainForm = quote == attribute.nameEnd + 1 && *quote == '"';
    return readValue(attribute, quote, textEnd);
}

TagText::Result TagText::readValue(TagAttribute& attribute, const char* quote,
                                   const char* textEnd) {
    attribute.value = quote + 1;
    for (const char* place = quote + 1;; ++place) {
        while (place != textEnd && !valueStops[static_cast<unsigned char>(*place)]) {
            ++place;
        }
        if (place == textEnd) {
            return Result::CutShort;
        }
        if (*place == *quote) {
            attribute.valueEnd = place;
            attributes.push_back(attribute);
            return Result::Complete;
        }
        if (*place == '<') {
            return fail(messages::lessInValue, place);
        }
        attribute.isPlainValue = attribute.isPlainValue && *place == '\'';
    }
}

TagText::Result TagText::readEndTag(const char* less, const char* textEnd) {
    if (const Result result = readName(less + 2, textEnd); result != Result::Complete) {
        return result;
    }
    endSpace = nameEnd;
    end = skipSpace(nameEnd, textEnd);
    if (end == textEnd) {
        return Result::CutShort;
    }
    if (*end != '>') {
        return *end == '<' ? fail(messages::endTagNotClosed, end)
                           : fail(messages::characterInTag, end, characterAt(end, textEnd));
    }
    ++end;
    return Result::Complete;
}

} // namespace nu
