#include <algorithm>
#include <vector>

#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/documentTypeRules.h"
#include "nuXmlParser/conforming/xmlNames.h"
#include "nuXmlParser/namespaceNames.h"

/// \file
/// The declarations of an internal subset, XML 1.0 productions 45 to 83.

namespace nu {

void DocumentTypeRules::readEntity(DeclarationText text) {
    // 1. The name; a parameter entity says so before it.
    text.needSpace();
    bool isParameter = false;
    if (text.at() == '%' && text.place + 1 != texts_.end && isSpace(text.place[1])) {
        isParameter = true;
        ++text.place;
        text.needSpace();
    }
    const std::string_view name = needUncolonized(text);
    text.needSpace();

    // 2. Its text, or where that is.
    Entity entity;
    if (text.at() == '"' || text.at() == '\'') {
        readEntityValue(text.needLiteral(), entity.text);
    } else {
        ExternalId::read(text, true);
        entity.kind = Entity::Kind::External;
        const bool hasSpace = text.space();
        if (hasSpace && !isParameter && text.take("NDATA")) {
            text.needSpace();
            static_cast<void>(needUncolonized(text));
            entity.kind = Entity::Kind::Unparsed;
        }
    }
    text.needEnd();

    // 3. The first declaration counts, unless what is not read may hold one before it.
    if (doDeclarationsCount_) {
        (isParameter ? entities_.parameters : entities_.general).declare(name, std::move(entity));
    }
}

/// References to characters are replaced, those to entities stay.
void DocumentTypeRules::readEntityValue(std::string_view literal, std::string& value) {
    const char* place = literal.data();
    const char* const end = place + literal.size();
    while (place != end) {
        const char c = *place;
        if (c == '%') {
            texts_.fail(skipName(place + 1, end) == place + 1 ? messages::declarationPercent
                                                              : messages::parameterEntityInside,
                        place);
        }
        if (c == '\r' && !texts_.isInEntity()) {
            const bool isPair = place + 1 != end && place[1] == '\n';
            value += '\n';
            place += isPair ? 2 : 1;
            continue;
        }
        if (c != '&') {
            value += c;
            ++place;
            continue;
        }
        ReferenceText reference;
        const TagText::Result result = reference.read(place, end);
        if (result == TagText::Result::CutShort) {
            texts_.fail(messages::semicolonMissing, {place + 1, end}, place);
        }
        if (result == TagText::Result::Faulty) {
            texts_.fail(reference.fault.message, reference.fault.text, reference.fault.place);
        }
        if (reference.kind == ReferenceText::Kind::Character) {
            appendUtf8(value, reference.codePoint);
        } else {
            if (hasNamespaces_ && reference.name.find(':') != std::string_view::npos) {
                texts_.fail(messages::colonInName, reference.name, place);
            }
            value.append(place, reference.end);
        }
        place = reference.end;
    }
}

void DocumentTypeRules::readNotation(DeclarationText text) {
    text.needSpace();
    static_cast<void>(needUncolonized(text));
    text.needSpace();
    ExternalId::read(text, false);
    text.needEnd();
}

void DocumentTypeRules::readElement(DeclarationText text) {
    text.needSpace();
    static_cast<void>(needQualified(text));
    text.needSpace();
    if (!text.take("EMPTY") && !text.take("ANY")) {
        readContentModel(text);
    }
    text.needEnd();
}

void DocumentTypeRules::readContentModel(DeclarationText& text) {
    // For each open group what divides its parts, once that is known.
    std::vector<char> groups;
    const auto takeRepetition = [&text] {
        if (text.at() == '?' || text.at() == '*' || text.at() == '+') {
            ++text.place;
        }
    };
    if (text.at() != '(') {
        text.fail();
    }
    do {
        // 1. A group opens, or a name stands here.
        if (text.take("(")) {
            groups.push_back('\0');
            text.space();
            if (groups.size() == 1 && text.take("#PCDATA")) {
                readMixedContent(text);
                return;
            }
            continue;
        }
        static_cast<void>(needQualified(text));
        takeRepetition();
        // 2. Groups close, or the next part follows.
        text.space();
        while (!groups.empty() && text.take(")")) {
            groups.pop_back();
            takeRepetition();
            if (!groups.empty()) {
                text.space();
            }
        }
        if (groups.empty()) {
            return;
        }
        const char divider = text.at();
        if ((divider != ',' && divider != '|') ||
            (groups.back() != '\0' && groups.back() != divider)) {
            text.fail();
        }
        groups.back() = divider;
        ++text.place;
        text.space();
    } while (true);
}

/// Behind "#PCDATA".
void DocumentTypeRules::readMixedContent(DeclarationText& text) {
    bool hasNames = false;
    text.space();
    while (text.take("|")) {
        text.space();
        static_cast<void>(needQualified(text));
        text.space();
        hasNames = true;
    }
    text.need(")");
    if (!text.take("*") && hasNames) {
        text.fail();
    }
}

void DocumentTypeRules::readAttributeList(DeclarationText text) {
    text.needSpace();
    const std::string elementName(needQualified(text));
    for (;;) {
        // 1. The end, or the name of the next attribute.
        const bool hasSpace = text.space();
        if (text.take(">")) {
            return;
        }
        if (!hasSpace) {
            text.needSpace();
        }
        AttributeDeclaration attribute;
        attribute.name = needQualified(text);
        text.needSpace();
        // 2. Its type and default.
        attribute.isTokens = readAttributeType(text);
        text.needSpace();
        readDefault(text, attribute);
        if (doDeclarationsCount_) {
            declarations_[elementName].declare(attribute);
        }
    }
}

/// Whether values of the type are lists of tokens, or one.
bool DocumentTypeRules::readAttributeType(DeclarationText& text) {
    // The longer of two that begin alike comes first.
    static constexpr std::string_view tokenTypes[] = {"IDREFS", "IDREF",    "ID",     "ENTITIES",
                                                      "ENTITY", "NMTOKENS", "NMTOKEN"};
    if (text.take("CDATA")) {
        return false;
    }
    if (text.take("NOTATION")) {
        text.needSpace();
        readEnumeration(text, true);
        return true;
    }
    if (std::any_of(std::begin(tokenTypes), std::end(tokenTypes),
                    [&text](std::string_view type) { return text.take(type); })) {
        return true;
    }
    readEnumeration(text, false);
    return true;
}

void DocumentTypeRules::readEnumeration(DeclarationText& text, bool areNames) {
    text.need("(");
    do {
        text.space();
        static_cast<void>(areNames ? needUncolonized(text) : text.needToken());
        text.space();
    } while (text.take("|"));
    text.need(")");
}

void DocumentTypeRules::readDefault(DeclarationText& text, AttributeDeclaration& attribute) {
    if (text.take("#REQUIRED") || text.take("#IMPLIED")) {
        return;
    }
    if (text.take("#FIXED")) {
        text.needSpace();
    }
    attribute.hasDefault = true;
    const bool isUri = hasNamespaces_ && isNamespaceDeclaration(attribute.name);
    entities_.writeValue(text.needLiteral(), attribute.isTokens, isUri, attribute.value);
}

} // namespace nu
