#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "host/runtime/export.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// The sets of units at which a run of text can stop.
enum class StopSet : std::uint8_t {
    Less,  ///< "<"
    Quote, ///< the double quote
    Name,  ///< what can end or divide a name: space > / : =
    Solid, ///< everything above U+0020
};

/// What 64 units of text are: for each stop set one bit a unit, lowest bit first.
///
/// NUL and the last unit of the text are stops of every set, because the input ends there; so a
/// search through these masks needs no other test for the end.
class NUXML_API MarkupBlock {
public:
    static constexpr std::size_t length = 64;

    /// Classifies the units from `from` on; the text goes up to `last`, inclusively. Memory behind
    /// `last` is not touched.
    void classify(PNuXmlChar from, PNuXmlChar last) noexcept;

    /// The text has moved.
    void forget() noexcept { start_ = nullptr; }

    /// The first stop of `set` at or after `place` where the text ends at `last`.
    template <StopSet set>
    [[nodiscard]] PNuXmlChar find(PNuXmlChar place, PNuXmlChar last) noexcept {
        std::size_t offset =
            (reinterpret_cast<std::uintptr_t>(place) - reinterpret_cast<std::uintptr_t>(start_)) /
            sizeof(NuXmlChar);
        if (offset < length) [[likely]] {
            const std::uint64_t stops = stops_[static_cast<std::size_t>(set)] >> offset;
            if (stops != 0) [[likely]] {
                return place + std::countr_zero(stops);
            }
            place = start_ + length;
        }
        return findBeyond(set, place, last);
    }

private:
    /// The same for a place outside the block; the block moves there.
    [[nodiscard]] PNuXmlChar findBeyond(StopSet set, PNuXmlChar place, PNuXmlChar last) noexcept;

    PNuXmlChar start_ = nullptr;
    std::uint64_t stops_[4] = {};
};

} // namespace nu
