#pragma once

#include <algorithm>
#include <array>
#include <cstring>

#include "sinkStream.h"

namespace tool {

/// Compares what is written to it with another stream, from the place of that on.
class ComparingStream final : public SinkStream {
public:
    explicit ComparingStream(host::TStream& other) noexcept : other_(other) {}

    std::size_t Write(const void* buffer, std::size_t count) override {
        const auto* bytes = static_cast<const char*>(buffer);
        for (std::size_t left = count; isSame_ && left > 0;) {
            const std::size_t part = other_.Read(block_.data(), std::min(left, block_.size()));
            isSame_ = part > 0 && std::memcmp(bytes, block_.data(), part) == 0;
            bytes += part;
            left -= part;
        }
        return count;
    }

    /// Whether all that was written is all that the other one has.
    [[nodiscard]] bool isSame() { return isSame_ && other_.Read(block_.data(), 1) == 0; }

private:
    host::TStream& other_;
    bool isSame_ = true;
    std::array<char, 16384> block_;
};

} // namespace tool
