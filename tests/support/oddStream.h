#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "host/runtime/exception.h"
#include "host/runtime/stream.h"

namespace support {

/// A stream that is no memory stream, can be counted, and misbehaves as told.
class OddStream final : public host::TStream {
public:
    explicit OddStream(std::string bytes) : bytes_(std::move(bytes)) { ++alive; }
    ~OddStream() override { --alive; }

    std::size_t readsAtMost = std::numeric_limits<std::size_t>::max();
    std::int64_t failsAt = std::numeric_limits<std::int64_t>::max(); ///< a read from there throws
    std::optional<std::int64_t> claimedSize;
    inline static int alive = 0;

    std::size_t Read(void* buffer, std::size_t count) override {
        if (position_ >= failsAt) {
            throw host::EReadError(u"broken");
        }
        const auto left = std::max<std::int64_t>(
            std::min<std::int64_t>(static_cast<std::int64_t>(bytes_.size()), failsAt) - position_,
            0);
        count = std::min({count, readsAtMost, static_cast<std::size_t>(left)});
        std::memcpy(buffer, bytes_.data() + (count == 0 ? 0 : position_), count);
        position_ += static_cast<std::int64_t>(count);
        return count;
    }
    std::size_t Write(const void*, std::size_t) override { return 0; }
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override {
        const std::int64_t base = origin == host::SeekOrigin::Beginning ? 0
                                  : origin == host::SeekOrigin::Current ? position_
                                                                        : GetSize();
        return position_ = base + offset;
    }
    std::int64_t GetSize() override {
        return claimedSize.value_or(static_cast<std::int64_t>(bytes_.size()));
    }

private:
    std::string bytes_;
    std::int64_t position_ = 0;
};

/// The bytes of UTF-16 text, low byte first.
[[nodiscard]] inline std::string utf16Bytes(std::u16string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

} // namespace support
