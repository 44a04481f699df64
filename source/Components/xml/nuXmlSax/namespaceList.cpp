#include "nuXmlSax/namespaceList.h"

#include <algorithm>

#include "common/textHash.h"

namespace {

constexpr std::size_t firstSlotCount = 16;
/// Entries whose memory is kept between documents.
constexpr std::size_t keptEntries = 1024;

std::size_t hashPrefix(std::u16string_view prefix) {
    return static_cast<std::size_t>(nu::hashText(nu::hashKeys(), prefix, NuFoldCase));
}

} // namespace

void TNuSaxNamespaceList::AddNamespace(std::int32_t level, std::u16string_view prefix,
                                       std::u16string_view uri) {
    if (count_ == entries_.size()) {
        entries_.emplace_back();
    }
    if (2 * (count_ + 1) > slots_.size()) {
        rebuildSlots(std::max(firstSlotCount, 2 * slots_.size()));
    }
    TNuSaxNamespace& entry = entries_[count_];
    entry.Level = level;
    entry.Prefix = prefix;
    entry.URI = uri;
    entry.Number = ++addedCount_;
    entry.Hash = hashPrefix(prefix);
    isOrdered_ = isOrdered_ && (count_ == 0 || level >= highestLevel_);
    highestLevel_ = count_ == 0 ? level : std::max(highestLevel_, level);
    ++count_;
    link(entry);
}

const TNuSaxNamespace* TNuSaxNamespaceList::find(std::u16string_view prefix) const {
    if (count_ == 0) {
        return nullptr;
    }
    const std::size_t hash = hashPrefix(prefix);
    const TNuSaxNamespace* entry = slots_[hash & (slots_.size() - 1)];
    while (entry != nullptr && (entry->Hash != hash || !isSame(entry->Prefix, prefix))) {
        entry = entry->Next;
    }
    recent_[recentPlace(prefix)] = entry;
    return entry;
}

void TNuSaxNamespaceList::removeFrom(std::int32_t level) {
    // 1. Declarations come and go with their elements, so those to remove stand at the end.
    while (count_ > 0 && entries_[count_ - 1].Level >= level) {
        removeNewest();
    }
    // 2. Levels given in another order leave some in between.
    if (!isOrdered_) {
        const auto begin = entries_.begin();
        const auto end = begin + static_cast<std::ptrdiff_t>(count_);
        const auto kept = std::stable_partition(
            begin, end, [level](const TNuSaxNamespace& entry) { return entry.Level < level; });
        count_ = static_cast<std::size_t>(kept - begin);
        rebuildSlots(slots_.size());
    }
    // 3. What is left tells the highest level.
    highestLevel_ = count_ == 0 ? 0 : entries_[count_ - 1].Level;
    if (!isOrdered_) {
        for (std::size_t index = 0; index < count_; ++index) {
            highestLevel_ = std::max(highestLevel_, entries_[index].Level);
        }
        isOrdered_ = count_ == 0;
    }
}

void TNuSaxNamespaceList::Clear() {
    if (entries_.size() > keptEntries) {
        entries_.clear();
        slots_.clear();
    }
    std::fill(slots_.begin(), slots_.end(), nullptr);
    recent_.fill(nullptr);
    count_ = 0;
    default_ = nullptr;
    highestLevel_ = 0;
    isOrdered_ = true;
}

/// Where the newest entry of a prefix, or one that is about to be that, stands in its hash slot:
/// the pointer to the entry that it replaces, or the null at the end.
TNuSaxNamespace** TNuSaxNamespaceList::placeOf(const TNuSaxNamespace& entry) {
    TNuSaxNamespace** place = &slots_[entry.Hash & (slots_.size() - 1)];
    while (*place != nullptr &&
           ((*place)->Hash != entry.Hash || !isSame((*place)->Prefix, entry.Prefix))) {
        place = &(*place)->Next;
    }
    return place;
}

void TNuSaxNamespaceList::removeNewest() {
    const TNuSaxNamespace& entry = entries_[--count_];
    TNuSaxNamespace** const place = placeOf(entry);
    *place = entry.Hidden != nullptr ? entry.Hidden : entry.Next;
    if (entry.Hidden != nullptr) {
        entry.Hidden->Next = entry.Next;
    }
    if (entry.Prefix.empty()) {
        default_ = entry.Hidden;
    } else {
        recent_[recentPlace(entry.Prefix)] = nullptr;
    }
}

void TNuSaxNamespaceList::link(TNuSaxNamespace& entry) {
    TNuSaxNamespace** const place = placeOf(entry);
    entry.Hidden = *place;
    entry.Next = *place != nullptr ? (*place)->Next : nullptr;
    *place = &entry;
    if (entry.Prefix.empty()) {
        default_ = &entry;
    } else {
        recent_[recentPlace(entry.Prefix)] = &entry;
    }
}

void TNuSaxNamespaceList::rebuildSlots(std::size_t slotCount) {
    slots_.assign(slotCount, nullptr);
    recent_.fill(nullptr);
    default_ = nullptr;
    for (std::size_t index = 0; index < count_; ++index) {
        link(entries_[index]);
    }
}
