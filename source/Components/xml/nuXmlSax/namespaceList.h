#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/caseFolding.h"
#include "host/runtime/export.h"

/// One namespace declaration in scope. Prefix and URI are copies with stable addresses: they live
/// until the scope is removed.
struct TNuSaxNamespace {
    std::int32_t Level = 0; ///< depth of the declaring element
    std::u16string Prefix;  ///< empty for the default namespace
    std::u16string
        URI; ///< as it is declared; empty where the declaration takes a default namespace back
    /// From 1 on. Declarations of one number have the same URI; a new one gets the number of a
    /// former one only where that is quick to see.
    std::uint64_t Number = 0;
};

class TNuSaxNamespaceList;

namespace nu {

/// A prefix, letter case ignored unless its list compares exactly, and what it stands for. It stays
/// where it is as long as its list is not cleared.
class PrefixScope {
public:
    PrefixScope(std::u16string_view text, std::uint64_t hash) : text_(text), hash_(hash) {}

    /// The declaration in force; null without one.
    [[nodiscard]] const TNuSaxNamespace* newest() const noexcept { return newest_; }

private:
    friend class ::TNuSaxNamespaceList;

    [[nodiscard]] bool hasDeclaration(std::size_t index) const noexcept {
        return index <= further_.size();
    }
    [[nodiscard]] TNuSaxNamespace& declaration(std::size_t index) noexcept {
        return index == 0 ? first_ : *further_[index - 1];
    }

    std::u16string text_;
    std::uint64_t hash_;
    PrefixScope* next_ = nullptr; ///< the next one in its hash slot
    const TNuSaxNamespace* newest_ = nullptr;
    /// The first count_ are in scope, the newest one hides those before. The others keep their
    /// texts: often the same declaration comes and goes with its element. Most prefixes are
    /// declared once, in the first.
    TNuSaxNamespace first_;
    std::vector<std::unique_ptr<TNuSaxNamespace>> further_;
    std::size_t count_ = 0;
};

} // namespace nu

/// The namespace declarations in scope. Prefixes are compared ignoring letter case (unlike
/// Namespaces in XML), so `P:x` finds a declaration of `p`, unless a reader behind the conforming
/// stage wants it otherwise.
///
/// Each prefix knows the declaration in force, and a list of the declarations in the order in which
/// they came tells what to take back when an element ends. So a lookup takes the same time whatever
/// is nested and however many prefixes there are.
class NUXML_API TNuSaxNamespaceList {
public:
    /// Adds a declaration; one of the same prefix is hidden, not replaced.
    void AddNamespace(std::int32_t level, std::u16string_view prefix, std::u16string_view uri) {
        AddNamespace(level, prefixScope(prefix), prefix, uri);
    }
    /// The newest declaration of `prefix`, or null.
    [[nodiscard]] const TNuSaxNamespace* GetNamespace(std::u16string_view prefix) const {
        if (prefix.empty()) {
            return defaultNamespace();
        }
        const nu::PrefixScope* recent = recent_[recentPlace(prefix)];
        if (recent == nullptr || recent->text_ != prefix) {
            recent = find(prefix);
        }
        return recent != nullptr ? recent->newest_ : nullptr;
    }
    /// The newest declaration of the default namespace, or null.
    [[nodiscard]] const TNuSaxNamespace* defaultNamespace() const noexcept {
        return default_.newest();
    }
    /// Removes every declaration whose level is `level` or more.
    void RemoveLevel(std::int32_t level) {
        if (!inScope_.empty() && highestLevel_ >= level) {
            removeFrom(level);
        }
    }
    /// Removes all declarations and forgets all prefixes.
    void Clear();
    /// Whether prefixes are compared exactly. For an empty list.
    void compareExactly(bool isExact) noexcept;
    /// How many declarations are in scope, hidden ones included.
    [[nodiscard]] std::size_t Count() const noexcept { return inScope_.size(); }

    /// \cond internal
    /// The prefix, for whoever asks for it again and again.
    [[nodiscard]] nu::PrefixScope& prefixScope(std::u16string_view prefix);
    void AddNamespace(std::int32_t level, nu::PrefixScope& scope, std::u16string_view prefix,
                      std::u16string_view uri);
    /// Adds the declaration of that number once more, where it is the one that the prefix had last
    /// in this place; false where it is not.
    bool addAgain(std::int32_t level, nu::PrefixScope& scope, std::uint64_t number);
    /// \endcond

private:
    static constexpr std::size_t recentCount = 32;

    /// Prefixes that differ in letter case alone have the same place.
    static std::size_t recentPlace(std::u16string_view prefix) noexcept {
        return (NuFoldCase(prefix.front()) + prefix.size()) % recentCount;
    }
    [[nodiscard]] nu::PrefixScope* find(std::u16string_view prefix) const;
    void removeFrom(std::int32_t level);
    NUXML_LOCAL void removeUnordered(std::int32_t level);
    NUXML_LOCAL void enter(std::int32_t level, nu::PrefixScope& scope,
                           TNuSaxNamespace& declaration);
    NUXML_LOCAL void removeNewest() noexcept;
    NUXML_LOCAL void dropPrefixes() noexcept;
    NUXML_LOCAL void link(nu::PrefixScope& scope) noexcept;

    nu::PrefixScope default_{{}, 0};
    std::vector<std::unique_ptr<nu::PrefixScope>> prefixes_;
    std::vector<nu::PrefixScope*> slots_; ///< the first prefix of each hash slot, or null
    /// Prefixes that were asked for last, or null.
    mutable std::array<nu::PrefixScope*, recentCount> recent_{};
    /// The prefixes of the declarations in scope, oldest first.
    std::vector<nu::PrefixScope*> inScope_;
    std::uint64_t lastNumber_ = 0;
    std::int32_t highestLevel_ = 0;
    bool isExact_ = false;
    bool isOrdered_ = true; ///< no declaration has a lower level than one before it
};
