#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/runtime/stream.h"
#include "nuXmlParser/conforming/byteRoom.h"

namespace nu {

/// The bytes of a source with as much look-ahead as somebody needs: a stream that is read in
/// blocks, or memory.
class ByteSource {
public:
    /// Reads a stream from its position on, `blockSize` bytes at a time.
    ByteSource(host::TStream& stream, std::size_t blockSize)
        : stream_(&stream), blockSize_(blockSize) {}
    /// Bytes that stay where they are.
    explicit ByteSource(std::string_view bytes) noexcept : memory_(bytes), hasEnded_(true) {}

    [[nodiscard]] bool isInMemory() const noexcept { return stream_ == nullptr; }
    /// What is read and not done with. Of memory, all the rest.
    [[nodiscard]] std::string_view ahead() const noexcept {
        return isInMemory() ? memory_ : std::string_view(block_.data() + used_, filled_ - used_);
    }
    /// Whether nothing follows what is ahead, as far as is known.
    [[nodiscard]] bool hasEnded() const noexcept { return hasEnded_; }
    /// Reads a block behind what is ahead; false at the end. Throws what the stream throws, and
    /// host::EReadError where it gives more than was asked for.
    bool readMore();
    /// Reads until `count` bytes are ahead or the source ends.
    void readAtLeast(std::size_t count) {
        while (ahead().size() < count && readMore()) {
        }
    }
    /// The first bytes ahead are done with.
    void skip(std::size_t count) noexcept;
    /// The number of bytes done with.
    [[nodiscard]] std::int64_t done() const noexcept { return done_; }

private:
    host::TStream* stream_ = nullptr;
    std::size_t blockSize_ = 0;
    std::string_view memory_;
    ByteRoom block_;
    std::size_t used_ = 0;
    std::size_t filled_ = 0; ///< where the bytes that were read end in the block
    std::int64_t done_ = 0;
    bool hasEnded_ = false;
};

} // namespace nu
