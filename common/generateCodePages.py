#!/usr/bin/env python3
"""Writes codePageTables.h: the upper halves of the single-byte code pages.

Usage: common/generateCodePages.py > common/codePageTables.h
"""

PAGES = {
    437: "cp437", 737: "cp737", 775: "cp775", 850: "cp850", 852: "cp852", 855: "cp855",
    857: "cp857", 858: "cp858", 860: "cp860", 861: "cp861", 862: "cp862", 863: "cp863",
    865: "cp865", 866: "cp866", 869: "cp869", 874: "cp874",
    **{number: f"cp{number}" for number in range(1250, 1259)},
    20127: "ascii", 20866: "koi8_r", 21866: "koi8_u",
    **{28590 + part: f"iso8859_{part}" for part in range(1, 17) if part != 12},
}

HOLE = 0xFFFD


def unit(number, codec, byte):
    try:
        text = bytes([byte]).decode(codec)
    except UnicodeDecodeError:
        # Holes among the Windows pages' C1 codes keep their value, so that they survive a round
        # trip; everywhere else a hole is no character.
        windows = number == 874 or 1250 <= number <= 1258
        return byte if windows and byte < 0xA0 else HOLE
    assert len(text) == 1 and ord(text) < 0x10000
    return ord(text)


def main():
    print("""#pragma once

// Written by generateCodePages.py from Python's codecs; not to be edited.

#include <array>
#include <cstdint>

namespace nu {

/// What the bytes 0x80 to 0xFF of a single-byte code page mean; those below are ASCII in all of
/// them. U+FFFD stands for a byte that means nothing.
struct CodePage {
    std::uint32_t number;
    std::array<char16_t, 128> upper;
};

// In the order of their numbers.
// clang-format off""")
    print(f"inline constexpr std::array<CodePage, {len(PAGES)}> codePages = {{{{")
    for number, codec in sorted(PAGES.items()):
        assert all(bytes([byte]).decode(codec) == chr(byte) for byte in range(0x80)), codec
        print(f"    {{{number}, {{")
        for row in range(0x80, 0x100, 16):
            units = (f"0x{unit(number, codec, byte):X}" for byte in range(row, row + 16))
            print("        " + ", ".join(units) + ",")
        print("    }},")
    print("}};\n// clang-format on\n\n} // namespace nu")


if __name__ == "__main__":
    main()
