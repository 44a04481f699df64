#include "nuXmlParser/conforming/tagRules.h"

#include <algorithm>

#include "host/runtime/format.h"
#include "nuXmlParser/conforming/conformingMessages.h"
#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

namespace {

/// Up to so many attributes are compared with each other.
constexpr std::size_t fewAttributes = 16;

bool isDeclaration(std::string_view name) noexcept {
    return name.starts_with("xmlns") && (name.size() == 5 || name[5] == ':');
}

} // namespace

/// Reads a tag that begins at the place of the text, as a whole.
template <class Read> void TagRules::complete(Read&& read, std::u16string_view cutShort) {
    TagText::Result result = read();
    if (result == TagText::Result::CutShort) {
        // A tag holds no "<", and a ">" outside of quotes ends it; so at most as much is shown as
        // belongs to it.
        char quote = 0;
        const auto endsTag = [&quote](char c) {
            if (quote != 0) {
                quote = c == quote ? '\0' : quote;
            } else if (c == '"' || c == '\'') {
                quote = c;
            }
            return c == '<' || (c == '>' && quote == 0);
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

void TagRules::readStartTag() {
    // 1. The tag as it stands.
    complete([this] { return tag_.readStartTag(texts_.place, texts_.end); },
             messages::tagNotClosed);
    ++tagNumber_;

    // 2. The values of its attributes, with what is declared for them.
    applyDeclarations();
    checkTwice();
    if (hasNamespaces_) {
        applyNamespaces();
    }
}

void TagRules::passStartTag() {
    const std::size_t depth = elements_.depth() + 1;
    writeStartTag();
    if (tag_.isEmptyElement) {
        bindings_.unbind(depth);
    } else {
        elements_.open(tag_.nameText(), texts_.offsetOf(texts_.place));
    }
    texts_.place = tag_.end;
}

void TagRules::passEndTag() {
    complete([this] { return tag_.readEndTag(texts_.place, texts_.end); },
             messages::endTagNotClosed);
    if (elements_.depth() == texts_.baseDepth()) {
        if (texts_.isInEntity()) {
            texts_.failEntity(messages::entityNotWhole);
        }
        texts_.fail(messages::endTagWithoutStart, texts_.place);
    }
    if (elements_.innermost() != tag_.nameText()) {
        const std::u16string name = shortened(elements_.innermost());
        texts_.failWith(host::formatMessage(messages::endTagMismatch,
                                            {name, elements_.innermostLine(texts_.source())}),
                        texts_.place);
    }
    bindings_.unbind(elements_.depth());
    elements_.close();
    if (tag_.endSpace != tag_.end - 1) {
        texts_.keepBreaks(countBreaks({tag_.endSpace, tag_.end - 1}));
        texts_.putBreaks(texts_.place + 1);
        texts_.change(tag_.endSpace, tag_.end - 1, {});
    } else {
        texts_.putBreaks(texts_.place + 1);
    }
    texts_.place = tag_.end;
}

void TagRules::applyDeclarations() {
    ElementDeclaration* declaration = nullptr;
    defaults_.clear();
    if (!declarations.empty()) {
        const auto found = declarations.find(tag_.nameText());
        declaration = found == declarations.end() ? nullptr : &found->second;
    }
    if (declaration != nullptr) {
        for (const TagAttribute& attribute : tag_.attributes) {
            if (const auto* declared = declaration->find(attribute.nameText())) {
                declaration->noteSpecified(*declared, tagNumber_);
            }
        }
        declaration->forEachMissing(tagNumber_, [this](const AttributeDeclaration& missing) {
            entities_.spend(missing.name.size() + missing.value.size(), texts_.place);
            defaults_.push_back(&missing);
        });
    }
    writeValues(declaration);
}

void TagRules::writeValues(const ElementDeclaration* declaration) {
    values_.clear();
    written_.assign(tag_.attributes.size(), {});
    for (std::size_t index = 0; index < tag_.attributes.size(); ++index) {
        const TagAttribute& attribute = tag_.attributes[index];
        const AttributeDeclaration* declared =
            declaration == nullptr ? nullptr : declaration->find(attribute.nameText());
        const bool isTokens = declared != nullptr && declared->isTokens;
        if (attribute.isPlainValue && !isTokens) {
            continue;
        }
        Written& written = written_[index];
        written.start = values_.size();
        entities_.writeValue(attribute.valueText(), isTokens,
                             hasNamespaces_ && isDeclaration(attribute.nameText()), values_);
        written.length = values_.size() - written.start;
        written.isChanged =
            std::string_view(values_).substr(written.start) != attribute.valueText();
    }
}

std::string_view TagRules::valueOf(std::size_t index) const noexcept {
    const Written& written = written_[index];
    return written.isChanged ? std::string_view(values_).substr(written.start, written.length)
                             : tag_.attributes[index].valueText();
}

void TagRules::checkTwice() {
    const std::vector<TagAttribute>& attributes = tag_.attributes;
    if (attributes.size() <= fewAttributes) {
        for (std::size_t index = 1; index < attributes.size(); ++index) {
            const std::string_view name = attributes[index].nameText();
            for (std::size_t before = 0; before < index; ++before) {
                if (attributes[before].nameText() == name) {
                    texts_.fail(messages::attributeTwice, name, attributes[index].name);
                }
            }
        }
        return;
    }
    seenNames_.clear();
    for (const TagAttribute& attribute : attributes) {
        if (!seenNames_.insert(attribute.nameText()).second) {
            texts_.fail(messages::attributeTwice, attribute.nameText(), attribute.name);
        }
    }
}

void TagRules::applyNamespaces() {
    // 1. The declarations of the tag count for all names in it.
    bool hasPrefix = false;
    for (std::size_t index = 0; index < tag_.attributes.size(); ++index) {
        const TagAttribute& attribute = tag_.attributes[index];
        hasPrefix = hasPrefix || attribute.nameText().find(':') != std::string_view::npos;
        if (isDeclaration(attribute.nameText())) {
            bind(attribute.nameText(), valueOf(index), attribute.name);
        }
    }
    for (const AttributeDeclaration* declared : defaults_) {
        hasPrefix = hasPrefix || declared->name.find(':') != std::string::npos;
        if (isDeclaration(declared->name)) {
            bind(declared->name, declared->value, texts_.place);
        }
    }

    // 2. Prefixes.
    checkPrefix(tag_.nameText(), false, tag_.name);
    if (!hasPrefix) {
        return;
    }
    for (const TagAttribute& attribute : tag_.attributes) {
        checkPrefix(attribute.nameText(), true, attribute.name);
    }
    for (const AttributeDeclaration* declared : defaults_) {
        checkPrefix(declared->name, true, texts_.place);
    }
    checkExpandedTwice();
}

void TagRules::bind(std::string_view name, std::string_view value, const char* at) {
    const std::string_view prefix = name.size() > 6 ? name.substr(6) : std::string_view();
    if (!isQualifiedName(name)) {
        texts_.fail(messages::misplacedColon, name, at);
    }
    if (prefix == "xmlns") {
        texts_.fail(messages::prefixMustNotBeDeclared, prefix, at);
    }
    if (prefix == "xml" && value != NamespaceBindings::xmlUri) {
        texts_.fail(messages::prefixBoundElsewhere, prefix, at);
    }
    if ((prefix != "xml" && value == NamespaceBindings::xmlUri) ||
        value == NamespaceBindings::xmlnsUri) {
        texts_.fail(messages::namespaceBoundElsewhere, value, at);
    }
    if (!prefix.empty() && value.empty()) {
        texts_.fail(messages::prefixCannotBeUndeclared, prefix, at);
    }
    bindings_.bind(prefix, value, elements_.depth() + 1);
}

void TagRules::checkPrefix(std::string_view name, bool isAttribute, const char* at) {
    if (name.find(':') == name.npos) {
        return;
    }
    if (!isQualifiedName(name)) {
        texts_.fail(messages::misplacedColon, name, at);
    }
    const std::string_view prefix = prefixOf(name);
    if (isAttribute && prefix == "xmlns") {
        return;
    }
    if (bindings_.find(prefix) == nullptr) {
        texts_.fail(messages::prefixNotDeclared, prefix, at);
    }
}

void TagRules::checkExpandedTwice() {
    struct Hash {
        std::size_t operator()(const ExpandedName& name) const noexcept {
            const std::size_t uri = TextHash()(name.uri);
            return mixHash(hashKeys(), uri ^ TextHash()(name.localName) << 1);
        }
    };
    std::unordered_set<ExpandedName, Hash> seen;
    const auto check = [&](std::string_view name, const char* at) {
        const std::string_view prefix = prefixOf(name);
        if (prefix.empty() || prefix == "xmlns") {
            return;
        }
        if (!seen.insert({*bindings_.find(prefix), localNameOf(name)}).second) {
            texts_.fail(messages::expandedNameTwice, name, at);
        }
    };
    for (const TagAttribute& attribute : tag_.attributes) {
        check(attribute.nameText(), attribute.name);
    }
    for (const AttributeDeclaration* declared : defaults_) {
        check(declared->name, texts_.place);
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
        writeAttribute(tag_.attributes[index], written_[index], index == 0);
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
    std::string text;
    for (const AttributeDeclaration* declared : defaults_) {
        text.append(" ").append(declared->name).append("=\"").append(declared->value).append("\"");
    }
    texts_.insert(at, text);
    texts_.keepBreaks(breaksForValue_);
    texts_.putBreaks(at);
}

} // namespace nu
