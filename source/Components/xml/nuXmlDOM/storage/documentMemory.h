#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

namespace nu {

/// The memory of one document: nodes, names and texts come out of its blocks and all go back at
/// once with it.
///
/// What is released one by one is used again for what is asked for later. Sizes are in bytes and
/// known to the owner of each piece, so pieces carry no header. Pieces are aligned to 8 bytes.
class DocumentMemory {
    static constexpr std::size_t granule = 8;

public:
    DocumentMemory();
    DocumentMemory(const DocumentMemory&) = delete;
    DocumentMemory& operator=(const DocumentMemory&) = delete;
    ~DocumentMemory();

    /// Room for `size` bytes, which is not cleared. Throws std::bad_alloc.
    [[nodiscard]] void* allocate(std::size_t size) {
        const std::size_t needed = rounded(size);
        if (needed <= largestExact) [[likely]] {
            FreePiece*& list = exact_[needed / granule];
            if (list != nullptr) {
                return std::exchange(list, list->next);
            }
            if (needed <= static_cast<std::size_t>(end_ - free_)) [[likely]] {
                return std::exchange(free_, free_ + needed);
            }
        }
        return allocateSlow(needed);
    }
    /// Takes back what allocate gave for the same size.
    void release(void* piece, std::size_t size) noexcept;

    /// What a piece of that size takes.
    [[nodiscard]] static constexpr std::size_t rounded(std::size_t size) noexcept {
        return size < granule ? granule : (size + granule - 1) / granule * granule;
    }

    /// How much there is for pieces below the size of a block of their own.
    [[nodiscard]] std::size_t size() const noexcept;

    /// Keeps everything alive that `other` uses now: pieces of it have moved to this document.
    void retain(const DocumentMemory& other);

private:
    class Blocks;
    struct Retained;
    /// A piece that waits to be used again; the size is there in pieces above largestExact.
    struct FreePiece {
        FreePiece* next;
        std::size_t size;
    };

    /// Up to here there is a list of free pieces for each size.
    static constexpr std::size_t largestExact = 256;
    /// From here on a piece has a block of its own.
    static constexpr std::size_t smallestOwn = 8192;
    /// Lists of the free pieces between: of 256 bytes and more, of 512 and more, up to 4096.
    static constexpr std::size_t powerCount = 5;

    [[nodiscard]] void* allocateSlow(std::size_t needed);
    [[nodiscard]] void* reusePiece(std::size_t needed) noexcept;
    void startBlock(std::size_t needed);

    std::byte* free_ = nullptr;
    std::byte* end_ = nullptr;
    std::array<FreePiece*, largestExact / granule + 1> exact_{};
    std::array<FreePiece*, powerCount> powers_{};
    std::shared_ptr<Blocks> blocks_;
    /// What came with nodes of other documents; null as long as none came.
    std::unique_ptr<Retained> retained_;
};

} // namespace nu
