#include "nuXmlParser/conforming/tagRules.h"

#include <algorithm>

#include "host/runtime/format.h"
#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/quoteWatch.h"
#include "nuXmlParser/conforming/xmlNames.h"
#include "nuXmlParser/namespaceNames.h"

namespace nu {

/// Reads a tag that begins at the place of the text, as a whole.
template <class Read> void TagRules::complete(Read&& read, std::u16string_view cutShort) {
    TagText::Result result = read();
    if (result == TagText::Result::CutShort) {
        // A tag holds no "<", and a ">" outside of quotes ends it; so at most as much is shown as
        // belongs to it.
        auto endsTag = [quotes = QuoteWatch()](char c) mutable {
            return (quotes.isOutside(c) && c == '>') || c == '<';
        };
        try {
            texts_.findFrom(1, endsTag);
        } catch (const ENuXmlFault&) {
            // Of two faults the first one counts, however much is shown at once.
            if (read() != TagText::Result::Faulty) {
                throw;
            }
        }
        result = read();
    }
    if (result == TagText::Result::CutShort) {
        texts_.fail(cutShort, texts_.end);
    }
    if (result == TagText::Result::Faulty) {
        texts_.fail(tag_.fault.message, tag_.fault.text, tag_.fault.place);
    }
}

void TagRules::forgetNames() {
    elements_.forgetNames();
    memory_.forgetNames();
}

void TagRules::readStartTag() {
    // 1. The tag as it stands.
    if (memory_.names.areTooMany(elements_.depth() * sizeof(markup::TagName))) {
        forgetNames();
    }
    complete([this] { return tag_.readStartTag(texts_.place, texts_.end); },
             messages::tagNotClosed);

    // 2. The values of its attributes, with what is declared for them.
    applyDeclarations();
    checkLimits();
    checkTwice();
    if (hasNamespaces_) {
        applyNamespaces();
    }
}

void TagRules::passStartTag() {
    const std::size_t depth = elements_.depth() + 1;
    if (!tag_.hasPlainForm || !written_.empty() || !defaults_.empty() || texts_.hasBreaks()) {
        writeStartTag();
    }
    if (tag_.isEmptyElement) {
        memory_.bindings.unbind(depth);
        memory_.guess.leave(tag_.known);
    } else {
        elements_.open(*tag_.known, texts_.offsetOf(texts_.place));
        memory_.guess.enter(*tag_.known);
    }
    texts_.place = tag_.end;
}

void TagRules::passEndTag() {
    const std::string_view expected =
        elements_.depth() == 0 ? std::string_view() : elements_.innermost();
    complete([&] { return tag_.readEndTag(texts_.place, texts_.end, expected); },
             messages::endTagNotClosed);
    if (elements_.depth() == texts_.baseDepth()) {
        if (texts_.isInEntity()) {
            texts_.failEntity(messages::entityNotWhole);
        }
        texts_.fail(messages::endTagWithoutStart, texts_.place);
    }
    if (expected != tag_.nameText()) {
        const std::u16string name = shortened(expected);
        texts_.failWith(host::formatMessage(messages::endTagMismatch,
                                            {name, elements_.innermostLine(texts_.source())}),
                        texts_.place);
    }
    closeInnermost();
    if (tag_.endSpace != tag_.end - 1) {
        texts_.keepBreaks(countBreaks({tag_.endSpace, tag_.end - 1}));
        texts_.putBreaks(texts_.place + 1);
        texts_.change(tag_.endSpace, tag_.end - 1, {});
    } else {
        texts_.putBreaks(texts_.place + 1);
    }
    texts_.place = tag_.end;
}

void TagRules::checkLimits() {
    if (elements_.depth() >= limits_.depth()) {
        texts_.fail(messages::elementsTooDeep, std::to_string(limits_.depth()), texts_.place);
    }
    if (tag_.attributes.size() + defaults_.size() > limits_.attributes()) {
        texts_.fail(messages::attributesTooMany, std::to_string(limits_.attributes()),
                    texts_.place);
    }
}

void TagRules::applyDeclarations() {
    defaults_.clear();
    bool hasTokens = false;
    if (auto* const declared = memory_.declared.find(tag_.known->declaredTag)) {
        hasTokens = declared->declaration->hasTokens();
        for (std::size_t index = 0; hasTokens && index < tag_.attributes.size(); ++index) {
            TagAttribute& attribute = tag_.attributes[index];
            attribute.isTokens = declared->declaration->isTokensAt(attribute.nameText(), index);
        }
        declared->findNames([this](std::string_view name) { return memory_.meetDefault(name); });
        declared->forEachMissing(memory_.checks.number(), [this](const auto& missing) {
            entities_.spend(missing.attribute->cost(), texts_.place);
            defaults_.push_back(missing.attribute);
            return true;
        });
    }
    values_.clear();
    written_.clear();
    if (hasTokens || !tag_.hasPlainValues) {
        writeValues();
    }
}

void TagRules::writeValues() {
    for (std::size_t index = 0; index < tag_.attributes.size(); ++index) {
        const TagAttribute& attribute = tag_.attributes[index];
        const std::string_view value = attribute.valueText();
        if (attribute.isPlainValue && (!attribute.isTokens || value.find(' ') == value.npos)) {
            continue;
        }
        const std::size_t start = values_.size();
        entities_.writeValue(value, attribute.isTokens,
                             hasNamespaces_ && attribute.known->isDeclaration, values_);
        if (std::string_view(values_).substr(start) != value) {
            written_.resize(tag_.attributes.size());
            written_[index] = {true, start, values_.size() - start};
        }
    }
}

std::string_view TagRules::valueOf(std::size_t index) const noexcept {
    const Written written = writtenOf(index);
    return written.isChanged ? std::string_view(values_).substr(written.start, written.length)
                             : tag_.attributes[index].valueText();
}

void TagRules::checkTwice() {
    if (const TagAttribute* const again = tag_.again()) {
        texts_.fail(messages::attributeTwice, again->nameText(), again->name);
    }
}

void TagRules::applyNamespaces() {
    // 1. The declarations of the tag count for all names in it.
    if (tag_.hasDeclarations) {
        for (std::size_t index = 0; index < tag_.attributes.size(); ++index) {
            const TagAttribute& attribute = tag_.attributes[index];
            if (attribute.known->isDeclaration) {
                bind(attribute.nameText(), valueOf(index), attribute.name);
                attribute.known->scope = memory_.bindings.scope();
            }
        }
    }
    bool hasPrefixes = tag_.known->prefixLength != 0 || !tag_.prefixed.empty();
    for (const AttributeDefault* declared : defaults_) {
        if (isNamespaceDeclaration(declared->name())) {
            bind(declared->name(), declared->value(), texts_.place);
        } else {
            hasPrefixes = hasPrefixes || declared->name().find(':') != std::string_view::npos;
        }
    }

    // 2. Prefixes.
    if (!hasPrefixes) {
        return;
    }
    checkPrefix(*tag_.known, tag_.name);
    for (const TagAttribute& attribute : tag_.attributes) {
        if (!attribute.known->isDeclaration) {
            checkPrefix(*attribute.known, attribute.name);
        }
    }
    for (const AttributeDefault* declared : defaults_) {
        checkPrefix(declared->name(), true, texts_.place);
    }
    checkExpandedTwice();
}

void TagRules::bind(std::string_view name, std::string_view value, const char* at) {
    const std::string_view prefix = name.size() > 6 ? name.substr(6) : std::string_view();
    if (!isQualifiedName(name)) {
        texts_.fail(messages::misplacedColon, name, at);
    }
    if (prefix == declarationPrefixA) {
        texts_.fail(messages::prefixMustNotBeDeclared, prefix, at);
    }
    if (prefix == xmlPrefixA && value != xmlNamespaceA) {
        texts_.fail(messages::prefixBoundElsewhere, prefix, at);
    }
    if ((prefix != xmlPrefixA && value == xmlNamespaceA) || value == declarationNamespaceA) {
        texts_.fail(messages::namespaceBoundElsewhere, value, at);
    }
    if (!prefix.empty() && value.empty()) {
        texts_.fail(messages::prefixCannotBeUndeclared, prefix, at);
    }
    memory_.bindings.bind(prefix, value, elements_.depth() + 1);
}

void TagRules::checkPrefix(markup::TagName& name, const char* at) {
    if (name.prefixLength != 0 && !memory_.isDeclared(name)) {
        checkPrefix(name.text, false, at);
        name.scope = memory_.bindings.scope();
    }
}

void TagRules::checkPrefix(std::string_view name, bool isAttribute, const char* at) {
    if (name.find(':') == name.npos) {
        return;
    }
    if (!isQualifiedName(name)) {
        texts_.fail(messages::misplacedColon, name, at);
    }
    const std::string_view prefix = prefixOf(name);
    if (isAttribute && prefix == declarationPrefixA) {
        return;
    }
    if (memory_.bindings.find(prefix) == nullptr) {
        texts_.fail(messages::prefixNotDeclared, prefix, at);
    }
}

void TagRules::checkExpandedTwice() {
    // 1. Mostly the local names differ.
    if (defaults_.empty() && tag_.prefixed.size() <= memory_.checks.mostPrefixed &&
        !markup::haveEqualLocalNames<markup::TagName>(tag_.prefixed)) {
        return;
    }
    // 2. By hash, so that many take no more than their time.
    const auto isInNamespace = [](std::string_view name) {
        const std::string_view prefix = prefixOf(name);
        return !prefix.empty() && prefix != declarationPrefixA;
    };
    seenNames_.clear();
    const auto check = [&](std::string_view name, const char* at) {
        if (isInNamespace(name) &&
            !seenNames_.insert({*memory_.bindings.find(prefixOf(name)), localNameOf(name)})
                 .second) {
            texts_.fail(messages::expandedNameTwice, name, at);
        }
    };
    for (const TagAttribute& attribute : tag_.attributes) {
        check(attribute.nameText(), attribute.name);
    }
    for (const AttributeDefault* declared : defaults_) {
        check(declared->name(), texts_.place);
    }
}

void TagRules::writeStartTag() {
    const bool hasValues = !tag_.attributes.empty() || !defaults_.empty();
    const char* const endSpaceEnd = tag_.end - (tag_.isEmptyElement ? 2 : 1);
    breaksForValue_ = 0;

    // 1. White space before the end draws a warning where there are no attributes. Its line breaks
    //    go to the front, so that they are counted before the element is told.
    const bool dropsSpace = tag_.endSpace != endSpaceEnd && tag_.attributes.empty();
    if (dropsSpace && hasValues) {
        breaksForValue_ = countBreaks({tag_.endSpace, endSpaceEnd});
    } else if (dropsSpace) {
        texts_.keepBreaks(countBreaks({tag_.endSpace, endSpaceEnd}));
    }
    texts_.putBreaks(texts_.place + 1);

    // 2. The attributes.
    for (std::size_t index = 0; index < tag_.attributes.size(); ++index) {
        writeAttribute(tag_.attributes[index], writtenOf(index), index == 0);
    }
    if (dropsSpace) {
        texts_.change(tag_.endSpace, endSpaceEnd, {});
    }
    if (!defaults_.empty()) {
        writeDefaults(dropsSpace ? endSpaceEnd : tag_.endSpace);
    }
    if (!dropsSpace && tag_.endSpace != endSpaceEnd) {
        writeSpace(tag_.endSpace, endSpaceEnd);
    }
}

void TagRules::writeAttribute(const TagAttribute& attribute, const Written& written, bool isFirst) {
    if (attribute.isPlain() && !written.isChanged && !texts_.hasBreaks()) {
        return;
    }
    // 1. In front of the first one the reader wants a space.
    if (isFirst && *attribute.space != ' ') {
        const std::int64_t breaks = countBreaks({attribute.space, attribute.name});
        texts_.change(attribute.space, attribute.name, " ");
        texts_.keepBreaks(breaks);
        texts_.putBreaks(attribute.name);
    } else {
        writeSpace(attribute.space, attribute.name);
    }

    // 2. "=" and a double quote, with nothing between.
    const char* const quote = attribute.value - 1;
    std::int64_t breaks = 0;
    if (!attribute.isPlainForm) {
        breaks = countBreaks({attribute.nameEnd, quote});
        texts_.change(attribute.nameEnd, attribute.value, "=\"");
    }

    // 3. The value.
    if (written.isChanged) {
        breaks += countBreaks(attribute.valueText());
        texts_.change(attribute.value, attribute.valueEnd,
                      std::string_view(values_).substr(written.start, written.length));
    }
    if (*attribute.valueEnd != '"') {
        texts_.change(attribute.valueEnd, attribute.valueEnd + 1, "\"");
    }
    texts_.keepBreaks(breaks);
    texts_.putBreaks(attribute.valueEnd + 1);
}

/// White space that the reader steps over. Only the document's own line breaks count as lines, and
/// a CR alone is none to the reader.
void TagRules::writeSpace(const char* from, const char* to) {
    if (to - from == 1 && *from == ' ') {
        return;
    }
    if (texts_.isInEntity()) {
        if (countBreaks({from, to}) > 0) {
            texts_.change(from, to, " ");
        }
        return;
    }
    for (const char* place = from; place != to; ++place) {
        if (*place == '\r' && (place + 1 == to || place[1] != '\n')) {
            texts_.change(place, place + 1, "\n");
        }
    }
}

void TagRules::writeDefaults(const char* at) {
    for (const AttributeDefault* declared : defaults_) {
        texts_.insert(at, declared->text());
    }
    texts_.keepBreaks(breaksForValue_);
    texts_.putBreaks(at);
}

} // namespace nu
