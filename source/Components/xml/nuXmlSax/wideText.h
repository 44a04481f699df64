#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "common/simd/block.h"
#include "common/utf8.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// Pieces of UTF-8 as UTF-16, one behind the other in memory that serves again. A piece stays where
/// it is until all go.
class WideText {
public:
    /// All pieces go.
    void startAnew() noexcept {
        if (!former_.empty()) [[unlikely]] {
            former_.clear();
        }
        next_ = block_.get();
    }
    /// Well-formed UTF-8, all of it ASCII or not. Behind it a block more can be read.
    [[gnu::always_inline]] std::u16string_view append(std::string_view bytes, bool isAscii) {
        if (room() <= bytes.size()) [[unlikely]] {
            grow(bytes.size() + 1);
        }
        NuXmlChar* const units = next_;
        if (isAscii) [[likely]] {
            widen(bytes, units);
            next_ += bytes.size();
        } else {
            next_ += NuDecodeUtf8Prefix(bytes, units).Units;
        }
        return {units, static_cast<std::size_t>(next_ - units)};
    }
    /// The same for any, with a character behind that does not count.
    std::u16string_view append(std::string_view bytes, NuXmlChar behind) {
        if (room() < bytes.size() + 1) {
            grow(bytes.size() + 1);
        }
        NuXmlChar* const units = next_;
        const std::size_t length = NuDecodeUtf8Prefix(bytes, units).Units;
        units[length] = behind;
        next_ += length + 1;
        return {units, length};
    }

private:
    static constexpr std::size_t firstRoom = 500;

    [[nodiscard]] std::size_t room() const noexcept {
        return static_cast<std::size_t>(end_ - next_);
    }
    /// Whole blocks: what is behind the text is overwritten.
    static void widen(std::string_view bytes, NuXmlChar* units) noexcept {
        for (std::size_t place = 0; place < bytes.size(); place += simd::blockSize) {
            simd::widenBlock(bytes.data() + place, units + place);
        }
    }
    void grow(std::size_t length) {
        const std::size_t room =
            std::max({firstRoom, length, 2 * static_cast<std::size_t>(end_ - block_.get())});
        auto block = std::make_unique_for_overwrite<NuXmlChar[]>(room + simd::blockSize);
        if (next_ != block_.get()) {
            former_.push_back(std::move(block_));
        }
        block_ = std::move(block);
        next_ = block_.get();
        end_ = next_ + room;
    }

    std::unique_ptr<NuXmlChar[]> block_;
    std::vector<std::unique_ptr<NuXmlChar[]>> former_; ///< of pieces that are still there
    NuXmlChar* next_ = nullptr;
    NuXmlChar* end_ = nullptr;
};

} // namespace nu
