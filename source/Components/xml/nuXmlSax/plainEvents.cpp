#include "nuXmlSax/plainEvents.h"

#include "common/utf8.h"
#include "nuXmlSax/attributesEnd.h"

namespace nu {

namespace {

std::u16string_view uriOf(const TNuSaxNamespace* scope) noexcept {
    return scope != nullptr ? std::u16string_view(scope->URI) : std::u16string_view(u"");
}

} // namespace

void PlainEvents::read(std::string_view bytes, PassedBytes& passed, const ReaderScopes& scopes) {
    scopes_ = &scopes;
    passed_ = &passed;
    open_.clear();
    unknown_ = nullptr;
    guess_ = &unknown_;
    checked_.read(bytes, passed, *scopes.stage);
}

PlainEvents::Name* PlainEvents::find(std::string_view bytes) {
    const std::uint64_t hash = names_.hashOf(bytes);
    if (Name* name = names_.find(bytes, hash)) {
        return name;
    }
    const std::size_t limit = reader_.limits_.NameLength;
    if (names_.count() == mostNames || (bytes.size() > limit && NuUtf16Length(bytes) > limit)) {
        return nullptr;
    }
    // Whoever is given a name may look at what stands behind it in a tag.
    const std::u16string_view units = nameTexts_.append(bytes, cNuEqual);
    return &names_.add(bytes, hash, units, scopes_->namespaces);
}

// Start tags

[[gnu::always_inline]] inline bool PlainEvents::startTag(Name& name, const char* /*less*/) {
    if (scopes_->depth >= reader_.limits_.Depth) [[unlikely]] {
        return false;
    }
    element_ = &name;
    attributes_ = &reader_.freshAttributes();
    meaningful_.clear();
    texts_.startAnew();
    return true;
}

[[gnu::always_inline]] inline bool PlainEvents::addAttribute(Name& name, std::string_view value,
                                                             const markup::PassedKinds& kinds) {
    const std::size_t count = attributes_->all().size();
    if (count >= reader_.limits_.Attributes) [[unlikely]] {
        return false;
    }
    TNuSAXAttribute& attribute = attributes_->next();
    attribute.set(scopes_->depth + 1, name.units, name.local(), texts_.append(value, kinds.isAscii),
                  kinds.isVerbatim);
    if (name.meaning != ScopedName::Meaning::None) [[unlikely]] {
        attribute.classify();
        meaningful_.push_back({count, &name, value});
        if (name.declared != nullptr) {
            declare(scopes_->depth + 1, name, value, attribute.valueSpan());
        }
    }
    return true;
}

/// Often it declares what it did the last time.
void PlainEvents::declare(std::int32_t level, Name& name, std::string_view value,
                          std::u16string_view uri) {
    if (value == name.declaredValue &&
        scopes_->namespaces.addAgain(level, *name.declared, name.declaredNumber)) {
        return;
    }
    scopes_->namespaces.AddNamespace(level, *name.declared, name.declaredPrefix, uri);
    name.declaredValue = value;
    name.declaredNumber = name.declared->newest()->Number;
}

void PlainEvents::abandonStartTag() noexcept {
    attributes_->Clear();
    if (!meaningful_.empty()) {
        scopes_->namespaces.RemoveLevel(scopes_->depth + 1);
    }
}

/// Before the tag was told its declarations were known for the checks alone. Whoever is told of one
/// finds the source at its closing quote, and in force those before it.
void PlainEvents::applyAttributes() {
    const char* const tagEnd = passed_->end;
    scopes_->namespaces.RemoveLevel(scopes_->depth);
    for (const Meaningful& meaningful : meaningful_) {
        const TNuSAXAttribute& attribute = attributes_->all()[meaningful.index];
        const std::u16string_view value = attribute.valueSpan();
        if (meaningful.name->declared == nullptr) {
            if (value == u"preserve" || value == u"default") {
                scopes_->space.set(scopes_->depth, value == u"preserve");
            }
            continue;
        }
        passed_->end = meaningful.value.data() + meaningful.value.size();
        host::IBufferedContentHandler* const content = reader_.contentHandler_.get();
        if (!attribute.IsDefaultNamespace() && content != nullptr) {
            content->startPrefixMapping(attribute.localNameSpan(), value);
        }
        declare(scopes_->depth, *meaningful.name, meaningful.value, value);
    }
    passed_->end = tagEnd;
}

[[gnu::always_inline]] inline bool PlainEvents::endStartTag(bool /*isEmptyElement*/,
                                                            const char* /*end*/) {
    // 1. What the attributes mean, then the namespace of the name.
    ++scopes_->depth;
    if (!meaningful_.empty()) [[unlikely]] {
        applyAttributes();
    }
    Name& name = *element_;
    open_.push_back(&name);
    guess_ = &name.followers[markup::ByteName::Child];

    // 2. The event.
    if (host::IBufferedContentHandler* const content = reader_.contentHandler_.get()) {
        const AttributesEnd end(*attributes_);
        content->startElement(uriOf(name.scope->newest()), name.local(), name.units, *attributes_);
    }
    return true;
}

// Ends and texts

[[gnu::always_inline]] inline void PlainEvents::tellEnd(const Name& name) {
    if (host::IBufferedContentHandler* const content = reader_.contentHandler_.get()) {
        content->endElement(uriOf(name.scope->newest()), name.local(), name.units);
    }
    scopes_->namespaces.RemoveLevel(scopes_->depth);
    scopes_->space.close(scopes_->depth);
    --scopes_->depth;
}

[[gnu::always_inline]] inline void PlainEvents::endEmptyElement() { endElement(true, nullptr); }

[[gnu::always_inline]] inline bool PlainEvents::endElement(bool /*isInnermost*/,
                                                           const char* /*end*/) {
    Name& name = *open_.back();
    open_.pop_back();
    guess_ = &name.followers[markup::ByteName::Sibling];
    tellEnd(name);
    return true;
}

/// The end of a root is for the scanners to see, and that of an element whose prefix is not
/// declared, which draws a warning.
bool PlainEvents::endOuterElement(std::string_view name) {
    Name* const found = scopes_->depth > 1 ? find(name) : nullptr;
    if (found == nullptr || (found->hasColon() && found->scope->newest() == nullptr)) {
        return false;
    }
    guess_ = &found->followers[markup::ByteName::Sibling];
    tellEnd(*found);
    return true;
}

[[gnu::always_inline]] inline bool PlainEvents::addText(std::string_view text,
                                                        const markup::PassedKinds& kinds) {
    if (host::IBufferedContentHandler* const content = reader_.contentHandler_.get()) {
        texts_.startAnew();
        content->characters(texts_.append(text, kinds.isAscii));
    }
    return true;
}

bool PlainEvents::addComment(std::string_view text, bool isAscii) {
    if (host::IBufferedLexicalHandler* const lexical = reader_.lexicalHandler_.get()) {
        texts_.startAnew();
        lexical->comment(texts_.append(text, isAscii));
    }
    return true;
}

} // namespace nu
