#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "common/textHash.h"
#include "nuXmlParser/conforming/attributeDeclarations.h"
#include "nuXmlParser/conforming/entityRules.h"
#include "nuXmlParser/conforming/namespaceBindings.h"
#include "nuXmlParser/conforming/openElements.h"
#include "nuXmlParser/conforming/tagText.h"
#include "nuXmlParser/conforming/textStack.h"

namespace nu {

/// Start tags and end tags: checks them and writes them as the reader wants them.
class TagRules {
public:
    TagRules(TextStack& texts, OpenElements& elements, EntityRules& entities, bool hasNamespaces)
        : texts_(texts), elements_(elements), entities_(entities), hasNamespaces_(hasNamespaces) {}

    /// What attribute lists declare.
    ElementDeclarations declarations;

    /// Reads and checks the start tag at the place of the text, whose "<" it is; then passes it.
    void readStartTag();
    void passStartTag();
    /// The name in the tag that was read.
    [[nodiscard]] std::string_view name() const noexcept { return tag_.nameText(); }
    [[nodiscard]] const NamespaceBindings& bindings() const noexcept { return bindings_; }
    /// The end tag at the place of the text.
    void passEndTag();
    /// The innermost element ends with an end tag that needs no change.
    void closePlain() noexcept {
        bindings_.unbind(elements_.depth());
        elements_.close();
    }

private:
    /// What is written for one attribute: the value as it stands, or another one.
    struct Written {
        bool isChanged = false;
        std::size_t start = 0; ///< in values_
        std::size_t length = 0;
    };
    /// An attribute with a prefix, by what it is bound to.
    struct ExpandedName {
        std::string_view uri;
        std::string_view localName;
        friend bool operator==(const ExpandedName&, const ExpandedName&) = default;
    };

    template <class Read> void complete(Read&& read, std::u16string_view cutShort);
    void applyDeclarations();
    void writeValues(const ElementDeclaration* declaration);
    void checkTwice();
    void applyNamespaces();
    void bind(std::string_view name, std::string_view value, const char* at);
    void checkPrefix(std::string_view name, bool isAttribute, const char* at);
    void checkExpandedTwice();
    void writeStartTag();
    void writeAttribute(const TagAttribute& attribute, const Written& written, bool isFirst);
    void writeSpace(const char* from, const char* to);
    void writeDefaults(const char* at);
    [[nodiscard]] std::string_view valueOf(std::size_t index) const noexcept;

    TextStack& texts_;
    OpenElements& elements_;
    EntityRules& entities_;
    bool hasNamespaces_;
    NamespaceBindings bindings_;

    // The tag at hand.
    TagText tag_;
    std::vector<Written> written_;
    std::string values_;
    std::vector<const AttributeDeclaration*> defaults_; ///< those that are not specified
    std::uint64_t tagNumber_ = 0;
    std::int64_t breaksForValue_ = 0; ///< line breaks that go behind the next value
    std::unordered_set<std::string_view, TextHash> seenNames_;
};

} // namespace nu
