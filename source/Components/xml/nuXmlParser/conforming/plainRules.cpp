#include "nuXmlParser/conforming/plainRules.h"

#include <algorithm>

#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

bool PlainRules::pass() {
    const char* const begin = shared_.texts.place;
    // What is passed by is counted by whoever reads it, or by nobody.
    PassedBytes passed{nullptr, begin};
    markup::PlainContent content(*this);
    if (begin == shared_.texts.end) {
        return false;
    }
    if (*begin == '<') {
        content.read({begin, shared_.texts.end}, passed);
    } else {
        content.readBehindTag({begin, shared_.texts.end}, passed);
    }
    if (passed.end == begin) {
        return false;
    }
    shared_.texts.place = passed.end + (*passed.end == '>' ? 1 : 0);
    return true;
}

// Start tags

/// Only names that were looked at before are known.
PlainRules::Name* PlainRules::element(std::string_view bytes) noexcept {
    Name* const name = shared_.memory.names.findAt(bytes.data(), bytes.size());
    if (name != nullptr) {
        shared_.memory.guess.follow(*name);
    }
    return name;
}

PlainRules::Name* PlainRules::attribute(Name& before, std::string_view bytes) noexcept {
    Name* const name = shared_.memory.names.findAt(bytes.data(), bytes.size());
    if (name != nullptr) {
        before.followers[markup::ByteName::Attribute] = name;
    }
    return name;
}

[[gnu::always_inline]] inline bool PlainRules::startTag(Name& name, const char* less) noexcept {
    element_ = &name;
    less_ = less;
    hasBindings_ = false;
    shared_.memory.checks.begin();
    declared_ = nullptr;
    hasTokens_ = false;
    if (name.declaredTag != 0) [[unlikely]] {
        declared_ = shared_.memory.declared.find(name.declaredTag);
        hasTokens_ = declared_->declaration->hasTokens();
    }
    return !shared_.watch.isTaken();
}

[[gnu::always_inline]] inline bool PlainRules::addAttribute(Name& name, std::string_view value,
                                                            const markup::PassedKinds& /*kinds*/) {
    if (!shared_.memory.checks.add(name)) [[unlikely]] {
        return false;
    }
    if (hasTokens_ && declared_->changes(name, value)) [[unlikely]] {
        return false;
    }
    if (name.isDeclaration) [[unlikely]] {
        return bind(name, value);
    }
    return name.prefixLength == 0 || shared_.memory.checks.addPrefixed(name);
}

/// Only what was bound before, perhaps to another URI, is surely no reserved name.
bool PlainRules::bind(const Name& name, std::string_view uri) {
    if (!hasNamespaces_) {
        return true;
    }
    const std::string_view prefix =
        name.text.substr(name.prefixLength != 0 ? name.prefixLength : name.text.size());
    if (name.scope == 0 || uri.find('&') != uri.npos || !mayBind(prefix, uri)) {
        return false;
    }
    shared_.memory.bindings.bind(prefix, uri, shared_.elements.depth() + 1);
    hasBindings_ = true;
    return true;
}

void PlainRules::abandonStartTag() noexcept {
    if (hasBindings_) {
        shared_.memory.bindings.unbind(shared_.elements.depth() + 1);
    }
}

[[gnu::always_inline]] inline bool PlainRules::endStartTag(bool isEmptyElement, const char* end) {
    // The declarations of the tag count for all names in it.
    const auto isDeclared = [this](Name& name) { return shared_.memory.isDeclared(name); };
    defaults_.clear();
    if (!shared_.limits.allowsKnownTag(shared_.elements.depth(), end - less_) ||
        (declared_ != nullptr && !findDefaults(end - less_)) ||
        (hasNamespaces_ && !shared_.memory.checks.arePrefixesPlain(*element_, isDeclared)) ||
        (shared_.watch.isSought(element_->text, less_) && !use())) [[unlikely]] {
        abandonStartTag();
        return false;
    }
    if (!defaults_.empty()) [[unlikely]] {
        // Not before: a tag that is refused is counted by the rules that go step by step.
        shared_.entities.spend(defaultsCost_, less_);
        writeDefaults(end);
    }
    if (isEmptyElement) {
        abandonStartTag(); // of its declarations nothing is left
        shared_.memory.guess.leave(element_);
        shared_.watch.endElement(end + 2);
    } else {
        shared_.elements.open(*element_, shared_.texts.offsetOf(less_));
        shared_.memory.guess.enter(*element_);
    }
    return true;
}

/// Whether what the tag lacks can be added to it. Declarations of namespaces are better looked at,
/// and where much waits to go out that comes first.
bool PlainRules::findDefaults(std::ptrdiff_t tagLength) {
    defaultsCost_ = 0;
    std::ptrdiff_t written = 0;
    const auto find = [&](const DeclaredTag<Name>::Default& missing) {
        defaults_.push_back(missing.attribute);
        defaultsCost_ += missing.attribute->cost();
        written += static_cast<std::ptrdiff_t>(missing.attribute->text().size());
        Name& name = *missing.name;
        return !name.isDeclaration &&
               (name.prefixLength == 0 || shared_.memory.checks.addPrefixed(name));
    };
    return declared_->hasNames && declared_->forEachMissing(shared_.memory.checks.number(), find) &&
           (defaults_.empty() || (shared_.output.text().size() < mostOutput &&
                                  shared_.limits.allowsTag(tagLength + written) &&
                                  shared_.entities.mayBeSpent(defaultsCost_, less_)));
}

/// Where the tag has white space before its end they stand before it.
void PlainRules::writeDefaults(const char* end) {
    while (isSpace(end[-1])) {
        --end;
    }
    for (const AttributeDefault* attribute : defaults_) {
        shared_.texts.insert(end, attribute->text());
    }
}

bool PlainRules::use() {
    shared_.texts.place = less_;
    shared_.watch.use(element_->text);
    return !shared_.watch.hasStopped();
}

// Ends and texts

/// The end of a root is for the rules that go step by step.
[[gnu::always_inline]] inline bool PlainRules::endElement(bool /*isInnermost*/, const char* end) {
    if (shared_.elements.depth() <= 1 || shared_.watch.isTaken()) [[unlikely]] {
        return false;
    }
    shared_.memory.guess.leave(shared_.elements.innermostKnown());
    shared_.memory.bindings.unbind(shared_.elements.depth());
    shared_.elements.close();
    shared_.watch.endElement(end + 1);
    return true;
}

/// A reader that is not told would drop white space alone.
[[gnu::always_inline]] inline bool
PlainRules::addText(std::string_view text, const markup::PassedKinds& /*kinds*/) const noexcept {
    return (passesSpace_ || !isSpace(text.front()) ||
            !std::all_of(text.begin(), text.end(), isSpace)) &&
           !shared_.watch.isTaken();
}

} // namespace nu
