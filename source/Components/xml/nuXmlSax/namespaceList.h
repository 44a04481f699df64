#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
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
    std::u16string URI;
    std::uint64_t Number = 0;          ///< of all that were ever added to the list, from 1
    std::size_t Hash = 0;              ///< of the prefix, letter case ignored
    TNuSaxNamespace* Hidden = nullptr; ///< the declaration of the same prefix that this one hides
    TNuSaxNamespace* Next = nullptr;   ///< the entry of another prefix in the same hash slot
};

/// The namespace declarations in scope, oldest first. Prefixes are compared ignoring letter case
/// (unlike Namespaces in XML), so `P:x` finds a declaration of `p`, unless a reader behind the
/// conforming stage wants it otherwise.
///
/// Lookup goes through a hash table of the prefixes, whose time grows neither with their number nor
/// with the number of declarations of one of them.
class NUXML_API TNuSaxNamespaceList {
public:
    /// Adds a declaration; one of the same prefix is hidden, not replaced.
    void AddNamespace(std::int32_t level, std::u16string_view prefix, std::u16string_view uri);
    /// The newest declaration of `prefix`, or null.
    [[nodiscard]] const TNuSaxNamespace* GetNamespace(std::u16string_view prefix) const {
        // Elements without a prefix ask for the default namespace, tag by tag.
        if (prefix.empty()) {
            return default_;
        }
        const TNuSaxNamespace* recent = recent_[recentPlace(prefix)];
        return recent != nullptr && recent->Prefix == prefix ? recent : find(prefix);
    }
    /// Removes every declaration whose level is `level` or more.
    void RemoveLevel(std::int32_t level) {
        if (count_ > 0 && highestLevel_ >= level) {
            removeFrom(level);
        }
    }
    void Clear();
    /// Whether prefixes are compared exactly. For an empty list.
    void compareExactly(bool isExact) noexcept { isExact_ = isExact; }
    [[nodiscard]] std::size_t Count() const noexcept { return count_; }

private:
    static constexpr std::size_t recentCount = 32;

    /// Prefixes that differ in letter case alone have the same place.
    static std::size_t recentPlace(std::u16string_view prefix) noexcept {
        return (NuFoldCase(prefix.front()) + prefix.size()) % recentCount;
    }
    [[nodiscard]] const TNuSaxNamespace* find(std::u16string_view prefix) const;
    [[nodiscard]] bool isSame(std::u16string_view left, std::u16string_view right) const {
        return left == right || (!isExact_ && NuEqualFolded(left, right));
    }
    void removeFrom(std::int32_t level);
    [[nodiscard]] TNuSaxNamespace** placeOf(const TNuSaxNamespace& entry);
    void removeNewest();
    void link(TNuSaxNamespace& entry);
    void rebuildSlots(std::size_t slotCount);

    /// The first count_ entries are in use; those behind keep their memory for the next
    /// declaration.
    std::deque<TNuSaxNamespace> entries_;
    std::size_t count_ = 0;
    std::uint64_t addedCount_ = 0;
    bool isExact_ = false;
    const TNuSaxNamespace* default_ = nullptr; ///< the newest entry without a prefix
    std::int32_t highestLevel_ = 0;
    bool isOrdered_ = true; ///< no entry has a lower level than one before it
    /// The first of the prefixes in each hash slot, as their newest entries; or null.
    std::vector<TNuSaxNamespace*> slots_;
    /// Entries that were found or made last, each the newest one of its prefix, or null.
    mutable std::array<const TNuSaxNamespace*, recentCount> recent_{};
};
