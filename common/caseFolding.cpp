#include "common/caseFolding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "common/caseFoldingRanges.h"

namespace {

// Distances to the folded unit, modulo 65536, in blocks of 256 units. Most blocks hold no letter
// with cases and share block 0.
struct FoldingTable {
    static constexpr std::size_t blockCount = [] {
        std::array<bool, 256> used{};
        std::size_t count = 1;
        for (const nu::CaseFoldingRange& range : nu::caseFoldingRanges) {
            for (unsigned unit = range.first; unit <= range.last; unit += range.step) {
                count += used[unit >> 8] ? 0 : 1;
                used[unit >> 8] = true;
            }
        }
        return count;
    }();

    std::array<std::uint8_t, 256> blockOf{};
    std::array<std::array<std::uint16_t, 256>, blockCount> distances{};

    consteval FoldingTable() {
        std::uint8_t filled = 0;
        for (const nu::CaseFoldingRange& range : nu::caseFoldingRanges) {
            for (unsigned unit = range.first; unit <= range.last; unit += range.step) {
                std::uint8_t& block = blockOf[unit >> 8];
                if (block == 0) {
                    block = ++filled;
                }
                distances[block][unit & 0xFF] = static_cast<std::uint16_t>(range.distance);
            }
        }
    }
};

constexpr FoldingTable foldingTable;

char16_t lowered(char16_t unit) noexcept {
    for (const nu::CaseFoldingRange& range : nu::lowerCaseRanges) {
        if (unit >= range.first && unit <= range.last && (unit - range.first) % range.step == 0) {
            return static_cast<char16_t>(unit + range.distance);
        }
    }
    return NuFoldCase(unit);
}

} // namespace

char16_t nu::foldBeyondAscii(char16_t unit) noexcept {
    const std::uint8_t block = foldingTable.blockOf[unit >> 8];
    return static_cast<char16_t>(unit + foldingTable.distances[block][unit & 0xFF]);
}

bool NuEqualFolded(std::u16string_view left, std::u16string_view right) noexcept {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char16_t one, char16_t other) {
                          return one == other || NuFoldCase(one) == NuFoldCase(other);
                      });
}

std::u16string NuFolded(std::u16string_view text) {
    std::u16string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), NuFoldCase);
    return folded;
}

std::u16string NuLowered(std::u16string_view text) {
    std::u16string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lowered);
    return result;
}
