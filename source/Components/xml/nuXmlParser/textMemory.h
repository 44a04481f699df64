#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "host/runtime/memoryStream.h"
#include "host/runtime/stream.h"

namespace nu {

/// The stream as one whose bytes lie in memory; null where they do not.
[[nodiscard]] host::TCustomMemoryStream* asMemoryStream(host::TStream& stream) noexcept;

/// A block of bytes that is not cleared and knows how many of them are used.
class TextMemory {
public:
    TextMemory() = default;
    /// Room for `capacity` bytes. Throws std::bad_alloc.
    explicit TextMemory(std::size_t capacity);

    /// Reads `size` bytes from the stream's position. The room grows with what really comes, so a
    /// stream that promises too much costs no memory. Throws host::EReadError when it ends early.
    static TextMemory read(host::TStream& stream, std::size_t size);
    /// UTF-16 as UTF-8. Throws std::bad_alloc.
    static TextMemory encoded(std::u16string_view units);

    [[nodiscard]] std::byte* data() const noexcept { return block_.get(); }
    [[nodiscard]] std::string_view bytes() const noexcept {
        return {reinterpret_cast<const char*>(block_.get()), used_};
    }
    void release() noexcept { block_.reset(); }

private:
    struct Freer {
        void operator()(std::byte* block) const noexcept { std::free(block); }
    };

    void growTo(std::size_t capacity);

    std::unique_ptr<std::byte, Freer> block_;
    std::size_t capacity_ = 0;
    std::size_t used_ = 0;
};

} // namespace nu
