#include "nuXmlParser/conforming/tagText.h"

#include <bit>

#include "nuXmlParser/chars.h"
#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlNames.h"
#include "nuXmlParser/scan.h"

namespace nu {

namespace {

/// The first byte at or behind `place` that a value is looked at for: quotes, "<", "&" and white
/// space but spaces; `end` where there is none.
const char* findValueStop(const char* place, const char* end) noexcept {
    constexpr auto size = static_cast<std::ptrdiff_t>(scanBlock);
    for (; end - place >= size; place += size) {
        const unsigned stops =
            findInBlock<cNuQuoteA, cNuAposA, cNuLtA, cNuAmpA, '\t', '\n', '\r'>(place);
        if (stops != 0) {
            return place + std::countr_zero(stops);
        }
    }
    while (place != end &&
           !isOneOf<cNuQuoteA, cNuAposA, cNuLtA, cNuAmpA, '\t', '\n', '\r'>(*place)) {
        ++place;
    }
    return place;
}

/// What surely does not belong to a name.
bool endsName(char c) noexcept {
    return isSpace(c) || isOneOf<'=', '>', '/', '<', '"', '\'', '&'>(c);
}

/// The character at `place` as a message names it.
std::string_view characterAt(const char* place, const char* end) noexcept {
    const char* next = place + 1;
    while (next != end && (static_cast<unsigned char>(*next) & 0xC0) == 0x80) {
        ++next;
    }
    return {place, next};
}

/// A name that is guessed to begin at `start`, if it surely does; else null. `reach` bytes can be
/// read from there.
markup::TagName* guessed(markup::TagName* name, const char* start) noexcept {
    return name != nullptr && name->standsAt(start) && endsName(start[name->text.size()]) ? name
                                                                                          : nullptr;
}

} // namespace

TagText::Result TagText::fail(std::u16string_view message, const char* place,
                              std::string_view text) {
    fault = {message.data(), place, text};
    return Result::Faulty;
}

TagText::Result TagText::failLimit(std::u16string_view message, const char* place,
                                   std::size_t limit) {
    limit_ = std::to_string(limit);
    return fail(message, place, limit_);
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

/// Gives what is known of a name, from now on if not before.
TagText::Result TagText::meet(markup::TagName*& met, std::string_view text) {
    met = memory_.names.find(text);
    if (met != nullptr) {
        return Result::Complete;
    }
    if (!limits_.allowsName(text)) {
        return failLimit(messages::nameBeyondLimit, text.data(), limits_.nameLength());
    }
    met = &memory_.meet(text);
    return Result::Complete;
}

TagText::Result TagText::readElementName(const char* start, const char* textEnd) {
    const bool isFar = textEnd - start > static_cast<std::ptrdiff_t>(markup::reach);
    known = isFar ? guessed(memory_.guess.next(), start) : nullptr;
    if (known != nullptr) {
        name = start;
        nameEnd = start + known->text.size();
        return Result::Complete;
    }
    Result result = readName(start, textEnd);
    if (result == Result::Complete) {
        result = meet(known, nameText());
    }
    if (result == Result::Complete) {
        memory_.guess.follow(*known);
    }
    return result;
}

TagText::Result TagText::readStartTag(const char* less, const char* textEnd) {
    attributes.clear();
    again_ = noAttribute;
    hasPlainForm = hasPlainValues = true;
    prefixed.clear();
    hasDeclarations = false;
    number_ = memory_.checks.begin();
    // 1. The name.
    if (const Result result = readElementName(less + 1, textEnd); result != Result::Complete) {
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
            hasPlainForm = hasPlainForm && endSpace == place;
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
            hasPlainForm = hasPlainForm && endSpace == place;
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

TagText::Result TagText::readAttributeName(TagAttribute& attribute, const char* textEnd) {
    const char* const start = attribute.name;
    markup::TagName& before = attributes.empty() ? *known : *attributes.back().known;
    if (textEnd - start > static_cast<std::ptrdiff_t>(markup::reach)) {
        attribute.known = guessed(before.followers[markup::ByteName::Attribute], start);
        if (attribute.known != nullptr) {
            attribute.nameEnd = start + attribute.known->text.size();
            return Result::Complete;
        }
    }
    attribute.nameEnd = skipName(start, textEnd);
    if (attribute.nameEnd == textEnd) {
        return Result::CutShort;
    }
    if (attribute.nameEnd == start) {
        return *start == '<' ? fail(messages::tagNotClosed, start)
                             : fail(messages::characterInTag, start, characterAt(start, textEnd));
    }
    const Result result = meet(attribute.known, attribute.nameText());
    if (result == Result::Complete) {
        before.followers[markup::ByteName::Attribute] = attribute.known;
    }
    return result;
}

TagText::Result TagText::readAttribute(const char* space, const char* start, const char* textEnd) {
    if (attributes.size() == limits_.attributes()) {
        return failLimit(messages::attributesTooMany, start, limits_.attributes());
    }
    TagAttribute attribute{space, start, nullptr, nullptr, nullptr, nullptr, true, true, false};
    if (const Result result = readAttributeName(attribute, textEnd); result != Result::Complete) {
        return result;
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
        place = findValueStop(place, textEnd);
        if (place == textEnd) {
            return Result::CutShort;
        }
        if (*place == *quote) {
            attribute.valueEnd = place;
            add(attribute);
            return Result::Complete;
        }
        if (*place == '<') {
            return fail(messages::lessInValue, place);
        }
        attribute.isPlainValue = attribute.isPlainValue && *place == '\'';
    }
}

void TagText::add(const TagAttribute& attribute) {
    markup::TagName& name = *attribute.known;
    if (name.lastTag == number_ && again_ == noAttribute) {
        again_ = attributes.size();
    }
    name.lastTag = number_;
    hasPlainValues = hasPlainValues && attribute.isPlainValue;
    hasDeclarations = hasDeclarations || name.isDeclaration;
    hasPlainForm = hasPlainForm && attribute.isPlain();
    if (name.prefixLength != 0 && !name.isDeclaration) {
        prefixed.push_back(&name);
    }
    attributes.push_back(attribute);
}

TagText::Result TagText::readEndTag(const char* less, const char* textEnd,
                                    std::string_view expected) {
    const std::string_view rest(less + 2, textEnd);
    if (!expected.empty() && rest.size() > expected.size() && rest.starts_with(expected) &&
        (rest[expected.size()] == '>' || isSpace(rest[expected.size()]))) {
        name = rest.data();
        nameEnd = name + expected.size();
    } else if (const Result result = readName(less + 2, textEnd); result != Result::Complete) {
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
