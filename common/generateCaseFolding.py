#!/usr/bin/env python3
"""Writes caseFoldingRanges.h: the simple case folding of the Basic Multilingual Plane.

Usage: common/generateCaseFolding.py > common/caseFoldingRanges.h
"""

import unicodedata


def fold(code):
    """The full folding where it is one character, else the lower case where that is one."""
    for folded in (chr(code).casefold(), chr(code).lower()):
        if len(folded) == 1 and ord(folded) < 0x10000:
            return ord(folded)
    return code


def lower(code):
    """The lower case where it is one character."""
    lowered = chr(code).lower()
    return ord(lowered) if len(lowered) == 1 and ord(lowered) < 0x10000 else code


def ranges(folds):
    """Groups (code, folded) pairs of equal distance whose codes follow each other in steps of 1
    or 2."""
    found = []
    for code, folded in folds:
        distance = folded - code
        if found:
            first, last, step, known = found[-1]
            gap = code - last
            if distance == known and (gap == step or (first == last and gap in (1, 2))):
                found[-1] = (first, code, gap, known)
                continue
        found.append((code, code, 1, distance))
    return found


def print_ranges(name, found):
    print(f"inline constexpr std::array<CaseFoldingRange, {len(found)}> {name} = {{{{")
    entries = [f"{{0x{first:04X}, 0x{last:04X}, {step}, {distance}}}"
               for first, last, step, distance in found]
    for start in range(0, len(entries), 3):
        print("    " + ", ".join(entries[start:start + 3]) + ",")
    print("}};")


def main():
    folds = [(code, fold(code)) for code in range(0x80, 0x10000)
             if not 0xD800 <= code <= 0xDFFF and fold(code) != code]
    assert all(fold(folded) == folded for _, folded in folds)
    print(f"""#pragma once

// Written by generateCaseFolding.py from Unicode {unicodedata.unidata_version}; not to be edited.

#include <array>
#include <cstdint>

namespace nu {{

/// The units `first` to `last`, each `step` behind the one before, fold to the unit `distance`
/// behind (or before) them.
struct CaseFoldingRange {{
    std::uint16_t first;
    std::uint16_t last;
    std::uint8_t step;
    std::int32_t distance;
}};

// Everything above ASCII that folds to another unit.
// clang-format off""")
    print_ranges("caseFoldingRanges", ranges(folds))
    print("// Everything whose lower case is another unit than that, with the way to the lower case.")
    print_ranges("lowerCaseRanges", ranges(
        [(code, lower(code)) for code in range(0x80, 0x10000)
         if not 0xD800 <= code <= 0xDFFF and lower(code) != fold(code)]))
    print("// clang-format on\n\n} // namespace nu")


if __name__ == "__main__":
    main()
