#include "nuXmlDOM/storage/documentMemory.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <new>
#include <span>
#include <unordered_map>
#include <vector>

#include "common/expects.h"
namespace nu {

namespace {

constexpr std::size_t smallestBlock = 4096;
constexpr std::size_t largestBlock = std::size_t{1} << 23;

/// 256 is the first power of two with a list.
constexpr std::size_t powerIndex(std::size_t size) noexcept {
    return static_cast<std::size_t>(std::bit_width(size)) - 9;
}

} // namespace

/// The blocks themselves, which documents share after nodes have moved from one to another.
class DocumentMemory::Blocks {
public:
    // NOLINTNEXTLINE(modernize-use-equals-default): that would clear the first block
    Blocks() noexcept {}
    Blocks(const Blocks&) = delete;
    Blocks& operator=(const Blocks&) = delete;
    ~Blocks() {
        while (shared_ != nullptr) {
            ::operator delete(std::exchange(shared_, shared_->next));
        }
        while (own_ != nullptr) {
            ::operator delete(std::exchange(own_, own_->next));
        }
    }

    [[nodiscard]] std::size_t total() const noexcept { return total_; }

    /// The block that is there from the beginning.
    [[nodiscard]] std::span<std::byte> first() noexcept { return first_; }

    /// A new block for many pieces; its size follows what the document holds already, so that at
    /// most about a tenth stands empty.
    std::byte* addBlock(std::size_t needed, std::size_t& size) {
        size = rounded(std::clamp(total_ / 8, smallestBlock, largestBlock)) - sizeof(SharedBlock);
        size = std::max(size, needed);
        shared_ = new (::operator new(sizeof(SharedBlock) + size)) SharedBlock{shared_};
        total_ += sizeof(SharedBlock) + size;
        return reinterpret_cast<std::byte*>(shared_ + 1);
    }

    /// A block for one piece alone.
    void* addOwn(std::size_t size) {
        if (size > std::numeric_limits<std::size_t>::max() - sizeof(OwnBlock)) {
            throw std::bad_alloc();
        }
        auto* block = new (::operator new(sizeof(OwnBlock) + size)) OwnBlock{nullptr, own_, this};
        if (own_ != nullptr) {
            own_->previous = block;
        }
        own_ = block;
        return block + 1;
    }

    /// Frees a block of addOwn when it is one of these. Blocks that came with nodes from another
    /// document stay until that document's memory goes, which may be in use by another thread.
    void removeOwn(void* piece) noexcept {
        OwnBlock* block = static_cast<OwnBlock*>(piece) - 1;
        if (block->owner != this) {
            return;
        }
        (block->previous != nullptr ? block->previous->next : own_) = block->next;
        if (block->next != nullptr) {
            block->next->previous = block->previous;
        }
        ::operator delete(block);
    }

private:
    struct SharedBlock {
        SharedBlock* next;
    };
    struct OwnBlock {
        OwnBlock* previous;
        OwnBlock* next;
        Blocks* owner;
    };

    SharedBlock* shared_ = nullptr;
    OwnBlock* own_ = nullptr;
    std::size_t total_ = smallestBlock;
    /// With what stands in front of it no larger than the others.
    static constexpr std::size_t ahead = 64;
    alignas(granule) std::array<std::byte, smallestBlock - ahead> first_;
};

/// The blocks of other documents, each once.
struct DocumentMemory::Retained {
    void keep(const std::shared_ptr<Blocks>& blocks, const Blocks* own) {
        if (blocks.get() == own || taken.contains(blocks.get())) {
            return;
        }
        order.reserve(std::bit_ceil(order.size() + 1));
        taken.emplace(blocks.get(), 0);
        order.push_back(blocks);
    }

    std::vector<std::shared_ptr<Blocks>> order;
    /// How many of what the owner of the blocks keeps in turn have been looked at.
    std::unordered_map<const Blocks*, std::size_t> taken;
};

DocumentMemory::DocumentMemory() : blocks_(std::make_shared<Blocks>()) {
    free_ = blocks_->first().data();
    end_ = free_ + blocks_->first().size();
}

DocumentMemory::~DocumentMemory() = default;

void* DocumentMemory::allocateSlow(std::size_t needed) {
    if (needed >= smallestOwn) {
        return blocks_->addOwn(needed);
    }
    if (void* piece = reusePiece(needed)) {
        return piece;
    }
    if (needed > static_cast<std::size_t>(end_ - free_)) {
        startBlock(needed);
    }
    return std::exchange(free_, free_ + needed);
}

void* DocumentMemory::reusePiece(std::size_t needed) noexcept {
    if (needed <= largestExact) {
        return nullptr;
    }
    // Of the list for its own power of two only the first few pieces are looked at: a size that
    // comes and goes again and again is among them. Further on the first piece is large enough.
    constexpr int mostLooks = 8;
    for (std::size_t index = powerIndex(needed); index < powerCount; ++index) {
        FreePiece** place = &powers_[index];
        for (int looks = 0; *place != nullptr && looks < mostLooks; ++looks) {
            FreePiece* piece = *place;
            if (piece->size >= needed) {
                *place = piece->next;
                if (piece->size > needed) {
                    release(reinterpret_cast<std::byte*>(piece) + needed, piece->size - needed);
                }
                return piece;
            }
            place = &piece->next;
        }
    }
    return nullptr;
}

void DocumentMemory::startBlock(std::size_t needed) {
    std::size_t size = 0;
    std::byte* block = blocks_->addBlock(needed, size);
    if (free_ != end_) {
        release(free_, static_cast<std::size_t>(end_ - free_));
    }
    free_ = block;
    end_ = block + size;
}

void DocumentMemory::release(void* piece, std::size_t size) noexcept {
    const std::size_t used = rounded(size);
    if (used >= smallestOwn) {
        blocks_->removeOwn(piece);
        return;
    }
    auto* free = static_cast<FreePiece*>(piece);
    FreePiece*& list = used <= largestExact ? exact_[used / granule] : powers_[powerIndex(used)];
    expects(free != list && reinterpret_cast<std::uintptr_t>(piece) % granule == 0);
    free->next = list;
    if (used > largestExact) {
        free->size = used;
    }
    list = free;
}

std::size_t DocumentMemory::size() const noexcept { return blocks_->total(); }

void DocumentMemory::retain(const DocumentMemory& other) {
    if (!retained_) {
        retained_ = std::make_unique<Retained>();
    }
    // 1. The blocks of the other document itself.
    retained_->keep(other.blocks_, blocks_.get());
    // 2. What it keeps for others, as far as that came since it was last asked.
    if (!other.retained_) {
        return;
    }
    std::size_t& taken = retained_->taken[other.blocks_.get()];
    const std::vector<std::shared_ptr<Blocks>>& further = other.retained_->order;
    for (; taken < further.size(); ++taken) {
        retained_->keep(further[taken], blocks_.get());
    }
}

} // namespace nu
