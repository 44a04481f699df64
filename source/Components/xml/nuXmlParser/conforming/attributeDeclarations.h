#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/textHash.h"
#include "nuXmlParser/markup/tagName.h"

namespace nu {

/// One attribute as an attribute list declares it.
struct AttributeDeclaration {
    std::string name;
    bool isTokens = false; ///< of any type but CDATA: its values are trimmed and collapsed
    bool hasDefault = false;
    std::string value; ///< the default, normalised and escaped for double quotes
};

/// The declared attributes of one element type. The first declaration of an attribute counts.
class ElementDeclaration {
public:
    void declare(AttributeDeclaration attribute);
    /// Defaults may have to be added to any tag, and values of other types than CDATA change where
    /// they hold spaces.
    [[nodiscard]] markup::TagUse use() const noexcept {
        return !defaults_.empty() ? markup::TagUse::Looked
               : hasTokens_       ? markup::TagUse::SpaceCounts
                                  : markup::TagUse::AsIs;
    }
    [[nodiscard]] const AttributeDeclaration* find(std::string_view name) const noexcept {
        const auto found = places_.find(name);
        return found == places_.end() ? nullptr : &attributes_[found->second];
    }
    /// The same for the attribute that stands at `position` in a tag, where mostly the same one
    /// stood in the tag before.
    [[nodiscard]] const AttributeDeclaration* findAt(std::string_view name, std::size_t position) {
        if (position < hints_.size() && attributes_[hints_[position]].name == name) {
            return &attributes_[hints_[position]];
        }
        const AttributeDeclaration* const found = find(name);
        if (found != nullptr) {
            hints_.resize(std::max(hints_.size(), position + 1));
            hints_[position] = static_cast<std::size_t>(found - attributes_.data());
        }
        return found;
    }
    /// Calls `use` for each default whose attribute is not among those of the tag `tagNumber`,
    /// which were told by `noteSpecified`.
    template <class Use> void forEachMissing(std::uint64_t tagNumber, Use&& use) const {
        for (const std::size_t place : defaults_) {
            if (specifiedIn_[place] != tagNumber) {
                use(attributes_[place]);
            }
        }
    }
    void noteSpecified(const AttributeDeclaration& attribute, std::uint64_t tagNumber) noexcept {
        specifiedIn_[static_cast<std::size_t>(&attribute - attributes_.data())] = tagNumber;
    }

private:
    std::vector<AttributeDeclaration> attributes_;
    std::vector<std::uint64_t> specifiedIn_;
    std::vector<std::size_t> defaults_;
    std::vector<std::size_t> hints_; ///< by position in a tag
    bool hasTokens_ = false;
    std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> places_;
};

inline void ElementDeclaration::declare(AttributeDeclaration attribute) {
    const std::size_t place = attributes_.size();
    if (places_.try_emplace(attribute.name, place).second) {
        if (attribute.hasDefault) {
            defaults_.push_back(place);
        }
        hasTokens_ = hasTokens_ || attribute.isTokens;
        attributes_.push_back(std::move(attribute));
        specifiedIn_.push_back(0);
    }
}

/// What attribute lists declare, by element type.
using ElementDeclarations =
    std::unordered_map<std::string, ElementDeclaration, TextHash, std::equal_to<>>;

/// What they mean to tags of one type.
[[nodiscard]] inline markup::TagUse useOfTags(const ElementDeclarations& declarations,
                                              std::string_view element) {
    const auto found = declarations.find(element);
    return found == declarations.end() ? markup::TagUse::AsIs : found->second.use();
}

} // namespace nu
