#include "nuXmlParser/conforming/entityRules.h"

#include <algorithm>
#include <array>

#include "host/runtime/format.h"
#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/htmlEntities.h"

namespace nu {

namespace {

char16_t findHtmlEntity(std::string_view name) {
    char16_t units[longestEntityName];
    if (name.size() > longestEntityName) {
        return 0;
    }
    std::transform(name.begin(), name.end(), units,
                   [](char c) { return static_cast<unsigned char>(c); });
    return findEntity({units, name.size()});
}

/// What a value does not take over as it is.
constexpr std::array<bool, 256> changedInValues = [] {
    std::array<bool, 256> changed{};
    for (const char c : {'"', '<', '&', '\t', '\n', '\r'}) {
        changed[static_cast<unsigned char>(c)] = true;
    }
    return changed;
}();

} // namespace

void appendUtf8(std::string& text, char32_t codePoint) {
    const auto byte = [&text](char32_t bits) { text += static_cast<char>(bits); };
    if (codePoint < 0x80) {
        byte(codePoint);
        return;
    }
    if (codePoint < 0x800) {
        byte(0xC0 | codePoint >> 6);
    } else if (codePoint < 0x10000) {
        byte(0xE0 | codePoint >> 12);
        byte(0x80 | (codePoint >> 6 & 0x3F));
    } else {
        byte(0xF0 | codePoint >> 18);
        byte(0x80 | (codePoint >> 12 & 0x3F));
        byte(0x80 | (codePoint >> 6 & 0x3F));
    }
    byte(0x80 | (codePoint & 0x3F));
}

Entity* EntityRules::resolve(std::string_view name, const char* at) {
    Entity* const entity = general.find(name);
    if (entity == nullptr) {
        if (!hasUnread || isStandalone) {
            texts_.fail(messages::entityNotDeclared, name, at);
        }
        if (hasNamespaces_ && name.find(':') != name.npos) {
            texts_.fail(messages::colonInName, name, at);
        }
        return nullptr;
    }
    if (entity->kind == Entity::Kind::Unparsed) {
        texts_.fail(messages::entityUnparsed, name, at);
    }
    if (entity->isOpen) {
        texts_.fail(messages::entityRefersToItself, name, at);
    }
    return entity->kind == Entity::Kind::Internal ? entity : nullptr;
}

void EntityRules::writeLeft(std::string_view name, std::string& text) const {
    // The reader knows the names of HTML, nobody else does.
    const char16_t character = writesLeftAsText_ ? findHtmlEntity(name) : u'\0';
    if (character != 0) {
        appendUtf8(text, character);
    } else {
        text.append(writesLeftAsText_ ? "&amp;" : "&").append(name).append(";");
    }
}

bool EntityRules::mayBeSpent(std::size_t bytes, const char* at) const noexcept {
    const std::int64_t source = texts_.offsetOf(at);
    const std::int64_t all = source + spent_ + static_cast<std::int64_t>(bytes);
    return all < limit_.from || all <= limit_.factor * source;
}

void EntityRules::spend(std::size_t bytes, const char* at) {
    if (!mayBeSpent(bytes, at)) {
        texts_.failWith(host::formatMessage(messages::entitiesTooLarge, {limit_.factor}), at);
    }
    spent_ += static_cast<std::int64_t>(bytes);
}

void EntityRules::writeValue(std::string_view raw, bool isTokens, bool isUri, std::string& value) {
    const std::size_t start = value.size();
    const char* place = raw.data();
    const char* end = place + raw.size();
    const char* outermost = place; // the reference that led out of the value itself
    levels_.clear();
    for (;;) {
        // 1. Text up to the next reference, or back to where the text was referred to.
        writeRun(place, end, value);
        if (place == end) {
            if (levels_.empty()) {
                break;
            }
            levels_.back().entity->isOpen = false;
            place = levels_.back().place;
            end = levels_.back().end;
            levels_.pop_back();
            continue;
        }
        const char* const at = levels_.empty() ? place : outermost;
        if (*place == '<') {
            failInValue(messages::lessInValue, {}, at);
        }
        // 2. The reference.
        ReferenceText reference;
        switch (reference.read(place, end)) {
        case TagText::Result::CutShort:
            failInValue(messages::semicolonMissing, {place, end}, at);
        case TagText::Result::Faulty:
            failInValue(reference.fault.message, reference.fault.text,
                        levels_.empty() ? reference.fault.place : at);
        case TagText::Result::Complete:
            break;
        }
        if (reference.kind != ReferenceText::Kind::Entity) {
            writeReference(reference, place, isUri, value);
            place = reference.end;
            continue;
        }
        // 3. An entity is gone into.
        Entity* const entity = resolve(reference.name, at);
        if (entity == nullptr) {
            if (general.find(reference.name) != nullptr) {
                failInValue(messages::entityExternalInValue, reference.name, at);
            }
            writeLeft(reference.name, value);
            place = reference.end;
            continue;
        }
        outermost = at;
        spend(entity->text.size(), at);
        entity->isOpen = true;
        levels_.push_back({entity, reference.end, end});
        place = entity->text.data();
        end = place + entity->text.size();
    }
    if (isTokens) {
        collapseSpaces(value, start);
    }
}

/// Writes what stands before the next "&" or "<" of a value.
void EntityRules::writeRun(const char*& place, const char* end, std::string& value) const {
    while (place != end) {
        const char* const start = place;
        while (place != end && !changedInValues[static_cast<unsigned char>(*place)]) {
            ++place;
        }
        value.append(start, place);
        if (place == end || *place == '&' || *place == '<') {
            return;
        }
        if (*place == '"') {
            value += "&quot;";
        } else {
            // Of the document's text CR LF is one line break; a CR in an entity stands for itself.
            const bool isPair = *place == '\r' && levels_.empty() && !texts_.isInEntity() &&
                                place + 1 != end && place[1] == '\n';
            place += isPair ? 1 : 0;
            value += ' ';
        }
        ++place;
    }
}

void EntityRules::writeReference(const ReferenceText& reference, const char* mark, bool isUri,
                                 std::string& value) {
    const char32_t codePoint = reference.codePoint;
    const bool isMarkup = codePoint == '&' || codePoint == '<' || codePoint == '"';
    if (codePoint == ' ' || codePoint >= 0x10000 || (isUri && codePoint > ' ' && !isMarkup)) {
        appendUtf8(value, codePoint);
    } else if (isUri && isMarkup) {
        value += codePoint == '&' ? "&amp;" : codePoint == '<' ? "&lt;" : "&quot;";
    } else {
        value.append(mark, reference.end);
    }
}

void EntityRules::failInValue(std::u16string_view message, std::string_view text, const char* at) {
    const std::u16string shown = shortened(text);
    std::u16string told = host::formatMessage(message, {shown});
    if (!levels_.empty()) {
        const std::u16string name = shortened(levels_.back().entity->name);
        told = host::formatMessage(messages::insideEntity, {told, name});
    }
    texts_.failWith(told, at);
}

void collapseSpaces(std::string& text, std::size_t start) {
    std::size_t written = start;
    bool isSpaceDue = false;
    for (std::size_t place = start; place < text.size(); ++place) {
        if (text[place] == ' ') {
            isSpaceDue = written > start;
            continue;
        }
        if (isSpaceDue) {
            text[written++] = ' ';
            isSpaceDue = false;
        }
        text[written++] = text[place];
    }
    text.resize(written);
}

} // namespace nu
