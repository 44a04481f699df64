#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "common/utf8.h"
#include "nuXmlParser/markup/byteName.h"
#include "nuXmlParser/markup/plainContent.h"
#include "nuXmlSax/messages.h"
#include "nuXmlSax/scanner.h"
#include "nuXmlSax/scopedName.h"
#include "nuXmlSax/wideText.h"

namespace nu {

/// Turns the plain parts of a document, nearly all of it, into events: names are widened when they
/// are met first, values and texts when they are delivered.
///
/// What it leaves is scanned step by step. Both go through the operations of the scanner that tell
/// of elements, so that they mean the same, event by event and position by position.
template <class Source> class PlainEvents {
public:
    explicit PlainEvents(SaxScanner<Source>& scanner)
        : scanner_(scanner), reader_(scanner.reader_) {}

    /// Takes what is plain of UTF-8 that begins with the "<" or ">" that is current.
    void read(std::string_view bytes, PassedBytes& passed) {
        passed_ = &passed;
        open_.clear();
        passingCount_ = 0;
        expectNothing();
        markup::PlainContent(*this).read(bytes, passed);
    }

private:
    friend class markup::PlainContent<PlainEvents>;

    struct Name : ScopedName {
        Name(std::string_view bytes, std::uint64_t hash, std::u16string_view units,
             TNuSaxNamespaceList& namespaces, bool isExact)
            : ScopedName(bytes, hash, units, namespaces, isExact) {}

        bool isPassing = false;       ///< no name of the table, but
        std::size_t passingIndex = 0; ///< the one of this number among the passing ones
        bool isAscii = false;         ///< known of passing names
        /// How often another name came than the follower; from mostMisses on nobody learns.
        std::uint8_t misses[3]{};

        [[nodiscard]] std::u16string_view local() const noexcept {
            return {units.data() + localStart, units.size() - localStart};
        }
        [[nodiscard]] typename SaxScanner<Source>::Name parts() const noexcept {
            return {units.data(), units.data() + localStart, units.data() + units.size()};
        }
        Name* followers[3]{};
    };
    /// An attribute that means something to the scopes.
    struct Meaningful {
        std::size_t index;
        const Name* name;
        const char* valueEnd; ///< its closing quote
    };

    // For markup::PlainContent, see there.
    static constexpr auto classifyText = markup::classifyText;
    [[nodiscard]] Name* nextElement() const noexcept { return *guess_; }
    [[nodiscard]] Name* open() const noexcept { return open_.empty() ? nullptr : open_.back(); }
    [[nodiscard]] bool isInside() const noexcept { return reader_.depth_ >= 1; }
    [[nodiscard]] bool keepsSpace() const noexcept { return reader_.space_.isPreserved(); }
    [[nodiscard]] bool keepsInline() const noexcept { return reader_.space_.keepsInline(); }
    Name* element(std::string_view bytes);
    Name* attribute(Name& before, std::string_view bytes);
    bool startTag(Name& name);
    bool addNothing() noexcept { return isBare_ = true; }
    bool addAttribute(Name& name, std::string_view value, const markup::PassedKinds& kinds);
    void abandonStartTag() noexcept { attributes_->Clear(); }
    bool endStartTag(bool isEmptyElement);
    void endEmptyElement();
    bool endElement(std::string_view bytes, bool isInnermost);
    bool addText(std::string_view bytes, const markup::PassedKinds& kinds);
    bool addComment(std::string_view bytes, bool isAscii);

    [[nodiscard]] Name* find(std::string_view bytes);
    bool makePassing(Name& name, std::string_view bytes) const noexcept;
    Name* passingElement(std::string_view bytes);
    void expectBehind(Name& name, markup::ByteName::Follower kind) noexcept;
    void expectNothing() noexcept;
    void applyAttributes();
    void leaveElement() noexcept;

    SaxScanner<Source>& scanner_;
    TNuSAXXMLReader& reader_;
    PassedBytes* passed_ = nullptr;
    /// Names beyond these are not kept, so that memory stays bounded whatever the document.
    static constexpr std::size_t mostNames = 4096;
    /// Elements in each other whose names are known.
    static constexpr std::size_t mostOpen = 4096;
    static constexpr std::uint8_t mostMisses = 4;

    markup::ByteNames<Name> names_;
    WideText nameTexts_;
    /// Names that are looked at where they stand: those of open elements, and of an attribute.
    std::vector<std::unique_ptr<Name>> passing_;
    std::size_t passingCount_ = 0;
    std::optional<Name> passingAttribute_;
    WideText texts_; ///< of what is being delivered

    std::vector<Name*> open_; ///< the names of the innermost elements, as far as they are known
    /// Where the name of the next element was kept last time: with that of the element that
    /// started or ended last.
    Name** guess_ = &unknown_;
    std::uint8_t* misses_ = &unknownMisses_;
    Name* unknown_ = nullptr;
    std::uint8_t unknownMisses_ = 0;

    // Of the tag at hand.
    Name* element_ = nullptr;
    TNuSAXAttributes* attributes_ = nullptr;
    std::u16string_view uri_;
    std::vector<Meaningful> meaningful_;
    bool isBare_ = false; ///< a space, and no attribute behind it
};

// Names

template <class Source>
typename PlainEvents<Source>::Name* PlainEvents<Source>::find(std::string_view bytes) {
    const std::uint64_t hash = names_.hashOf(bytes);
    if (Name* name = names_.find(bytes, hash)) {
        return name;
    }
    const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < ' '; };
    const std::size_t limit = reader_.limits_.NameLength;
    if (names_.count() == mostNames || std::any_of(bytes.begin(), bytes.end(), isControl) ||
        (bytes.size() > limit && NuUtf16Length(bytes) > limit)) {
        return nullptr;
    }
    // Whoever is given a name may look at what stands behind it in a tag.
    const std::u16string_view units = nameTexts_.append(bytes, cNuEqual);
    return &names_.add(bytes, hash, units, reader_.namespaces_, reader_.isBehindStage_);
}

/// Most names mean nothing to the scopes. To widen one is quicker than to look it up, which only
/// pays where the next one is guessed.
template <class Source>
bool PlainEvents<Source>::makePassing(Name& name, std::string_view bytes) const noexcept {
    const bool isShort =
        bytes.size() <= std::min(markup::ByteName::longestGuess, reader_.limits_.NameLength);
    if (!isShort) {
        return false;
    }
    const markup::NameKinds kinds = markup::classifyName(bytes.data(), bytes.size());
    name.become(bytes);
    name.isPassing = true;
    name.isAscii = kinds.isAscii;
    name.misses[markup::ByteName::Attribute] = mostMisses;
    return kinds.isOrdinary;
}

template <class Source>
typename PlainEvents<Source>::Name* PlainEvents<Source>::passingElement(std::string_view bytes) {
    if (passingCount_ == passing_.size()) {
        passing_.push_back(std::make_unique<Name>("-", 0, u"-", reader_.namespaces_, true));
    }
    Name& name = *passing_[passingCount_];
    if (!makePassing(name, bytes)) {
        return nullptr;
    }
    name.passingIndex = passingCount_++;
    return &name;
}

template <class Source>
typename PlainEvents<Source>::Name* PlainEvents<Source>::element(std::string_view bytes) {
    if (*misses_ == mostMisses || names_.count() == mostNames) {
        if (Name* const name = passingElement(bytes)) {
            return name;
        }
    } else {
        ++*misses_;
    }
    return *guess_ = find(bytes);
}

template <class Source>
typename PlainEvents<Source>::Name* PlainEvents<Source>::attribute(Name& before,
                                                                   std::string_view bytes) {
    std::uint8_t& misses = before.misses[markup::ByteName::Attribute];
    if (misses == mostMisses || names_.count() == mostNames) {
        if (!passingAttribute_) {
            passingAttribute_.emplace("-", 0, u"-", reader_.namespaces_, true);
        }
        Name& name = *passingAttribute_;
        if (!scanner_.mayBeMeaningful(static_cast<unsigned char>(bytes.front())) &&
            makePassing(name, bytes)) {
            name.units = texts_.append(bytes, name.isAscii);
            return &name;
        }
    } else {
        ++misses;
    }
    Name* const name = find(bytes);
    if (!before.isPassing) {
        before.followers[markup::ByteName::Attribute] = name;
    }
    return name;
}

// Start tags

template <class Source>
[[gnu::always_inline]] inline bool PlainEvents<Source>::startTag(Name& name) {
    // Somebody may want to take the bytes from here on.
    if (reader_.depth_ >= reader_.limits_.Depth || reader_.directContent_ != nullptr) [[unlikely]] {
        return false;
    }
    element_ = &name;
    attributes_ = &reader_.freshAttributes();
    meaningful_.clear();
    isBare_ = false;
    texts_.startAnew();
    if (name.isPassing) {
        name.units = texts_.append(name.text, name.isAscii);
    }
    return true;
}

template <class Source>
[[gnu::always_inline]] inline bool
PlainEvents<Source>::addAttribute(Name& name, std::string_view value,
                                  const markup::PassedKinds& kinds) {
    const std::size_t count = attributes_->all().size();
    if (count >= reader_.limits_.Attributes) [[unlikely]] {
        return false;
    }
    TNuSAXAttribute& attribute = attributes_->next();
    attribute.set(reader_.depth_ + 1, name.units, name.local(), texts_.append(value, kinds.isAscii),
                  kinds.isPlain);
    if (name.meaning != ScopedName::Meaning::None) [[unlikely]] {
        attribute.classify();
        meaningful_.push_back({count, &name, value.data() + value.size()});
    }
    return true;
}

/// Whoever is told of a declaration finds the source at its closing quote.
template <class Source> void PlainEvents<Source>::applyAttributes() {
    const char* const tagEnd = passed_->end;
    for (const Meaningful& meaningful : meaningful_) {
        const TNuSAXAttribute& attribute = attributes_->all()[meaningful.index];
        passed_->end = meaningful.valueEnd;
        if (meaningful.name->declared != nullptr) {
            scanner_.applyDeclaration(attribute, *meaningful.name->declared);
        } else {
            scanner_.applySpace(attribute);
        }
    }
    passed_->end = tagEnd;
}

template <class Source>
[[gnu::always_inline]] inline bool PlainEvents<Source>::endStartTag(bool /*isEmptyElement*/) {
    // 1. What the attributes mean, then the namespace of the name.
    ++reader_.depth_;
    if (!meaningful_.empty()) [[unlikely]] {
        applyAttributes();
    }
    if (isBare_) [[unlikely]] {
        scanner_.warn(messages::spaceWithoutAttributes);
    }
    Name& name = *element_;
    const auto parts = name.parts();
    uri_ = scanner_.uriOf(name.scope->newest(), parts);

    // 2. The event.
    if (open_.size() == mostOpen) [[unlikely]] {
        open_.clear();
        passingCount_ = 0;
    }
    open_.push_back(&name);
    expectBehind(name, markup::ByteName::Child);
    scanner_.reportElementStart(uri_, parts, *attributes_);
    return true;
}

// Ends and texts

template <class Source> [[gnu::always_inline]] inline void PlainEvents<Source>::endEmptyElement() {
    scanner_.reportElementEnd(uri_, element_->parts());
    leaveElement();
}

template <class Source>
[[gnu::always_inline]] inline bool PlainEvents<Source>::endElement(std::string_view bytes,
                                                                   bool isInnermost) {
    if (reader_.depth_ < 1) [[unlikely]] {
        return false;
    }
    Name* name = isInnermost ? open_.back() : passingElement(bytes);
    if (name == nullptr && (name = find(bytes)) == nullptr) [[unlikely]] {
        return false;
    }
    if (name->isPassing) {
        texts_.startAnew();
        name->units = texts_.append(name->text, name->isAscii);
        passingCount_ = name->passingIndex;
    }
    const auto parts = name->parts();
    scanner_.reportElementEnd(scanner_.uriOf(name->scope->newest(), parts), parts);
    leaveElement();
    return true;
}

template <class Source>
[[gnu::always_inline]] inline void PlainEvents<Source>::leaveElement() noexcept {
    if (open_.empty()) [[unlikely]] {
        expectNothing();
        return;
    }
    Name& name = *open_.back();
    open_.pop_back();
    if (name.isPassing) {
        passingCount_ = name.passingIndex;
    }
    expectBehind(name, markup::ByteName::Sibling);
}

template <class Source>
inline void PlainEvents<Source>::expectBehind(Name& name,
                                              markup::ByteName::Follower kind) noexcept {
    if (name.isPassing) {
        expectNothing();
        unknownMisses_ = mostMisses;
    } else {
        guess_ = &name.followers[kind];
        misses_ = &name.misses[kind];
    }
}

template <class Source> void PlainEvents<Source>::expectNothing() noexcept {
    unknown_ = nullptr;
    unknownMisses_ = 0;
    guess_ = &unknown_;
    misses_ = &unknownMisses_;
}

template <class Source>
[[gnu::always_inline]] inline bool PlainEvents<Source>::addText(std::string_view bytes,
                                                                const markup::PassedKinds& kinds) {
    if (host::IBufferedContentHandler* const content = scanner_.content()) {
        texts_.startAnew();
        content->characters(texts_.append(bytes, kinds.isAscii));
    }
    return true;
}

template <class Source> bool PlainEvents<Source>::addComment(std::string_view bytes, bool isAscii) {
    if (host::IBufferedLexicalHandler* const lexical = scanner_.lexical()) {
        texts_.startAnew();
        lexical->comment(texts_.append(bytes, isAscii));
    }
    return true;
}

} // namespace nu
