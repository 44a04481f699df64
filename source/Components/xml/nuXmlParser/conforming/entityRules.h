#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "nuXmlParser/conforming/entities.h"
#include "nuXmlParser/conforming/referenceText.h"
#include "nuXmlParser/conforming/textStack.h"

namespace nu {

/// How much may come out of entities and defaults.
struct ExpansionLimit {
    std::uint32_t factor;
    std::int64_t from;
};

/// What references mean: the declared entities, what may be left undeclared, how much may come out
/// of them.
class EntityRules {
public:
    EntityRules(TextStack& texts, ExpansionLimit limit, bool writesLeftAsText, bool hasNamespaces)
        : texts_(texts), limit_(limit), writesLeftAsText_(writesLeftAsText),
          hasNamespaces_(hasNamespaces) {}

    Entities general;
    Entities parameters;
    /// There are declarations that nobody reads: an external subset or parameter entity.
    bool hasUnread = false;
    bool isStandalone = false;

    /// The entity that a reference at `at` names, or null where it is left as it stands: it is
    /// external, or its declaration may stand in what is not read. Fails for any other.
    Entity* resolve(std::string_view name, const char* at);
    /// How a reference is written that is left as it stands.
    void writeLeft(std::string_view name, std::string& text) const;
    [[nodiscard]] bool writesLeftAsText() const noexcept { return writesLeftAsText_; }

    /// The value of an attribute as the reader reads it, for double quotes. The raw value stands in
    /// the text at hand.
    /// \param isUri of a namespace: characters are written in one way only, so that equal ones are
    /// equal texts
    void writeValue(std::string_view raw, bool isTokens, bool isUri, std::string& value);

    /// So much more has come out of entities and defaults.
    void spend(std::size_t bytes, const char* at);
    /// Whether so much more may come out of them in the document up to that place.
    [[nodiscard]] bool mayBeSpent(std::size_t bytes, const char* at) const noexcept;

private:
    struct Level {
        Entity* entity;
        const char* place;
        const char* end;
    };

    void writeRun(const char*& place, const char* end, std::string& value) const;
    void writeReference(const ReferenceText& reference, const char* mark, bool isUri,
                        std::string& value);
    void enterInValue(const ReferenceText& reference, const char* at);
    [[noreturn]] void failInValue(std::u16string_view message, std::string_view text,
                                  const char* at);

    TextStack& texts_;
    ExpansionLimit limit_;
    bool writesLeftAsText_;
    bool hasNamespaces_;
    std::int64_t spent_ = 0;
    std::vector<Level> levels_; ///< the texts of entities in a value, innermost last
};

/// Cuts white space from the ends of what was written from `start` on and leaves one space of each
/// run.
void collapseSpaces(std::string& text, std::size_t start);

/// One character of UTF-8.
void appendUtf8(std::string& text, char32_t codePoint);

} // namespace nu
