#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "nuXmlParser/conforming/declaredTags.h"
#include "nuXmlParser/conforming/entityRules.h"
#include "nuXmlParser/conforming/limitRules.h"
#include "nuXmlParser/conforming/openElements.h"
#include "nuXmlParser/conforming/outputText.h"
#include "nuXmlParser/conforming/tagMemory.h"
#include "nuXmlParser/conforming/textStack.h"
#include "nuXmlParser/conforming/watchRules.h"
#include "nuXmlParser/markup/plainContent.h"

namespace nu {

/// Passes content that needs no change, as nearly all, as a whole. What it passes means the same to
/// the rules that go step by step, which also make names known.
class PlainRules {
public:
    /// What it has in common with the rules that go step by step.
    struct Shared {
        TextStack& texts;
        const OutputText& output;
        OpenElements& elements;
        EntityRules& entities;
        TagMemory& memory;
        WatchRules& watch;
        const LimitRules& limits;
    };

    /// \param passesSpace whether white space alone goes out as it is
    PlainRules(const Shared& shared, bool hasNamespaces, bool passesSpace) noexcept
        : shared_(shared), hasNamespaces_(hasNamespaces), passesSpace_(passesSpace) {}

    /// Goes on from the place of the text of the document, which is at or right behind markup, to
    /// another such place; false where that is the same. Stops behind an element that was taken,
    /// and where the watch wants nothing more.
    bool pass();

private:
    friend class markup::PlainContent<PlainRules>;

    // For markup::PlainContent, see there.
    using Name = markup::TagName;
    static constexpr bool isXml = true;
    [[nodiscard]] Name* nextElement() const noexcept { return shared_.memory.guess.next(); }
    [[nodiscard]] Name* element(std::string_view bytes) noexcept;
    [[nodiscard]] Name* attribute(Name& before, std::string_view bytes) noexcept;
    [[nodiscard]] Name* open() const noexcept { return shared_.elements.innermostKnown(); }
    [[nodiscard]] std::string_view outerName() const noexcept {
        return shared_.elements.innermost();
    }
    [[nodiscard]] static constexpr bool keepsSpace() noexcept { return true; }
    [[nodiscard]] static constexpr bool keepsInline() noexcept { return true; }
    bool startTag(Name& name, const char* less) noexcept;
    [[nodiscard]] static constexpr bool addNothing() noexcept { return false; }
    bool addAttribute(Name& name, std::string_view value, const markup::PassedKinds& kinds);
    void abandonStartTag() noexcept;
    bool endStartTag(bool isEmptyElement, const char* end);
    void endEmptyElement() noexcept {} // its start tag has done that
    bool endElement(bool isInnermost, const char* end);
    bool addText(std::string_view text, const markup::PassedKinds& kinds) const noexcept;
    bool addComment(std::string_view /*text*/, bool /*isAscii*/) const noexcept {
        return !shared_.watch.isTaken();
    }

    [[nodiscard]] bool bind(const Name& name, std::string_view uri);
    [[nodiscard]] bool findDefaults(std::ptrdiff_t tagLength);
    void writeDefaults(const char* end);

    [[nodiscard]] bool use();

    /// So much may wait to go out before a tag is not plain for what would be added to it.
    static constexpr std::size_t mostOutput = 64 * 1024;

    const Shared shared_;
    bool hasNamespaces_;
    bool passesSpace_;
    // Of the tag at hand.
    Name* element_ = nullptr;
    const char* less_ = nullptr;
    bool hasBindings_ = false;
    DeclaredTag<Name>* declared_ = nullptr;
    bool hasTokens_ = false;                        ///< values may have to be changed
    std::vector<const AttributeDefault*> defaults_; ///< those that are not specified
    std::size_t defaultsCost_ = 0;                  ///< of them, where there are any
};

} // namespace nu
