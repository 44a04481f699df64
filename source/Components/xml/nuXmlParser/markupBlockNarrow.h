#pragma once

#include <cstddef>
#include <cstdint>

#include "common/simd/block.h"
#include "nuXmlParser/markupBlock.h"

/// \file
/// How the units of a MarkupBlock are classified where processors have no wide blocks. It is apart
/// so that it can be held against the other form on a processor that has them.

namespace nu::detail {

inline std::uint64_t& maskFor(MarkupBlock::Masks& masks, StopSet set) noexcept {
    return masks[static_cast<std::size_t>(set)];
}

/// The stops among 64 units; `end` is a stop of every set, and so is every NUL.
inline void classifyNarrow(PNuXmlChar units, std::uint64_t end,
                           MarkupBlock::Masks& masks) noexcept {
    using simd::isAnyOf;
    masks = {};
    std::uint64_t blank = 0;
    for (unsigned shift = 0; shift < MarkupBlock::length; shift += simd::blockSize) {
        const auto bytes = simd::Block::loadUnits(units + shift);
        const auto add = [shift](std::uint64_t& mask, simd::Block matches) {
            mask |= std::uint64_t{matches.mask()} << shift;
        };
        add(maskFor(masks, StopSet::Less), isAnyOf<cNuLtA>(bytes));
        add(maskFor(masks, StopSet::Quote), isAnyOf<cNuQuoteA>(bytes));
        add(maskFor(masks, StopSet::Name),
            isAnyOf<cNuSpaceA, cNuGtA, cNuSlashA, cNuColonA, cNuEqualA>(bytes));
        add(maskFor(masks, StopSet::Escaped), isAnyOf<cNuAmpA, cNuLtA, cNuGtA, cNuAposA>(bytes));
        add(blank, bytes.isAtMost(cNuSpaceA));
        add(end, isAnyOf<'\0'>(bytes));
    }
    maskFor(masks, StopSet::Solid) = ~blank;
    for (std::uint64_t& mask : masks) {
        mask |= end;
    }
}

} // namespace nu::detail
