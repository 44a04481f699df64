#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace nu {

/// Memory for bytes that are about to be written. Nothing clears it before: most documents are
/// smaller than a block, and clearing touches every page of it.
class ByteRoom {
public:
    [[nodiscard]] char* data() noexcept { return bytes_.get(); }
    [[nodiscard]] const char* data() const noexcept { return bytes_.get(); }
    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    /// Makes `kept`, which stands in here, the first bytes, and room for `size` bytes at least,
    /// with these. What is not kept is lost.
    void keep(std::string_view kept, std::size_t size) {
        if (size > size_) {
            size = std::max(size, 2 * size_);
            auto grown = std::make_unique_for_overwrite<char[]>(size);
            std::copy(kept.begin(), kept.end(), grown.get());
            bytes_ = std::move(grown);
            size_ = size;
        } else if (!kept.empty()) {
            std::memmove(bytes_.get(), kept.data(), kept.size());
        }
    }

private:
    std::unique_ptr<char[]> bytes_;
    std::size_t size_ = 0;
};

} // namespace nu
