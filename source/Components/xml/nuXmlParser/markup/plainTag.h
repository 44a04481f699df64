#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "nuXmlParser/chars.h"
#include "nuXmlParser/markup/byteBlock.h"
#include "nuXmlParser/markup/tagName.h"

/// \file
/// Start tags as nearly all documents have them, passed in the UTF-8 as it came.

namespace nu::markup {

namespace detail {

inline constexpr std::array<bool, 256> endsTagName = [] {
    std::array<bool, 256> ends{};
    for (unsigned byte = 0; byte <= ' '; ++byte) {
        ends[byte] = true;
    }
    for (const char c : {'=', '>', '/', '<', '"', '\'', '&'}) {
        ends[static_cast<unsigned char>(c)] = true;
    }
    return ends;
}();

/// A bit for each of 16 bytes that ends a name, as far as plain tags go.
inline unsigned findNameEnds(const char* place) noexcept {
    const auto bytes = simd::Block::load(place);
    return (bytes.isAtMost(cNuSpaceA) | simd::isAnyOf<cNuEqualA, cNuGtA, cNuSlashA>(bytes)).mask();
}

} // namespace detail

/// Passes start tags whose names are all known, one after the other.
///
/// Plain is a tag with one space behind the name of the element, "=" and double quotes right behind
/// the names of attributes, each of another name, and values without "<", white space but spaces,
/// and references but the five that need no declaration. Anything else is left to somebody who goes
/// step by step, who also makes names known. A name is guessed by what followed the same name last
/// time.
class PlainTags {
public:
    /// Tags that have more names with prefixes are not plain.
    static constexpr std::size_t mostPrefixed = 16;

    explicit PlainTags(TagNames& names) noexcept : names_(names) {}

    /// Passes the start tag at `less`, and gives the place behind its ">"; null where it is not
    /// plain, or where an attribute of it begins behind `limit`. `reach` bytes behind `limit` can
    /// be read.
    [[gnu::always_inline]] const char* passStartTag(const char* less, const char* limit) noexcept;

    // Of the tag that was passed last

    [[nodiscard]] TagName& element() const noexcept { return *element_; }
    [[nodiscard]] bool isEmptyElement() const noexcept { return isEmptyElement_; }
    /// The names with prefixes, the element's among them.
    [[nodiscard]] std::span<TagName* const> prefixed() const noexcept {
        return {prefixed_.data(), prefixedCount_};
    }
    /// Whether a namespace is declared.
    [[nodiscard]] bool hasDeclaration() const noexcept { return hasDeclaration_; }

    // What comes next is guessed from where the document is

    /// An element has begun: its children come next.
    void enter(TagName& name) noexcept {
        before_ = &name;
        kind_ = ByteName::Child;
    }
    /// An element has ended; null where its name is not known.
    void leave(TagName* name) noexcept {
        before_ = name;
        kind_ = ByteName::Sibling;
    }
    /// The name that the next element surely has if it begins at `start`, else null. `reach` bytes
    /// can be read from there.
    [[nodiscard]] TagName* guessElement(const char* start) const noexcept {
        TagName* const name = before_ == nullptr ? nullptr : before_->followers[kind_];
        return name != nullptr && name->standsAt(start) && endsName(start + name->text.size())
                   ? name
                   : nullptr;
    }
    /// The same for the attribute behind another one, or behind the name of the element.
    [[nodiscard]] static TagName* guessAttribute(const TagName& before,
                                                 const char* start) noexcept {
        TagName* const name = before.followers[ByteName::Attribute];
        return name != nullptr && name->standsAt(start) && endsName(start + name->text.size())
                   ? name
                   : nullptr;
    }
    /// The next element has this name.
    void follow(TagName& name) noexcept {
        if (before_ != nullptr) {
            before_->followers[kind_] = &name;
        }
    }
    /// Names are about to go.
    void forget() noexcept { before_ = element_ = nullptr; }
    /// A number that no tag had before.
    [[nodiscard]] std::uint64_t nextNumber() noexcept { return ++number_; }

private:
    static bool endsName(const char* place) noexcept {
        return detail::endsTagName[static_cast<unsigned char>(*place)];
    }
    /// The name that begins at `start`, null where it is not known.
    [[nodiscard]] [[gnu::noinline]] TagName* findName(const char* start,
                                                      const char* limit) const noexcept {
        const char* place = start;
        for (;; place += scanBlock) {
            if (const unsigned ends = detail::findNameEnds(place); ends != 0) [[likely]] {
                place += std::countr_zero(ends);
                return names_.findAt(start, static_cast<std::size_t>(place - start));
            }
            if (place > limit) {
                return nullptr;
            }
        }
    }
    /// The closing quote of a value, or null.
    static const char* findQuote(const char* place, const char* limit) noexcept {
        for (;;) {
            const unsigned stops = classifyXmlValue(place).stops;
            if (stops == 0) {
                if (place > limit) [[unlikely]] {
                    return nullptr;
                }
                place += scanBlock;
                continue;
            }
            place += std::countr_zero(stops);
            if (*place == '"') [[likely]] {
                return place;
            }
            place = *place == '&' ? skipPlainReference(place) : nullptr;
            if (place == nullptr || place > limit) {
                return nullptr;
            }
        }
    }
    [[nodiscard]] bool notePrefixed(TagName& name) noexcept {
        if (prefixedCount_ == mostPrefixed) {
            return false;
        }
        prefixed_[prefixedCount_++] = &name;
        return true;
    }

    TagNames& names_;
    TagName* before_ = nullptr;
    ByteName::Follower kind_ = ByteName::Child;
    TagName* element_ = nullptr;
    std::uint64_t number_ = 0;
    std::array<TagName*, mostPrefixed> prefixed_{};
    std::size_t prefixedCount_ = 0;
    bool isEmptyElement_ = false;
    bool hasDeclaration_ = false;
};

inline const char* PlainTags::passStartTag(const char* less, const char* limit) noexcept {
    // 1. The name.
    const char* place = less + 1;
    TagName* name = guessElement(place);
    if (name == nullptr) [[unlikely]] {
        name = findName(place, limit);
        if (name == nullptr) {
            return nullptr;
        }
        follow(*name);
    }
    if (!name->isPlain) {
        return nullptr;
    }
    place += name->text.size();
    element_ = name;
    prefixedCount_ = 0;
    hasDeclaration_ = false;
    if (name->prefixLength != 0) {
        prefixed_[prefixedCount_++] = name;
    }

    // 2. The attributes, each of another name.
    if (*place == ' ') {
        const std::uint64_t number = nextNumber();
        TagName* before = name;
        ++place;
        for (;;) {
            while ((*place == ' ' || *place == '\n' || *place == '\t') && place <= limit) {
                ++place;
            }
            if (*place == '>' || *place == '/') {
                // White space before the end draws a warning where there are no attributes.
                if (before == name) {
                    return nullptr;
                }
                break;
            }
            if (place > limit) [[unlikely]] {
                return nullptr;
            }
            TagName* attribute = guessAttribute(*before, place);
            if (attribute == nullptr) [[unlikely]] {
                attribute = findName(place, limit);
                if (attribute == nullptr) {
                    return nullptr;
                }
                before->followers[ByteName::Attribute] = attribute;
            }
            before = attribute;
            if (attribute->tag == number) [[unlikely]] {
                return nullptr;
            }
            attribute->tag = number;
            if (attribute->isDeclaration) {
                hasDeclaration_ = true;
            } else if (attribute->prefixLength != 0 && !notePrefixed(*attribute)) {
                return nullptr;
            }
            place += attribute->text.size();
            if (place[0] != '=' || place[1] != '"') [[unlikely]] {
                return nullptr;
            }
            place = findQuote(place + 2, limit);
            if (place == nullptr) [[unlikely]] {
                return nullptr;
            }
            ++place;
            if (*place == '>' || *place == '/') {
                break;
            }
            if (*place != ' ' && *place != '\n' && *place != '\t') [[unlikely]] {
                return nullptr;
            }
        }
    }

    // 3. The end.
    isEmptyElement_ = *place == '/';
    place += isEmptyElement_ ? 1 : 0;
    return *place == '>' ? place + 1 : nullptr;
}

} // namespace nu::markup
