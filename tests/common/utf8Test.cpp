#include "common/utf8.h"
#include "common/simd/utf8Check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

// Table 3-7 of the Unicode standard, row by row: the ranges of each byte of a sequence.
struct Row {
    std::size_t length;
    std::array<std::pair<unsigned, unsigned>, 4> ranges;
};

constexpr std::array<Row, 9> wellFormedSequences = {{
    {1, {{{0x00, 0x7F}}}},
    {2, {{{0xC2, 0xDF}, {0x80, 0xBF}}}},
    {3, {{{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}}}},
    {3, {{{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}}}},
    {3, {{{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}}}},
    {3, {{{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}}}},
    {4, {{{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}}},
    {4, {{{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}}},
    {4, {{{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}}}},
}};

// What the decoders should make of a text, found one byte at a time.
struct Expected {
    std::u16string units;      // with U+FFFD for each maximal bad prefix
    std::size_t goodBytes = 0; // before the first of them
    std::size_t goodUnits = 0;
    bool wellFormed = true;
};

Expected decodeByTable(std::string_view bytes) {
    Expected expected;
    for (std::size_t at = 0; at < bytes.size();) {
        std::size_t longest = 1;
        char32_t code = 0xFFFD;
        bool found = false;
        for (const Row& row : wellFormedSequences) {
            std::size_t fits = 0;
            while (fits < row.length && at + fits < bytes.size() &&
                   static_cast<unsigned char>(bytes[at + fits]) >= row.ranges[fits].first &&
                   static_cast<unsigned char>(bytes[at + fits]) <= row.ranges[fits].second)
                ++fits;
            longest = std::max(longest, fits);
            if (fits != row.length)
                continue;
            found = true;
            code = static_cast<unsigned char>(bytes[at]) & (fits == 1 ? 0x7Fu : 0x7Fu >> fits);
            for (std::size_t next = 1; next < fits; ++next)
                code = code * 64 + (static_cast<unsigned char>(bytes[at + next]) - 0x80u);
        }
        if (!found && expected.wellFormed) {
            expected.wellFormed = false;
            expected.goodBytes = at;
            expected.goodUnits = expected.units.size();
        }
        if (code >= 0x10000) {
            expected.units += static_cast<char16_t>(0xD800 + (code - 0x10000) / 0x400);
            expected.units += static_cast<char16_t>(0xDC00 + (code - 0x10000) % 0x400);
        } else {
            expected.units += static_cast<char16_t>(code);
        }
        at += longest;
    }
    if (expected.wellFormed) {
        expected.goodBytes = bytes.size();
        expected.goodUnits = expected.units.size();
    }
    return expected;
}

std::string hex(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        text += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    return text;
}

// Compares every decoder with the table; memory is of exactly the promised size, so that a
// sanitizer sees a step beyond it, and what a decoder must not write is checked here.
void checkDecoders(std::string_view text) {
    constexpr char16_t untouched = 0xABCD;
    const Expected expected = decodeByTable(text);
    const auto bytes = std::make_unique<char[]>(text.size());
    std::copy(text.begin(), text.end(), bytes.get());
    const std::string_view exact(bytes.get(), text.size());
    const auto room = std::make_unique<char16_t[]>(text.size());
    char16_t* const units = room.get();

    std::fill_n(units, text.size(), untouched);
    const std::optional<std::size_t> count = NuDecodeUtf8(exact, units);
    ASSERT_EQ(count.has_value(), expected.wellFormed) << hex(text);
    if (count) {
        ASSERT_EQ(std::u16string_view(units, *count), expected.units) << hex(text);
        ASSERT_TRUE(std::all_of(units + *count, units + text.size(), [](char16_t unit) {
            return unit == untouched;
        })) << hex(text);
        ASSERT_EQ(NuToUtf8(expected.units), text);
        ASSERT_EQ(NuUtf16Length(exact), *count) << hex(text);
    }
    ASSERT_EQ(NuIsUtf8(exact), count.has_value()) << hex(text);
    ASSERT_EQ(nu::simd::detail::isUtf8ByDecoding(exact), count.has_value()) << hex(text);
    const TNuUtf8Prefix prefix = NuDecodeUtf8Prefix(exact, units);
    ASSERT_EQ(prefix.Bytes, expected.goodBytes) << hex(text);
    ASSERT_EQ(std::u16string_view(units, prefix.Units),
              std::u16string_view(expected.units).substr(0, expected.goodUnits))
        << hex(text);
    ASSERT_EQ(NuFromUtf8(exact), expected.units) << hex(text);
    ASSERT_EQ(NuUtf8ToWideString(exact).value_or(u"none"),
              expected.wellFormed ? expected.units : u"none");
}

// The first and the last character of every length, the neighbours of the surrogates.
const std::vector<std::string> boundaries = {"\0"s,
                                             "\x7F",
                                             "\xC2\x80",
                                             "\xDF\xBF",
                                             "\xE0\xA0\x80",
                                             "\xED\x9F\xBF",
                                             "\xEE\x80\x80",
                                             "\xEF\xBF\xBF",
                                             "\xF0\x90\x80\x80",
                                             "\xF0\x9F\x98\x80",
                                             "\xF3\xBF\xBF\xBF",
                                             "\xF4\x8F\xBF\xBF"};

const std::vector<std::string> malformed = {"\x80",
                                            "\xBF",
                                            "\xC0\x80",
                                            "\xC1\xBF",
                                            "\xE0\x80\x80",
                                            "\xE0\x9F\xBF",
                                            "\xED\xA0\x80",
                                            "\xED\xBF\xBF",
                                            "\xF0\x8F\xBF\xBF",
                                            "\xF0\x80\x80\x80",
                                            "\xF4\x90\x80\x80",
                                            "\xF5\x80\x80\x80",
                                            "\xF7\xBF\xBF\xBF",
                                            "\xF8\x88\x80\x80\x80",
                                            "\xF8\x90\x80\x80",
                                            "\xFE",
                                            "\xFF",
                                            "\xC3",
                                            "\xE4\xB8",
                                            "\xE4",
                                            "\xF0\x9F\x98",
                                            "\xF0\x9F",
                                            "\xF0",
                                            "\xC3\xA9\xA9",
                                            "\xE4\xB8\xAD\x80",
                                            "\xF0\x9F\x98\x80\x80"};

TEST(Utf8, decodesEveryKindOfSequenceAtEveryPlaceOfABlock) {
    std::vector<std::string> pieces = boundaries;
    pieces.insert(pieces.end(), malformed.begin(), malformed.end());
    for (const std::string_view filler : {"a"sv, "\xD0\xB6"sv, "\xE4\xB8\xAD"sv}) {
        for (const std::string& piece : pieces) {
            for (std::size_t before = 0; before < 140; ++before) {
                std::string text;
                while (text.size() < before)
                    text += before - text.size() < filler.size() ? "a"sv : filler;
                text += piece;
                ASSERT_NO_FATAL_FAILURE(checkDecoders(text));
                for (int count = 0; count < 80; ++count)
                    text += filler;
                ASSERT_NO_FATAL_FAILURE(checkDecoders(text));
            }
        }
    }
}

// What is counted in bytes must be added up before they run over.
TEST(Utf8, countsUnitsOfLongTexts) {
    for (const std::string& piece : boundaries) {
        std::string text;
        while (text.size() < 20'000) {
            text += piece;
        }
        EXPECT_EQ(NuUtf16Length(text), NuFromUtf8(text).size()) << hex(piece);
    }
}

TEST(Utf8, decodesRandomMixtures) {
    std::mt19937 random(20);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    for (int round = 0; round < 150'000; ++round) {
        std::string text;
        const std::size_t size = below(200);
        const bool mayBreak = below(3) == 0;
        const std::size_t kinds = 1 + below(5);
        while (text.size() < size) {
            if (mayBreak && below(40) == 0) {
                text += below(2) == 0 ? malformed[below(malformed.size())]
                                      : std::string(1, static_cast<char>(below(256)));
                continue;
            }
            const std::size_t kind = below(kinds);
            if (kind == 4)
                text += boundaries[below(boundaries.size())];
            const Row& row = kind == 0   ? wellFormedSequences[0]
                             : kind == 1 ? wellFormedSequences[1]
                             : kind == 2 ? wellFormedSequences[2 + below(4)]
                                         : wellFormedSequences[below(9)];
            for (std::size_t at = 0; at < row.length; ++at)
                text += static_cast<char>(row.ranges[at].first +
                                          below(row.ranges[at].second - row.ranges[at].first + 1));
        }
        if (mayBreak && below(4) == 0)
            text.resize(below(text.size() + 1));
        ASSERT_NO_FATAL_FAILURE(checkDecoders(text));
    }
}

TEST(Utf8, encodesUnpairedSurrogatesAsReplacementCharacters) {
    struct Case {
        std::u16string units;
        std::string bytes;
    };
    const std::vector<Case> cases = {
        {{0xD83D}, "\xEF\xBF\xBD"},
        {{0xDE00}, "\xEF\xBF\xBD"},
        {{0xDE00, 0xD83D}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {{0xD83D, u'a'}, "\xEF\xBF\xBD"s + "a"},
        {{0xD83D, 0xD83D, 0xDE00}, "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
        {{0xD83D, 0xDE00, 0xDE00}, "\xF0\x9F\x98\x80\xEF\xBF\xBD"},
    };
    // At every place of a block, and where a longer text is taken to pieces.
    for (const std::size_t start : {0u, 1020u}) {
        for (std::size_t before = start; before < start + 40; ++before) {
            for (const Case& item : cases) {
                const std::u16string text = std::u16string(before, u'x') + item.units;
                const std::string expected = std::string(before, 'x') + item.bytes;
                EXPECT_EQ(NuToUtf8(text), expected);
                EXPECT_EQ(NuToUtf8(text + std::u16string(40, u'é')),
                          NuToUtf8(text) + NuToUtf8(std::u16string(40, u'é')));
                const auto room = std::make_unique<char[]>(3 * text.size());
                EXPECT_EQ(std::string_view(room.get(), NuEncodeUtf8(text, room.get())), expected);
            }
        }
    }
}

} // namespace
