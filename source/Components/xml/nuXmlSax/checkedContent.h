#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "nuXmlParser/conforming/conformingSupply.h"
#include "nuXmlParser/conforming/declaredTags.h"
#include "nuXmlParser/markup/plainContent.h"
#include "nuXmlParser/markup/tagChecks.h"
#include "nuXmlSax/namespaceList.h"

namespace nu {

/// What the standard has to say of a name by itself, as far as plain tags go; a base of ByteName.
struct CheckedName {
    enum class Form : std::uint8_t { Unknown, Refused, Plain, Declaration };

    Form elementForm = Form::Unknown;
    Form attributeForm = Form::Unknown;
    std::uint32_t declaredTag = 0;  ///< of an element: what is declared for its tags
    std::uint32_t prefixLength = 0; ///< with the colon; 0 without a prefix
    std::uint64_t lastTag = 0;      ///< the last tag that had it as an attribute
};

/// Looks at a name of either kind, all but what is declared for it.
[[nodiscard]] CheckedName checkedName(std::string_view name);

/// Stands before a sink of markup::PlainContent, refuses what is not well-formed or has to be
/// changed by the conforming stage, and tells the stage of the elements that stay open. So content
/// is checked and taken in one pass.
///
/// The names of `Sink` are CheckedNames with the `PrefixScope* scope` of their prefix. It finds one
/// by `Name* find(bytes)`, null where it is not plain, and is told of the end of an element that
/// was begun before by `bool endOuterElement(name)`. Values of attributes may also stand outside of
/// the bytes, where the document type declares them.
template <class Sink> class CheckedContent {
public:
    using Name = typename Sink::Name;
    static constexpr bool isXml = true;

    explicit CheckedContent(Sink& sink) : sink_(sink) {}

    void read(std::string_view bytes, PassedBytes& passed, ConformingSupply& stage) {
        stage_ = &stage;
        depthLeft_ = stage.limits().depth() - stage.depth();
        constexpr std::size_t usualDepth = 16;
        elements_.clear();
        elements_.reserve(usualDepth);
        declarations_.clear();
        isRefused_ = false;
        // What ends with the text that shows goes on with more of it.
        while (!bytes.empty() && !isRefused_) {
            markup::PlainContent content(*this);
            content.read(bytes, passed);
            bytes =
                content.endsInText() ? stage.muchMoreFrom(passed.end) : stage.moreFrom(passed.end);
        }
        tellStage();
    }

private:
    friend class markup::PlainContent<CheckedContent>;

    struct Element {
        Name* name;
        const char* less;
    };
    struct Declaration {
        std::size_t depth; ///< the number of elements here up to the one that has it
        std::string_view prefix;
        std::string_view uri;
    };

    // For markup::PlainContent, see there.
    static constexpr auto classifyText = Sink::classifyText;
    [[nodiscard]] Name* nextElement() const noexcept { return sink_.nextElement(); }
    [[nodiscard]] Name* element(std::string_view bytes) { return sink_.element(bytes); }
    [[nodiscard]] Name* attribute(Name& before, std::string_view bytes) {
        return sink_.attribute(before, bytes);
    }
    [[nodiscard]] Name* open() const noexcept {
        return elements_.empty() ? nullptr : elements_.back().name;
    }
    [[nodiscard]] std::string_view outerName() const noexcept { return stage_->innermost(); }
    [[nodiscard]] bool keepsSpace() const noexcept { return sink_.keepsSpace(); }
    [[nodiscard]] bool keepsInline() const noexcept { return sink_.keepsInline(); }
    /// What is declared for the element of a leaf may ask for more than its tag tells.
    [[nodiscard]] Name* nextLeaf() const noexcept {
        Name* const name = sink_.nextLeaf();
        return name != nullptr && name->elementForm == CheckedName::Form::Plain &&
                       name->declaredTag == 0 && elements_.size() < depthLeft_
                   ? name
                   : nullptr;
    }
    bool takeLeaf(Name& name, std::string_view text, const markup::PassedKinds& kinds) {
        return sink_.takeLeaf(name, text, kinds);
    }
    bool addText(std::string_view text, const markup::PassedKinds& kinds) {
        return isTaken(sink_.addText(text, kinds));
    }
    bool addComment(std::string_view text, bool isAscii) {
        return isTaken(sink_.addComment(text, isAscii));
    }
    /// White space before the end of a tag without attributes.
    [[nodiscard]] static constexpr bool addNothing() noexcept { return false; }

    [[gnu::always_inline]] bool startTag(Name& name, const char* less) {
        if (name.elementForm != CheckedName::Form::Plain) [[unlikely]] {
            if (!isPlain(name.elementForm, name)) {
                return false;
            }
        }
        checks_.begin();
        declared_ = nullptr;
        hasTokens_ = false;
        if (name.declaredTag != 0) [[unlikely]] {
            declared_ = declaredTags_.find(name.declaredTag);
            hasTokens_ = declared_->declaration->hasTokens();
        }
        elements_.push_back({&name, less});
        if (!isTaken(sink_.startTag(name, less))) [[unlikely]] {
            elements_.pop_back();
            return false;
        }
        return true;
    }
    [[gnu::always_inline]] bool addAttribute(Name& name, std::string_view value,
                                             const markup::PassedKinds& kinds) {
        if (name.attributeForm != CheckedName::Form::Plain) [[unlikely]] {
            if (!isPlain(name.attributeForm, name) && !declare(name, value, kinds)) {
                return false;
            }
        }
        if (!checks_.add(name)) [[unlikely]] {
            return false;
        }
        if (hasTokens_ && declared_->changes(name, value)) [[unlikely]] {
            return false;
        }
        if (name.prefixLength != 0 && name.attributeForm == CheckedName::Form::Plain &&
            !checks_.addPrefixed(name)) [[unlikely]] {
            return false;
        }
        return isTaken(sink_.addAttribute(name, value, kinds));
    }
    void abandonStartTag() {
        dropInnermost();
        sink_.abandonStartTag();
    }
    [[gnu::always_inline]] bool endStartTag(bool isEmptyElement, const char* end) {
        // The declarations of the tag count for all names in it.
        const auto isDeclared = [](const Name& name) { return name.scope->newest() != nullptr; };
        if (!isWithinLimits(end - elements_.back().less) ||
            (declared_ != nullptr && !addDefaults(end - elements_.back().less)) ||
            !checks_.arePrefixesPlain(*elements_.back().name, isDeclared)) [[unlikely]] {
            abandonStartTag();
            return false;
        }
        if (!isTaken(sink_.endStartTag(isEmptyElement, end))) [[unlikely]] {
            dropInnermost();
            return false;
        }
        if (declared_ != nullptr && defaultsCost_ != 0) [[unlikely]] {
            // Not before: a tag that is refused is counted by the stage.
            stage_->addDefaults(defaultsCost_, elements_.back().less);
        }
        return true;
    }
    [[gnu::always_inline]] void endEmptyElement() {
        sink_.endEmptyElement();
        dropInnermost();
    }
    [[gnu::always_inline]] bool endElement(bool isInnermost, const char* end) {
        if (elements_.empty()) [[unlikely]] {
            // The name as it stands in the text, which stays there.
            const std::size_t size = stage_->innermost().size();
            if (!isTaken(sink_.endOuterElement({end - size, size}))) {
                return false;
            }
            stage_->closeElement();
            ++depthLeft_;
            return true;
        }
        if (!isTaken(sink_.endElement(isInnermost, end))) [[unlikely]] {
            return false;
        }
        dropInnermost();
        return true;
    }

    /// What the sink refuses is nothing that more text would help with, and it is asked but once.
    [[nodiscard]] [[gnu::always_inline]] bool isTaken(bool isTakenBySink) noexcept {
        if (!isTakenBySink) [[unlikely]] {
            isRefused_ = true;
        }
        return isTakenBySink;
    }
    /// Whether limits of the stage allow the tag at hand. A longer one than has to be counted is
    /// for somebody who does.
    [[nodiscard]] [[gnu::always_inline]] bool isWithinLimits(std::ptrdiff_t length) const noexcept {
        return elements_.size() <= depthLeft_ && stage_->limits().allowsTag(length);
    }
    [[nodiscard]] bool isPlain(const CheckedName::Form& form, Name& name) {
        if (form == CheckedName::Form::Unknown) {
            static_cast<CheckedName&>(name) = checkedName(name.text);
            if (!stage_->limits().allowsName(name.text)) {
                name.elementForm = name.attributeForm = CheckedName::Form::Refused;
            }
            name.declaredTag = declaredTags_.add(stage_->declarationOf(name.text));
        }
        return form == CheckedName::Form::Plain;
    }
    /// Adds what the tag lacks; false where that is not plain. Declarations of namespaces are for
    /// the stage.
    [[gnu::noinline]] bool addDefaults(std::ptrdiff_t tagLength) {
        declared_->findNames([this](std::string_view name) { return sink_.find(name); });
        defaultsCost_ = 0;
        std::ptrdiff_t written = 0;
        const auto addMissing = [&](const typename DeclaredTag<Name>::Default& missing) {
            defaultsCost_ += missing.attribute->cost();
            written += static_cast<std::ptrdiff_t>(missing.attribute->text().size());
            return missing.name != nullptr && isPlain(missing.name->attributeForm, *missing.name) &&
                   addAttribute(*missing.name, missing.attribute->value(),
                                missing.attribute->kinds());
        };
        return declared_->forEachMissing(checks_.number(), addMissing) &&
               (defaultsCost_ == 0 ||
                (stage_->limits().allowsTag(tagLength + written) &&
                 stage_->allowsDefaults(defaultsCost_, elements_.back().less)));
    }
    /// Whether the attribute is a declaration that stands as it is.
    [[nodiscard]] bool declare(const Name& name, std::string_view uri,
                               const markup::PassedKinds& kinds) {
        const std::string_view prefix =
            name.text.substr(name.prefixLength != 0 ? name.prefixLength : name.text.size());
        if (name.attributeForm != CheckedName::Form::Declaration || !kinds.isVerbatim ||
            !mayBind(prefix, uri)) {
            return false;
        }
        declarations_.push_back({elements_.size(), prefix, uri});
        return true;
    }
    [[gnu::always_inline]] void dropInnermost() noexcept {
        while (!declarations_.empty() && declarations_.back().depth == elements_.size())
            [[unlikely]] { declarations_.pop_back(); }
        elements_.pop_back();
    }
    void tellStage() {
        auto declaration = declarations_.begin();
        for (std::size_t index = 0; index < elements_.size(); ++index) {
            stage_->openElement(elements_[index].name->text, elements_[index].less);
            for (; declaration != declarations_.end() && declaration->depth == index + 1;
                 ++declaration) {
                stage_->bind(declaration->prefix, declaration->uri);
            }
        }
    }

    Sink& sink_;
    ConformingSupply* stage_ = nullptr;
    std::size_t depthLeft_ = 0; ///< that limits of the stage allow inside of what it was told
    bool isRefused_ = false;
    // Of the tag at hand.
    markup::TagChecks<Name> checks_;
    DeclaredTag<Name>* declared_ = nullptr;
    bool hasTokens_ = false;       ///< values may have to be changed
    std::size_t defaultsCost_ = 0; ///< of those that the tag lacks, where any are declared
    std::vector<Element>
        elements_; ///< those that were begun here and are open, and the tag at hand
    std::vector<Declaration> declarations_;
    DeclaredTags<Name> declaredTags_;
};

} // namespace nu
