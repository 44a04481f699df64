#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "nuXmlParser/conforming/attributeDeclarations.h"

namespace nu {

/// What is declared for the tags of an element, by the names of whoever reads tags. `Name` has
/// `lastTag`, see markup::TagChecks.
template <class Name> struct DeclaredTag {
    struct Default {
        Name* name; ///< null where its tags have to be looked at
        const AttributeDefault* attribute;
    };

    ElementDeclaration* declaration;
    std::vector<Default> defaults{}; ///< when hasNames says so
    bool hasNames = false;

    /// Whether the value, whose white space is spaces alone, has to be changed.
    [[nodiscard]] bool changes(const Name& name, std::string_view value) const noexcept {
        const bool isCollapsed =
            value.find(' ') == value.npos ||
            (value.front() != ' ' && value.back() != ' ' && value.find("  ") == value.npos);
        return !isCollapsed && declaration->isTokens(name.text);
    }
    /// Calls `use` for each default that the tag of that number lacks, until it says false; gives
    /// whether it never did.
    template <class Use> bool forEachMissing(std::uint64_t tag, Use&& use) const {
        for (const Default& each : defaults) {
            if ((each.name == nullptr || each.name->lastTag != tag) && !use(each)) {
                return false;
            }
        }
        return true;
    }
    /// Finds the names of the defaults by `find`.
    template <class Find> void findNames(Find&& find) {
        if (!hasNames) {
            defaults.reserve(declaration->defaults().size());
            for (const AttributeDefault& attribute : declaration->defaults()) {
                defaults.push_back({find(attribute.name()), &attribute});
            }
            hasNames = true;
        }
    }
};

/// These by numbers, which names keep: 0 for an element for which nothing is declared that means
/// anything to its tags.
template <class Name> class DeclaredTags {
public:
    /// Enters what is declared for the element of a name.
    [[nodiscard]] std::uint32_t add(ElementDeclaration* declaration) {
        if (declaration == nullptr ||
            (declaration->defaults().empty() && !declaration->hasTokens())) {
            return 0;
        }
        tags_.push_back(std::make_unique<DeclaredTag<Name>>(DeclaredTag<Name>{declaration}));
        return static_cast<std::uint32_t>(tags_.size());
    }
    [[nodiscard]] DeclaredTag<Name>* find(std::uint32_t number) noexcept {
        return number == 0 ? nullptr : tags_[number - 1].get();
    }
    void clear() noexcept { tags_.clear(); }

private:
    std::vector<std::unique_ptr<DeclaredTag<Name>>> tags_; ///< which stay where they are
};

} // namespace nu
