#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "host/runtime/export.h"
#include "nuXmlParser/chars.h"

namespace nu {

/// The sets of units at which a run of text can stop.
enum class StopSet : std::uint8_t {
    Less,    ///< "<"
    Quote,   ///< the double quote
    Name,    ///< what can end or divide a name: space > / : =
    Solid,   ///< everything above U+0020
    Escaped, ///< what escaping replaces, the double quote aside: & < > '
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
    [[nodiscard]] [[gnu::always_inline]] PNuXmlChar find(PNuXmlChar place,
                                                         PNuXmlChar last) noexcept {
        const std::size_t offset = offsetOf(place);
        if (offset < length) [[likely]] {
            const std::uint64_t stops = stopsOf(set) >> offset;
            if (stops != 0) [[likely]] {
                return place + std::countr_zero(stops);
            }
            place = start_ + length;
        }
        return findBeyond(set, place, last);
    }
    /// The same; tells also whether no stop of `absent` is known to stand before that. Nothing is
    /// known of text of more than two blocks.
    template <StopSet set, StopSet absent>
    [[nodiscard]] [[gnu::always_inline]] PNuXmlChar find(PNuXmlChar place, PNuXmlChar last,
                                                         bool& isFree) noexcept {
        const std::size_t offset = offsetOf(place);
        if (offset < length) [[likely]] {
            const std::uint64_t stops = stopsOf(set) >> offset;
            if (stops != 0) [[likely]] {
                isFree = (upToFirst(stops) & stopsOf(absent) >> offset) == 0;
                return place + std::countr_zero(stops);
            }
        }
        return findBeyond(set, absent, place, last, isFree);
    }

    /// A bit for each unit of a block, the first one lowest, for each stop set.
    using Masks = std::array<std::uint64_t, 5>;

private:
    [[nodiscard]] std::size_t offsetOf(PNuXmlChar place) const noexcept {
        return (reinterpret_cast<std::uintptr_t>(place) -
                reinterpret_cast<std::uintptr_t>(start_)) /
               sizeof(NuXmlChar);
    }
    [[nodiscard]] std::uint64_t stopsOf(StopSet set) const noexcept {
        return stops_[static_cast<std::size_t>(set)];
    }
    /// Ones up to the first stop.
    static std::uint64_t upToFirst(std::uint64_t stops) noexcept { return stops ^ (stops - 1); }
    /// The same for a place outside the block; the block moves there.
    [[nodiscard]] PNuXmlChar findBeyond(StopSet set, PNuXmlChar place, PNuXmlChar last) noexcept;
    /// The same where the block, if `place` is in it, has no stop behind it.
    [[nodiscard]] PNuXmlChar findBeyond(StopSet set, StopSet absent, PNuXmlChar place,
                                        PNuXmlChar last, bool& isFree) noexcept;

    /// Classifies what stands behind less than a block of text before its end.
    void classifyRest(std::size_t lastIndex) noexcept;

    PNuXmlChar start_ = nullptr;
    Masks stops_{};
};

} // namespace nu
