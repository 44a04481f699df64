#include "host/runtime/memoryStream.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <new>

#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"

namespace host {

namespace {

/// What a stream without a block of its own points to: reading in place and the slack behind it
/// must work for the empty stream too. Nothing is ever written here.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): stands in for a block
alignas(std::max_align_t) std::byte emptyBlock[TMemoryStream::readableSlack] = {};

constexpr std::size_t largestSize =
    static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max()) -
    TMemoryStream::readableSlack;

} // namespace

TCustomMemoryStream::~TCustomMemoryStream() = default;

std::size_t TCustomMemoryStream::Read(void* buffer, std::size_t count) {
    if (position_ >= size_) {
        return 0;
    }
    const std::size_t taken = std::min(count, size_ - position_);
    if (taken > 0) {
        std::memcpy(buffer, memory_ + position_, taken);
    }
    position_ += taken;
    return taken;
}

std::int64_t TCustomMemoryStream::Seek(std::int64_t offset, SeekOrigin origin) {
    std::int64_t base = 0;
    if (origin == SeekOrigin::Current) {
        base = static_cast<std::int64_t>(position_);
    } else if (origin == SeekOrigin::End) {
        base = static_cast<std::int64_t>(size_);
    }
    std::int64_t target = 0;
    if (__builtin_add_overflow(base, offset, &target) || target < 0) {
        throw EStreamError(messages::seekError);
    }
    position_ = static_cast<std::size_t>(target);
    return target;
}

TMemoryViewStream::TMemoryViewStream(std::span<const std::byte> bytes) noexcept {
    memory_ = bytes.data();
    size_ = bytes.size();
}

TMemoryViewStream::TMemoryViewStream(std::string_view bytes) noexcept
    : TMemoryViewStream(std::as_bytes(std::span(bytes))) {}

std::size_t TMemoryViewStream::Write(const void* /*buffer*/, std::size_t /*count*/) { return 0; }

TMemoryStream::TMemoryStream() : block_(emptyBlock) { memory_ = block_; }

TMemoryStream::TMemoryStream(std::string_view bytes) : TMemoryStream() {
    Write(bytes.data(), bytes.size());
    position_ = 0;
}

TMemoryStream::~TMemoryStream() { Clear(); }

std::size_t TMemoryStream::Write(const void* buffer, std::size_t count) {
    if (count == 0) {
        return 0;
    }
    if (position_ > largestSize || count > largestSize - position_) {
        throw std::bad_alloc();
    }
    // What is written may lie in this very block, which moves when it grows.
    const auto* source = static_cast<const std::byte*>(buffer);
    const bool isOwn = !std::less<>()(source, block_) && std::less<>()(source, block_ + size_);
    const std::ptrdiff_t ownOffset = isOwn ? source - block_ : 0;
    const std::size_t end = position_ + count;
    if (end > size_) {
        const std::size_t formerSize = size_;
        growFor(end);
        if (position_ > formerSize) {
            std::memset(block_ + formerSize, 0, position_ - formerSize);
        }
        changeSize(end);
    }
    std::memmove(block_ + position_, isOwn ? block_ + ownOffset : source, count);
    position_ = end;
    return count;
}

void TMemoryStream::SetSize(std::int64_t size) {
    if (size < 0) {
        throw EStreamError(messages::seekError);
    }
    const auto newSize = static_cast<std::size_t>(size);
    const std::size_t formerSize = size_;
    if (newSize > capacity_) {
        Reserve(newSize);
    }
    if (newSize > formerSize) {
        std::memset(block_ + formerSize, 0, newSize - formerSize);
    }
    if (newSize != formerSize) {
        changeSize(newSize);
    }
    position_ = std::min(position_, size_);
}

void TMemoryStream::Reserve(std::size_t capacity) {
    if (capacity <= capacity_) {
        return;
    }
    if (capacity > largestSize) {
        throw std::bad_alloc();
    }
    void* former = capacity_ == 0 ? nullptr : block_;
    void* grown = std::realloc(former, capacity + readableSlack);
    if (grown == nullptr) {
        throw std::bad_alloc();
    }
    block_ = static_cast<std::byte*>(grown);
    memory_ = block_;
    capacity_ = capacity;
    std::memset(block_ + size_, 0, readableSlack);
}

void TMemoryStream::Clear() noexcept {
    if (capacity_ > 0) {
        std::free(block_);
    }
    block_ = emptyBlock;
    memory_ = block_;
    size_ = 0;
    position_ = 0;
    capacity_ = 0;
}

void TMemoryStream::growFor(std::size_t size) {
    if (size > capacity_) {
        Reserve(
            std::max({size, std::min(capacity_ + capacity_ / 2, largestSize), std::size_t{64}}));
    }
}

void TMemoryStream::changeSize(std::size_t size) {
    size_ = size;
    // The empty stream shares a constant block, which is zero already.
    if (capacity_ > 0) {
        std::memset(block_ + size_, 0, readableSlack);
    }
}

} // namespace host
