#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "nuXmlParser/conforming/limitRules.h"
#include "nuXmlParser/conforming/tagMemory.h"
#include "nuXmlParser/markup/byteBlock.h"
#include "nuXmlParser/markup/tagChecks.h"
#include "nuXmlParser/markup/tagName.h"

namespace nu {

/// An attribute as it stands in a start tag.
struct TagAttribute {
    const char* space; ///< where the white space before the name begins
    const char* name;
    const char* nameEnd;
    const char* value; ///< behind the opening quote
    const char* valueEnd;
    markup::TagName* known; ///< its name
    bool isPlainForm;       ///< "=" and the quote, a double one, stand right behind the name
    bool isPlainValue;      ///< no reference, white space but spaces, or double quote in it
    bool isTokens;          ///< as it is declared, for whoever looks

    /// There is one space before it, too.
    [[nodiscard]] bool isPlain() const noexcept {
        return isPlainForm && space + 1 == name && *space == ' ';
    }

    [[nodiscard]] std::string_view nameText() const noexcept { return {name, nameEnd}; }
    [[nodiscard]] std::string_view valueText() const noexcept { return {value, valueEnd}; }
};

/// What is wrong with the text of a tag; no message, no fault.
struct TagFault {
    const char16_t* message = nullptr;
    const char* place = nullptr;
    std::string_view text; ///< what the message names
};

/// The parts of a tag, as it is written.
class TagText {
public:
    enum class Result : std::uint8_t {
        Complete,
        CutShort, ///< the text ends inside the tag
        Faulty    ///< not well-formed; `fault` says why
    };

    TagText(TagMemory& memory, const LimitRules& limits) noexcept
        : memory_(memory), limits_(limits) {}

    /// Takes the start tag at `less` apart. Its names are known from then on.
    Result readStartTag(const char* less, const char* textEnd);
    /// Takes the end tag at `less` apart: a name, `expected` as a rule, and white space.
    Result readEndTag(const char* less, const char* textEnd, std::string_view expected);

    const char* name = nullptr;
    const char* nameEnd = nullptr;
    markup::TagName* known = nullptr; ///< the name of a start tag
    std::vector<TagAttribute> attributes;
    const TagAttribute* again() const noexcept { ///< the first that has the name of one before it
        return again_ == noAttribute ? nullptr : &attributes[again_];
    }
    bool hasPlainForm = false;   ///< all attributes are plain, and no white space follows them
    bool hasPlainValues = false; ///< all attributes
    std::vector<markup::TagName*> prefixed; ///< attributes with a prefix, but for declarations
    bool hasDeclarations = false;           ///< of namespaces
    const char* endSpace = nullptr;         ///< the white space before the end of the tag
    const char* end = nullptr;              ///< behind the ">"
    bool isEmptyElement = false;
    TagFault fault;

    [[nodiscard]] std::string_view nameText() const noexcept { return {name, nameEnd}; }

private:
    static constexpr std::size_t noAttribute = ~std::size_t{0};

    Result meet(markup::TagName*& met, std::string_view text);
    Result readElementName(const char* start, const char* textEnd);
    Result readName(const char* start, const char* textEnd);
    Result readAttribute(const char* space, const char* start, const char* textEnd);
    Result readAttributeName(TagAttribute& attribute, const char* textEnd);
    Result readValue(TagAttribute& attribute, const char* quote, const char* textEnd);
    void add(const TagAttribute& attribute);
    Result fail(std::u16string_view message, const char* place, std::string_view text = {});
    Result failLimit(std::u16string_view message, const char* place, std::size_t limit);

    TagMemory& memory_;
    const LimitRules& limits_;
    std::string limit_; ///< that of the fault
    std::uint64_t number_ = 0;
    std::size_t again_ = noAttribute;
};

} // namespace nu
