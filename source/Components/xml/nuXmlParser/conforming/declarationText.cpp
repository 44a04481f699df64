#include "nuXmlParser/conforming/declarationText.h"

#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

namespace {

constexpr std::string_view publicIdCharacters = " \r\n-'()+,./:=?;!*#@$_%"
                                                "abcdefghijklmnopqrstuvwxyz"
                                                "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

} // namespace

void DeclarationText::fail() const {
    refuseParameterEntity();
    if (place == end_) {
        texts_.fail(messages::declarationNotClosed, place);
    }
    texts_.fail(messages::malformedDeclaration, what_, place);
}

void DeclarationText::fail(std::u16string_view message, std::string_view text) const {
    texts_.fail(message, text, place);
}

/// Where something else was expected: a reference that would be replaced elsewhere.
void DeclarationText::refuseParameterEntity() const {
    if (at() == '%' && skipName(place + 1, end_) != place + 1) {
        texts_.fail(messages::parameterEntityInside, place);
    }
}

bool DeclarationText::space() noexcept {
    const char* const start = place;
    place = skipSpace(place, end_);
    return place != start;
}

void DeclarationText::needSpace() {
    if (!space()) {
        refuseParameterEntity();
        texts_.fail(messages::spaceMissingIn, what_, place);
    }
}

bool DeclarationText::take(std::string_view text) noexcept {
    const bool isHere = isAt(text);
    place += isHere ? text.size() : 0;
    return isHere;
}

void DeclarationText::need(std::string_view text) {
    if (!take(text)) {
        fail();
    }
}

std::string_view DeclarationText::needName() {
    const char* const start = place;
    place = skipName(place, end_);
    if (place == start) {
        refuseParameterEntity();
        texts_.fail(messages::notAName, what_, place);
    }
    return {start, place};
}

std::string_view DeclarationText::needToken() {
    const char* const start = place;
    place = skipNameToken(place, end_);
    if (place == start) {
        fail();
    }
    return {start, place};
}

std::string_view DeclarationText::needLiteral() {
    const char quote = at();
    if (quote != '"' && quote != '\'') {
        fail();
    }
    const char* const start = ++place;
    while (place != end_ && *place != quote) {
        ++place;
    }
    if (place == end_) {
        texts_.fail(messages::literalNotClosed, start - 1);
    }
    return {start, place++};
}

std::string_view DeclarationText::needPublicId() {
    const std::string_view literal = needLiteral();
    const std::size_t wrong = literal.find_first_not_of(publicIdCharacters);
    if (wrong != literal.npos) {
        texts_.fail(messages::publicIdCharacter, literal.data() + wrong);
    }
    return literal;
}

void DeclarationText::needEnd() {
    space();
    need(">");
}

ExternalId ExternalId::read(DeclarationText& text, bool isSystemNeeded) {
    ExternalId id;
    id.start = text.place;
    if (text.take("PUBLIC")) {
        text.needSpace();
        id.publicId = text.needPublicId();
        const bool hasSpace = text.space();
        if (!isSystemNeeded && (text.at() == '>' || text.at() == '\0')) {
            return id;
        }
        if (!hasSpace) {
            text.needSpace();
        }
    } else {
        text.need("SYSTEM");
        text.needSpace();
    }
    id.systemId = text.needLiteral();
    return id;
}

} // namespace nu
