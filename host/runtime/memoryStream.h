#pragma once

#include <span>
#include <string_view>

#include "host/runtime/stream.h"

namespace host {

/// A stream whose bytes lie in one block of memory that can be read in place.
class NUXML_API TCustomMemoryStream : public TStream {
public:
    ~TCustomMemoryStream() override;

    /// The first byte of the block; valid until the stream is written to, resized or destroyed.
    [[nodiscard]] const std::byte* Memory() const noexcept { return memory_; }

    std::size_t Read(void* buffer, std::size_t count) override;
    std::int64_t Seek(std::int64_t offset, SeekOrigin origin) override;
    /// Final, because whoever reads in place relies on it.
    std::int64_t GetSize() final { return static_cast<std::int64_t>(size_); }

protected:
    TCustomMemoryStream() = default;

    const std::byte* memory_ = nullptr; ///< the block; null only without bytes
    std::size_t size_ = 0;              ///< bytes in use
    std::size_t position_ = 0;          ///< from the beginning; may be behind the end
};

/// Reads memory that belongs to somebody else, without a copy. The memory must stay unchanged and
/// alive as long as the stream. Writing throws nothing and takes nothing.
class NUXML_API TMemoryViewStream final : public TCustomMemoryStream {
public:
    explicit TMemoryViewStream(std::span<const std::byte> bytes) noexcept;
    explicit TMemoryViewStream(std::string_view bytes) noexcept;

    std::size_t Write(const void* buffer, std::size_t count) override;
};

/// A growing stream in memory of its own. Behind its size there are always readableSlack readable
/// zero bytes, so that block-wise readers may look a little too far.
class NUXML_API TMemoryStream : public TCustomMemoryStream {
public:
    /// The number of zero bytes that can be read behind the size.
    static constexpr std::size_t readableSlack = 64;

    TMemoryStream();
    /// A stream that holds a copy of `bytes`, positioned at its start.
    explicit TMemoryStream(std::string_view bytes);
    ~TMemoryStream() override;

    std::size_t Write(const void* buffer, std::size_t count) override;
    void SetSize(std::int64_t size) override;

    /// The block for writing in place; its first GetSize() bytes are the content.
    [[nodiscard]] std::byte* WritableMemory() noexcept { return block_; }
    /// Makes room for `capacity` bytes without changing the content.
    void Reserve(std::size_t capacity);
    /// Drops the content and gives the memory back.
    void Clear() noexcept;

private:
    NUXML_LOCAL void growFor(std::size_t size);
    NUXML_LOCAL void changeSize(std::size_t size);

    std::byte* block_;
    std::size_t capacity_ = 0;
};

} // namespace host
