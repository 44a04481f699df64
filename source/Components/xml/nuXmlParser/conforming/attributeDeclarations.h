#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/textHash.h"
#include "nuXmlParser/markup/byteBlock.h"

namespace nu {

/// One attribute as an attribute list declares it.
struct AttributeDeclaration {
    std::string name;
    bool isTokens = false; ///< of any type but CDATA: its values are trimmed and collapsed
    bool hasDefault = false;
    std::string value; ///< the default, normalised and escaped for double quotes
};

/// An attribute that tags get which lack it, as it would stand in them. Behind its beginnings and
/// ends as much can be read as in the bytes of a document.
class AttributeDefault {
public:
    AttributeDefault(std::string_view name, std::string_view value)
        : nameSize_(name.size()), valueSize_(value.size()) {
        text_.reserve(size() + markup::reach);
        text_.append(" ").append(name).append("=\"").append(value).append("\"");
        text_.append(markup::reach, '\0');
        for (const char c : value) {
            kinds_.isAscii = kinds_.isAscii && static_cast<unsigned char>(c) < 0x80;
            kinds_.isVerbatim = kinds_.isVerbatim && c != '&' && c != '<' && c != '>' && c != '\'';
        }
    }

    [[nodiscard]] std::string_view name() const noexcept { return text().substr(1, nameSize_); }
    [[nodiscard]] std::string_view value() const noexcept {
        return text().substr(nameSize_ + 3, valueSize_);
    }
    [[nodiscard]] const markup::PassedKinds& kinds() const noexcept { return kinds_; }
    /// What is written for it, from the space before the name on.
    [[nodiscard]] std::string_view text() const noexcept { return {text_.data(), size()}; }
    /// What counts as come out of it.
    [[nodiscard]] std::size_t cost() const noexcept { return nameSize_ + valueSize_; }

private:
    [[nodiscard]] std::size_t size() const noexcept { return nameSize_ + valueSize_ + 4; }

    std::string text_;
    std::size_t nameSize_;
    std::size_t valueSize_;
    markup::PassedKinds kinds_;
};

/// The declared attributes of one element type. The first declaration of an attribute counts.
class ElementDeclaration {
public:
    void declare(const AttributeDeclaration& attribute);

    [[nodiscard]] const std::vector<AttributeDefault>& defaults() const noexcept {
        return defaults_;
    }
    /// Whether values of any attribute are lists of tokens.
    [[nodiscard]] bool hasTokens() const noexcept { return hasTokens_; }
    /// Whether those of this attribute are.
    [[nodiscard]] bool isTokens(std::string_view name) const noexcept {
        const auto found = places_.find(name);
        return found != places_.end() && attributes_[found->second].isTokens;
    }
    /// The same for the attribute that stands at `position` in a tag, where mostly the same one
    /// stood in the tag before.
    [[nodiscard]] bool isTokensAt(std::string_view name, std::size_t position) {
        if (position < hints_.size() && attributes_[hints_[position]].name == name) {
            return attributes_[hints_[position]].isTokens;
        }
        const auto found = places_.find(name);
        if (found == places_.end()) {
            return false;
        }
        hints_.resize(std::max(hints_.size(), position + 1));
        hints_[position] = found->second;
        return attributes_[found->second].isTokens;
    }

private:
    struct Attribute {
        std::string name;
        bool isTokens;
    };

    std::vector<Attribute> attributes_;
    std::vector<AttributeDefault> defaults_;
    std::vector<std::size_t> hints_; ///< by position in a tag
    bool hasTokens_ = false;
    std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> places_;
};

inline void ElementDeclaration::declare(const AttributeDeclaration& attribute) {
    if (places_.try_emplace(attribute.name, attributes_.size()).second) {
        if (attribute.hasDefault) {
            defaults_.emplace_back(attribute.name, attribute.value);
        }
        hasTokens_ = hasTokens_ || attribute.isTokens;
        attributes_.push_back({attribute.name, attribute.isTokens});
    }
}

/// What attribute lists declare, by element type.
using ElementDeclarations =
    std::unordered_map<std::string, ElementDeclaration, TextHash, std::equal_to<>>;

} // namespace nu
