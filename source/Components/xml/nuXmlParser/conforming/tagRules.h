#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "common/textHash.h"
#include "nuXmlParser/conforming/declaredTags.h"
#include "nuXmlParser/conforming/entityRules.h"
#include "nuXmlParser/conforming/limitRules.h"
#include "nuXmlParser/conforming/openElements.h"
#include "nuXmlParser/conforming/tagMemory.h"
#include "nuXmlParser/conforming/tagText.h"
#include "nuXmlParser/conforming/textStack.h"

namespace nu {

/// Start tags and end tags: checks them and writes them as the reader wants them.
class TagRules {
public:
    TagRules(TextStack& texts, OpenElements& elements, EntityRules& entities,
             const LimitRules& limits, bool hasNamespaces)
        : texts_(texts), elements_(elements), entities_(entities), limits_(limits),
          hasNamespaces_(hasNamespaces), tag_(memory_, limits) {}

    /// Reads and checks the start tag at the place of the text, whose "<" it is; then passes it.
    void readStartTag();
    void passStartTag();
    /// The name in the tag that was read.
    [[nodiscard]] std::string_view name() const noexcept { return tag_.nameText(); }
    [[nodiscard]] const NamespaceBindings& bindings() const noexcept { return memory_.bindings; }
    /// The end tag at the place of the text.
    void passEndTag();
    /// What the tags before tell of others.
    [[nodiscard]] TagMemory& memory() noexcept { return memory_; }

    // Elements that somebody else passed, see ConformingSupply

    void openPassed(std::string_view name, const char* less) {
        elements_.open(name, texts_.source().offsetOf(less));
        memory_.guess.leave(nullptr);
    }
    void bindPassed(std::string_view prefix, std::string_view uri) {
        memory_.bindings.bind(prefix, uri, elements_.depth());
    }
    void closePassed() noexcept { closeInnermost(); }

private:
    /// What is written for one attribute: the value as it stands, or another one.
    struct Written {
        bool isChanged;
        std::size_t start; ///< in values_
        std::size_t length;
    };
    /// An attribute with a prefix, by what it is bound to.
    struct ExpandedName {
        std::string_view uri;
        std::string_view localName;
        friend bool operator==(const ExpandedName&, const ExpandedName&) = default;
    };
    struct ExpandedHash {
        std::size_t operator()(const ExpandedName& name) const noexcept {
            const std::size_t uri = TextHash()(name.uri);
            return mixHash(hashKeys(), uri ^ TextHash()(name.localName) << 1);
        }
    };

    template <class Read> void complete(Read&& read, std::u16string_view cutShort);
    void closeInnermost() noexcept {
        memory_.guess.leave(elements_.innermostKnown());
        memory_.bindings.unbind(elements_.depth());
        elements_.close();
    }
    void forgetNames();
    void checkLimits();
    void applyDeclarations();
    void writeValues();
    void checkTwice();
    void applyNamespaces();
    void bind(std::string_view name, std::string_view value, const char* at);
    void checkPrefix(markup::TagName& name, const char* at);
    void checkPrefix(std::string_view name, bool isAttribute, const char* at);
    void checkExpandedTwice();
    void writeStartTag();
    void writeAttribute(const TagAttribute& attribute, const Written& written, bool isFirst);
    void writeSpace(const char* from, const char* to);
    void writeDefaults(const char* at);
    [[nodiscard]] Written writtenOf(std::size_t index) const noexcept {
        return written_.empty() ? Written{} : written_[index];
    }
    [[nodiscard]] std::string_view valueOf(std::size_t index) const noexcept;

    TextStack& texts_;
    OpenElements& elements_;
    EntityRules& entities_;
    const LimitRules& limits_;
    bool hasNamespaces_;
    TagMemory memory_;

    // The tag at hand.
    TagText tag_;
    std::vector<Written> written_; ///< empty where all values stand as they are
    std::string values_;
    std::vector<const AttributeDefault*> defaults_; ///< those that are not specified
    std::int64_t breaksForValue_ = 0;               ///< line breaks that go behind the next value
    std::unordered_set<ExpandedName, ExpandedHash> seenNames_;
};

} // namespace nu
