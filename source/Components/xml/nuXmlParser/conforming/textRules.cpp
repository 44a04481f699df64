#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/normaliser.h"
#include "nuXmlParser/conforming/xmlNames.h"
#include "nuXmlParser/markup/textStop.h"

/// \file
/// Character data of the document and of entities.

namespace nu {

/// Text of the document from the place on, up to the next markup or reference.
void Normaliser::passText() {
    if (!isTextSolid_ && passSpaceRun()) {
        return;
    }
    const char* at = texts_.place;
    for (;;) {
        at = findTextStop(at, texts_.end);
        if (at == texts_.end) {
            if (!passTextEnd(at)) {
                return;
            }
            at = texts_.place;
            continue;
        }
        switch (*at) {
        case '<':
            if (at != texts_.place) {
                noteText();
            }
            texts_.place = at;
            return;
        case '&':
            if (at != texts_.place) {
                noteText();
            }
            texts_.place = at;
            passReference();
            return;
        case '\r':
            if (!passCarriageReturn(at)) {
                return;
            }
            break;
        default: // ">"
            if (isTextFirst_ && at == texts_.place) {
                // The reader takes it for the end of the tag before.
                texts_.change(at, at + 1, "&gt;");
                noteText();
                texts_.place = at + 1;
            } else if (at - texts_.place >= 2 && at[-1] == ']' && at[-2] == ']') {
                texts_.fail(messages::cdataEndInText, at - 2);
            }
            ++at;
        }
    }
}

/// The text at hand ends at `end`. What may begin "]]>" waits for what follows; false at the end of
/// the document.
bool Normaliser::passTextEnd(const char* end) {
    const char* held = end;
    while (held != texts_.place && end - held < 2 && held[-1] == ']') {
        --held;
    }
    if (held != texts_.place) {
        noteText();
    }
    texts_.place = held;
    if (texts_.showMore()) {
        return true;
    }
    texts_.place = texts_.end;
    return false;
}

/// CR and CR LF are one LF. False at the end of the document.
bool Normaliser::passCarriageReturn(const char*& at) {
    if (at != texts_.place) {
        noteText();
    }
    texts_.place = at;
    const char* const next = texts_.findFrom(1, [](char) { return true; });
    at = texts_.place + 1;
    texts_.change(texts_.place, at, next != nullptr && *next == '\n' ? "" : "\n");
    isTextFirst_ = false;
    texts_.place = at;
    return next != nullptr;
}

/// Text of an entity. A line break in it is none of the document, so it goes out as a reference, as
/// does a CR, which stood as one in the declaration.
void Normaliser::passTextInEntity() {
    if (!isTextSolid_ && passSpaceRun()) {
        return;
    }
    const char* at = texts_.place;
    for (; at != texts_.end && *at != '<' && *at != '&'; ++at) {
        if (*at == '\r') {
            texts_.change(at, at + 1, "&#13;");
        } else if (*at == '\n' && texts_.keepsLines()) {
            texts_.change(at, at + 1, "&#10;");
        } else if (*at == '>' && isTextFirst_ && at == texts_.place) {
            texts_.change(at, at + 1, "&gt;");
        } else if (*at == '>' && at - texts_.place >= 2 && at[-1] == ']' && at[-2] == ']') {
            texts_.fail(messages::cdataEndInText, at - 2);
        }
    }
    if (at != texts_.place) {
        noteText();
    }
    texts_.place = at;
    if (at != texts_.end && *at == '&') {
        passReference();
    }
}

void Normaliser::passReference() {
    // 1. The whole reference.
    texts_.findFrom(1, [](char c) { return !isByte(c, bcNameChar) && c != '#'; });
    ReferenceText reference;
    switch (reference.read(texts_.place, texts_.end)) {
    case TagText::Result::CutShort:
        texts_.fail(messages::semicolonMissing, {texts_.place + 1, texts_.end}, texts_.end);
    case TagText::Result::Faulty:
        texts_.fail(reference.fault.message, reference.fault.text, reference.fault.place);
    case TagText::Result::Complete:
        break;
    }

    // 2. Characters go out as they are written, but for those that need two units.
    if (reference.kind != ReferenceText::Kind::Entity) {
        if (reference.codePoint >= 0x10000) {
            std::string character;
            appendUtf8(character, reference.codePoint);
            texts_.change(texts_.place, reference.end, character);
        }
        noteText();
        texts_.place = reference.end;
        return;
    }

    // 3. An entity is gone into, or its reference stays.
    Entity* const entity = entities_.resolve(reference.name, texts_.place);
    if (entity == nullptr) {
        if (entities_.writesLeftAsText()) {
            std::string left;
            entities_.writeLeft(reference.name, left);
            texts_.change(texts_.place, reference.end, left);
        }
        noteText();
        texts_.place = reference.end;
        return;
    }
    entities_.spend(entity->text.size() + 1, texts_.place);
    texts_.enter(*entity, reference.end);
}

/// White space with nothing before it since the last markup: a reader by itself would drop it if
/// nothing else follows. True if it was passed.
bool Normaliser::passSpaceRun() {
    if (passesSpace() || !isSpace(*texts_.place)) {
        return false;
    }
    const char* const solid = texts_.findFrom(0, [](char c) { return !isSpace(c); });
    const char* const end = solid == nullptr ? texts_.end : solid;
    std::string_view space(texts_.place, end);
    if (solid == nullptr || *solid == '<' || (*solid == '&' && mayVanish(solid))) {
        space = {texts_.place, space.size()}; // showing the reference may have moved it
        if (isKept(space)) {
            protect(space);
            return true;
        }
    }
    return false;
}

/// Whether nothing may be left of what a reference stands for.
bool Normaliser::mayVanish(const char* mark) {
    const auto offset = static_cast<std::size_t>(mark - texts_.place);
    texts_.findFrom(offset + 1, [](char c) { return !isByte(c, bcNameChar) && c != '#'; });
    ReferenceText reference;
    return reference.read(texts_.place + offset, texts_.end) == TagText::Result::Complete &&
           reference.kind == ReferenceText::Kind::Entity;
}

bool Normaliser::isKept(std::string_view space) const noexcept {
    return options_.whiteSpace == cwAll || space.find_first_of("\r\n") == space.npos;
}

/// Writes one character of white space as a reference, so that the reader sees text. A line break
/// is taken only where there is nothing else.
void Normaliser::protect(std::string_view space) {
    const std::size_t blank = space.find_first_of(" \t");
    const std::size_t place = blank == space.npos ? 0 : blank;
    const char c = space[place];
    for (const char* at = space.data(); at != space.data() + space.size(); ++at) {
        const bool isBreak = *at == '\r' || *at == '\n';
        const bool isPair = *at == '\r' && !texts_.isInEntity() &&
                            at + 1 != space.data() + space.size() && at[1] == '\n';
        if (at == space.data() + place) {
            texts_.change(at, at + (isPair ? 2 : 1),
                          c == ' '                             ? "&#32;"
                          : c == '\t'                          ? "&#9;"
                          : *at == '\r' && texts_.isInEntity() ? "&#13;"
                                                               : "&#10;");
            texts_.keepBreaks(isBreak ? 1 : 0);
            at += isPair ? 1 : 0;
        } else if (*at == '\r') {
            texts_.change(at, at + 1, texts_.isInEntity() ? "&#13;" : isPair ? "" : "\n");
        } else if (*at == '\n' && texts_.isInEntity() && texts_.keepsLines()) {
            texts_.change(at, at + 1, "&#10;");
        }
    }
    noteText();
    texts_.place = space.data() + space.size();
}

} // namespace nu
