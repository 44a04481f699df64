#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/hashSlots.h"
#include "common/simd/block.h"
#include "common/textHash.h"
#include "nuXmlParser/scan.h"

namespace nu::markup {

/// Bytes to be compared with others as far as a block reaches, in one go.
struct BlockHead {
    explicit BlockHead(std::string_view text) noexcept
        : beyond(text.size() < scanBlock ? 0xFFFFU & ~((1U << text.size()) - 1) : 0) {
        std::memcpy(bytes.data(), text.data(), std::min(text.size(), bytes.size()));
    }

    /// Whether they stand at `place`, behind which a block can be read.
    [[nodiscard]] bool standsAt(const char* place) const noexcept {
        const auto equal = simd::Block::load(place).equals(simd::Block::load(bytes.data()));
        return (equal.mask() | beyond) == 0xFFFF;
    }
    /// Whether `byte`, which is not NUL, is among them.
    [[nodiscard]] bool contains(char byte) const noexcept {
        const auto sought = simd::Block::all(static_cast<unsigned char>(byte));
        return simd::Block::load(bytes.data()).equals(sought).mask() != 0;
    }

    std::array<char, scanBlock> bytes{};
    unsigned beyond; ///< ones for what of the block is behind the text
};

/// A name as it stands in the bytes of a document, prepared for being met again.
struct ByteName {
    /// What may come behind a name: its first attribute or, behind an attribute, the next one; the
    /// first child element; the next element on the same level.
    enum Follower : std::uint8_t { Attribute, Child, Sibling };

    /// Longer names are looked up each time.
    static constexpr std::size_t longestGuess = 48;

    /// \param text stays where it is as long as the name is used
    ByteName(std::string_view text, std::uint64_t hash) noexcept
        : head(text), text(text), hash(hash) {}

    /// Whether `byte`, which is not NUL, is in the name.
    [[nodiscard]] bool contains(char byte) const noexcept {
        return head.contains(byte) ||
               (text.size() > scanBlock && text.find(byte, scanBlock) != text.npos);
    }

    /// Whether the bytes at `place`, behind which longestGuess can be read, begin with the name.
    [[nodiscard]] bool standsAt(const char* place) const noexcept {
        if (!head.standsAt(place)) {
            return false;
        }
        return text.size() <= scanBlock || (text.size() <= longestGuess &&
                                            std::memcmp(place + scanBlock, text.data() + scanBlock,
                                                        text.size() - scanBlock) == 0);
    }

    BlockHead head;
    std::string_view text;
    std::uint64_t hash;
};

/// A further base of names whose elements may be taken as a whole: how the last start tag that
/// could be met again went on behind the name, up to its ">".
struct LeafName {
    [[nodiscard]] bool hasTag() const noexcept { return tagSize != 0; }
    /// \param rest what stands behind the name; forgotten where that is more than a block
    void setTag(std::string_view rest) noexcept {
        tag = BlockHead(rest);
        tagSize = rest.size() <= scanBlock ? rest.size() : 0;
    }

    BlockHead tag{""};
    std::size_t tagSize = 0;
};

/// The names of a document that were met so far: `Name` is a ByteName with what its user knows of
/// it, and with `Name* followers[3]`.
template <class Name> class ByteNames {
    static_assert(std::is_trivially_destructible_v<Name>);

public:
    ByteNames() = default;
    ByteNames(const ByteNames&) = delete;
    ByteNames& operator=(const ByteNames&) = delete;

    /// Of a text that is not empty and behind whose start 8 bytes can be read.
    [[nodiscard]] std::uint64_t hashOf(std::string_view text) const noexcept {
        const auto eightAt = [](const char* place) {
            std::uint64_t eight = 0;
            std::memcpy(&eight, place, sizeof eight);
            return eight;
        };
        constexpr std::size_t eight = sizeof(std::uint64_t);
        std::uint64_t hash = keys_.start ^ text.size();
        if (text.size() <= eight) {
            const std::size_t beyond = 64 - 8 * text.size();
            return mixHash(keys_, hash ^ (eightAt(text.data()) & ~std::uint64_t{0} >> beyond));
        }
        // The last eight may have been looked at in part.
        const char* const last = text.data() + text.size() - eight;
        for (const char* place = text.data(); place < last; place += eight) {
            hash = mixHash(keys_, hash ^ eightAt(place));
        }
        return mixHash(keys_, hash ^ eightAt(last));
    }
    /// The name of that hash, null when it was not met yet. Behind the start of `text` a block can
    /// be read.
    [[nodiscard]] Name* find(std::string_view text, std::uint64_t hash) const noexcept {
        return slots_.find(hash, [text](const Name& name) {
            return name.text.size() == text.size() &&
                   (name.standsAt(text.data()) || name.text == text);
        });
    }
    /// The same for a name of `size` bytes, behind whose beginning longestGuess can be read.
    [[nodiscard]] Name* findAt(const char* start, std::size_t size,
                               std::uint64_t hash) const noexcept {
        return slots_.find(hash, [start, size](const Name& name) {
            return name.text.size() == size && name.standsAt(start);
        });
    }
    [[nodiscard]] std::size_t count() const noexcept { return slots_.count(); }
    /// Enters a name that is not there.
    template <class... Arguments>
    [[gnu::always_inline]] inline Name& add(std::string_view text, std::uint64_t hash,
                                            Arguments&&... arguments) {
        slots_.reserve();
        if (used_ == room_) {
            blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(count() * sizeof(Name)));
            block_ = blocks_.back().get();
            room_ = count();
            used_ = 0;
        }
        Name& name = *new (block_ + used_ * sizeof(Name))
                         Name(text, hash, std::forward<Arguments>(arguments)...);
        ++used_;
        slots_.enter(name);
        return name;
    }

private:
    static constexpr std::size_t firstSlots = 64;
    static constexpr std::size_t firstRoom = 16;

    const HashKeys& keys_ = hashKeys();
    // What a short document takes lies here, so that it allocates nothing.
    HashSlots<Name, firstSlots> slots_;
    alignas(Name) std::array<std::byte, firstRoom * sizeof(Name)> firstBlock_;
    /// Names stand where they are made; a block has room for as many as there were before.
    std::vector<std::unique_ptr<std::byte[]>> blocks_;
    std::byte* block_ = firstBlock_.data(); ///< the last one
    std::size_t room_ = firstRoom;
    std::size_t used_ = 0;
};

} // namespace nu::markup
