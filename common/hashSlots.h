#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace nu {

/// Entries found by their hash, which is their member `hash` and comes from textHash.h.
///
/// Open addressing; at least half of the slots, a power of two, are free. The first ones lie in the
/// table itself, so that who has few entries allocates nothing. The entries belong to somebody else
/// and stay where they are.
template <class Entry, std::size_t firstSlots> class HashSlots {
public:
    HashSlots() = default;
    HashSlots(const HashSlots&) = delete;
    HashSlots& operator=(const HashSlots&) = delete;

    /// The entry of that hash for which `test` holds, or null.
    template <class Hash, class Test>
    [[nodiscard, gnu::always_inline]] inline Entry* find(Hash hash, Test&& test) const {
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t place = hash & mask; slots_[place] != nullptr;
             place = (place + 1) & mask) {
            if (slots_[place]->hash == hash && test(*slots_[place])) {
                return slots_[place];
            }
        }
        return nullptr;
    }
    /// Makes room for one more. Throws std::bad_alloc.
    void reserve() {
        if (2 * (count_ + 1) > slots_.size()) [[unlikely]] {
            grow();
        }
    }
    /// Enters an entry that is not there, for which there is room.
    void enter(Entry& entry) noexcept {
        place(entry);
        ++count_;
    }
    [[nodiscard]] std::size_t count() const noexcept { return count_; }
    /// All slots; those that are free are null.
    [[nodiscard]] std::span<Entry* const> slots() const noexcept { return slots_; }

private:
    [[gnu::noinline]] void grow() {
        std::vector<Entry*> slots(2 * slots_.size());
        const std::span<Entry*> former = std::exchange(slots_, slots);
        for (Entry* entry : former) {
            if (entry != nullptr) {
                place(*entry);
            }
        }
        moreSlots_.swap(slots);
    }
    void place(Entry& entry) noexcept {
        const std::size_t mask = slots_.size() - 1;
        std::size_t place = entry.hash & mask;
        while (slots_[place] != nullptr) {
            place = (place + 1) & mask;
        }
        slots_[place] = &entry;
    }

    std::array<Entry*, firstSlots> firstSlots_{};
    std::size_t count_ = 0;
    std::span<Entry*> slots_ = firstSlots_;
    std::vector<Entry*> moreSlots_; ///< where the first do not do
};

} // namespace nu
