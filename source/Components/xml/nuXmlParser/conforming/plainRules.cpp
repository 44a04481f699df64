#include "nuXmlParser/conforming/plainRules.h"

#include <algorithm>

#include "nuXmlParser/conforming/xmlNames.h"

namespace nu {

bool PlainRules::pass() {
    const char* const begin = texts_.place;
    // What is passed by is counted by whoever reads it, or by nobody.
    PassedBytes passed{nullptr, begin};
    markup::PlainContent content(*this);
    if (begin == texts_.end) {
        return false;
    }
    if (*begin == '<') {
        content.read({begin, texts_.end}, passed);
    } else {
        content.readBehindTag({begin, texts_.end}, passed);
    }
    if (passed.end == begin) {
        return false;
    }
    texts_.place = passed.end + (*passed.end == '>' ? 1 : 0);
    return true;
}

// Start tags

/// Only names that were looked at before are known.
PlainRules::Name* PlainRules::element(std::string_view bytes) noexcept {
    Name* const name = memory_.names.findAt(bytes.data(), bytes.size());
    if (name != nullptr) {
        memory_.guess.follow(*name);
    }
    return name;
}

PlainRules::Name* PlainRules::attribute(Name& before, std::string_view bytes) noexcept {
    Name* const name = memory_.names.findAt(bytes.data(), bytes.size());
    if (name != nullptr) {
        before.followers[markup::ByteName::Attribute] = name;
    }
    return name;
}

[[gnu::always_inline]] inline bool PlainRules::startTag(Name& name, const char* less) noexcept {
    element_ = &name;
    less_ = less;
    hasBindings_ = false;
    memory_.checks.begin();
    return name.use != markup::TagUse::Looked && !watch_.isTaken();
}

[[gnu::always_inline]] inline bool PlainRules::addAttribute(Name& name, std::string_view value,
                                                            const markup::PassedKinds& /*kinds*/) {
    if (!memory_.checks.add(name)) [[unlikely]] {
        return false;
    }
    if (element_->use == markup::TagUse::SpaceCounts && value.find(' ') != value.npos)
        [[unlikely]] {
        return false;
    }
    if (name.isDeclaration) [[unlikely]] {
        return bind(name, value);
    }
    return name.prefixLength == 0 || memory_.checks.addPrefixed(name);
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
    memory_.bindings.bind(prefix, uri, elements_.depth() + 1);
    hasBindings_ = true;
    return true;
}

void PlainRules::abandonStartTag() noexcept {
    if (hasBindings_) {
        memory_.bindings.unbind(elements_.depth() + 1);
    }
}

[[gnu::always_inline]] inline bool PlainRules::endStartTag(bool isEmptyElement, const char* end) {
    // The declarations of the tag count for all names in it.
    const auto isDeclared = [this](Name& name) { return memory_.isDeclared(name); };
    if (!limits_.allowsKnownTag(elements_.depth(), end - less_) ||
        (hasNamespaces_ && !memory_.checks.arePrefixesPlain(*element_, isDeclared)) ||
        (watch_.isSought(element_->text, less_) && !use())) [[unlikely]] {
        abandonStartTag();
        return false;
    }
    if (isEmptyElement) {
        abandonStartTag(); // of its declarations nothing is left
        memory_.guess.leave(element_);
        watch_.endElement(end + 2);
    } else {
        elements_.open(*element_, texts_.offsetOf(less_));
        memory_.guess.enter(*element_);
    }
    return true;
}

bool PlainRules::use() {
    texts_.place = less_;
    watch_.use(element_->text);
    return !watch_.hasStopped();
}

// Ends and texts

/// The end of a root is for the rules that go step by step.
[[gnu::always_inline]] inline bool PlainRules::endElement(bool /*isInnermost*/, const char* end) {
    if (elements_.depth() <= 1 || watch_.isTaken()) [[unlikely]] {
        return false;
    }
    memory_.guess.leave(elements_.innermostKnown());
    memory_.bindings.unbind(elements_.depth());
    elements_.close();
    watch_.endElement(end + 1);
    return true;
}

/// A reader that is not told would drop white space alone.
[[gnu::always_inline]] inline bool
PlainRules::addText(std::string_view text, const markup::PassedKinds& /*kinds*/) const noexcept {
    return (passesSpace_ || !isSpace(text.front()) ||
            !std::all_of(text.begin(), text.end(), isSpace)) &&
           !watch_.isTaken();
}

} // namespace nu
