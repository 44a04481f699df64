#include "nuXmlParser/conforming/documentTypeRules.h"

#include <algorithm>

#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/quoteWatch.h"
#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

namespace {

/// Whether the reader, which looks for the next "<" and for a space behind the name, reads over an
/// identifier.
bool isHarmless(std::string_view literal) noexcept {
    return literal.find_first_of("<\t\r\n") == literal.npos;
}

} // namespace

void DocumentTypeRules::pass() {
    // 1. The head, which the reader reads.
    texts_.putBreaks(texts_.place + 1);
    std::int64_t breaks = passHead(dropped_.start);

    // 2. The internal subset, which goes.
    if (*texts_.place == '[') {
        form_.hasInternalSubset = true;
        texts_.beginDropping(dropped_);
        ++texts_.place;
        passSubset();
        while (passSpace()) {
        }
        texts_.endDropping();
        breaks += dropped_.lineBreaks();
    }

    // 3. The end.
    if (texts_.place == texts_.end) {
        texts_.fail(messages::documentTypeNotClosed, texts_.end);
    }
    if (*texts_.place != '>') {
        texts_.fail(messages::malformedDeclaration, "a document type", texts_.place);
    }
    ++texts_.place;
    texts_.keepBreaks(breaks);
    texts_.putBreaks(texts_.place);
    form_.documentType = std::move(dropped_.start) + ">";
}

/// "<!DOCTYPE", the name and the external identifier, up to "[" or ">". Gives the
/// line breaks that had to go.
std::int64_t DocumentTypeRules::passHead(std::string& asWritten) {
    // 1. All of it at hand.
    const char* const stop = texts_.findFrom(2, [quotes = QuoteWatch()](char c) mutable {
        return quotes.isOutside(c) && (c == '[' || c == '>' || c == '<');
    });
    if (stop == nullptr) {
        texts_.fail(messages::documentTypeNotClosed, texts_.end);
    }

    // 2. Its parts.
    DeclarationText text(texts_, texts_.place, stop, "a document type");
    text.need("<!DOCTYPE");
    text.needSpace();
    const std::string_view name = needQualified(text);
    const char* const nameEnd = text.place;
    if (!limits_.allowsName(name)) {
        texts_.fail(messages::nameBeyondLimit, std::to_string(limits_.nameLength()), name.data());
    }
    ExternalId id;
    if (text.space() && text.place != stop) {
        id = ExternalId::read(text, true);
        entities_.hasUnread = true;
    }
    const char* const idEnd = text.place;
    text.space();
    if (text.place != stop || *stop == '<') {
        text.fail();
    }

    // 3. The reader wants a space behind the name.
    const char* const idStart = id.start == nullptr ? stop : id.start;
    const bool isPlain =
        idStart != nameEnd && *nameEnd == ' ' && countBreaks({texts_.place, stop}) == 0 &&
        (id.start == nullptr || (isHarmless(id.publicId) && isHarmless(id.systemId)));
    asWritten.assign(texts_.place, stop);
    std::int64_t breaks = 0;
    if (!isPlain) {
        std::string written = "!DOCTYPE "; // line breaks may stand behind the "<"
        written.append(name).append(" ");
        if (id.start != nullptr && isHarmless(id.publicId) && isHarmless(id.systemId)) {
            for (const char* place = id.start; place != idEnd; ++place) {
                written += isSpace(*place) ? ' ' : *place;
            }
        }
        breaks = countBreaks(asWritten);
        texts_.change(texts_.place + 1, stop, written);
    }
    texts_.place = stop;
    return breaks;
}

void DocumentTypeRules::passSubset() {
    for (;;) {
        if (passSpace()) {
            continue;
        }
        if (texts_.place == texts_.end) {
            if (!texts_.isInEntity()) {
                texts_.fail(messages::subsetNotClosed, texts_.end);
            }
            texts_.leave();
        } else if (*texts_.place == ']' && !texts_.isInEntity()) {
            ++texts_.place;
            return;
        } else if (*texts_.place == '%') {
            passReference();
        } else if (*texts_.place == '<') {
            passMarkup();
        } else {
            texts_.fail(messages::declarationExpected, texts_.place);
        }
    }
}

/// Passes white space, or shows what follows the text at hand; whether there is more to look at.
bool DocumentTypeRules::passSpace() {
    if (texts_.place == texts_.end) {
        return texts_.showMore();
    }
    const char* const solid = skipSpace(texts_.place, texts_.end);
    const bool isAny = solid != texts_.place;
    texts_.place = solid;
    return isAny;
}

/// A reference to a parameter entity between declarations.
void DocumentTypeRules::passReference() {
    texts_.findFrom(1, [](char c) { return !isByte(c, bcNameChar); });
    ReferenceText reference;
    if (reference.read(texts_.place, texts_.end) != TagText::Result::Complete) {
        texts_.fail(messages::declarationExpected, texts_.place);
    }
    if (hasNamespaces_ && reference.name.find(':') != reference.name.npos) {
        texts_.fail(messages::colonInName, reference.name, texts_.place);
    }
    entities_.hasUnread = true;
    Entity* const entity = entities_.parameters.find(reference.name);
    if (entity == nullptr && entities_.isStandalone) {
        texts_.fail(messages::entityNotDeclared, reference.name, texts_.place);
    }
    if (entity != nullptr && entity->isOpen) {
        texts_.fail(messages::entityRefersToItself, reference.name, texts_.place);
    }
    if (entity != nullptr && entity->kind == Entity::Kind::Internal) {
        entities_.spend(entity->text.size(), texts_.place);
        texts_.enter(*entity, reference.end);
        return;
    }
    // What it stands for may declare what is declared again behind it.
    doDeclarationsCount_ = doDeclarationsCount_ && entities_.isStandalone;
    texts_.place = reference.end;
}

void DocumentTypeRules::passMarkup() {
    if (texts_.startsWith("<!--")) {
        passComment();
        return;
    }
    if (texts_.startsWith("<?")) {
        passInstruction();
        return;
    }
    struct Declaration {
        std::string_view keyword;
        std::string_view what;
        void (DocumentTypeRules::*read)(DeclarationText text);
    };
    static constexpr Declaration declarations[] = {
        {"<!ENTITY", "an entity", &DocumentTypeRules::readEntity},
        {"<!ELEMENT", "an element", &DocumentTypeRules::readElement},
        {"<!ATTLIST", "attributes", &DocumentTypeRules::readAttributeList},
        {"<!NOTATION", "a notation", &DocumentTypeRules::readNotation},
    };
    for (const Declaration& each : declarations) {
        if (texts_.startsWith(each.keyword)) {
            const char* const end = completeDeclaration();
            DeclarationText text(texts_, texts_.place + each.keyword.size(), end, each.what);
            (this->*each.read)(text);
            texts_.place = end;
            return;
        }
    }
    texts_.fail(messages::declarationExpected, texts_.place);
}

/// Shows a declaration as a whole; gives its end, behind the ">".
const char* DocumentTypeRules::completeDeclaration() {
    const char* const stop = texts_.findFrom(2, [quotes = QuoteWatch()](char c) mutable {
        return quotes.isOutside(c) && (c == '>' || c == '<');
    });
    if (stop == nullptr) {
        texts_.fail(messages::declarationNotClosed, texts_.end);
    }
    return *stop == '>' ? stop + 1 : stop;
}

void DocumentTypeRules::passComment() {
    texts_.place += 4;
    markup_.beginComment();
    while (markup_.inside() != MarkupRules::Inside::Nothing) {
        markup_.passPiece();
    }
}

void DocumentTypeRules::passInstruction() {
    markup_.beginInstruction();
    while (markup_.inside() != MarkupRules::Inside::Nothing) {
        markup_.passPiece();
    }
}

std::string_view DocumentTypeRules::needUncolonized(DeclarationText& text) {
    const std::string_view name = text.needName();
    if (hasNamespaces_ && name.find(':') != name.npos) {
        text.fail(messages::colonInName, name);
    }
    return name;
}

std::string_view DocumentTypeRules::needQualified(DeclarationText& text) {
    const std::string_view name = text.needName();
    if (hasNamespaces_ && !isQualifiedName(name)) {
        text.fail(messages::misplacedColon, name);
    }
    return name;
}

} // namespace nu
