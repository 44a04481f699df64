#include "common/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "common/caseFolding.h"
#include "common/encoding.h"
#include "common/stringStream.h"
#include "common/textHash.h"

namespace {

using namespace std::string_literals;

TEST(CaseFolding, mapsUnitsToUnits) {
    struct Case {
        char16_t unit;
        char16_t folded;
    };
    for (const Case& item : std::vector<Case>{
             {u'A', u'a'},    {u'Z', u'z'}, {u'@', u'@'},   {u'[', u'['},   {u'É', u'é'},
             {u'×', u'×'},    {u'Ÿ', u'ÿ'}, {u'ß', u'ß'},   {u'ẞ', u'ß'},   {u'µ', u'μ'},
             {u'ſ', u's'},    {u'İ', u'İ'}, {u'ı', u'ı'},   {u'Ĳ', u'ĳ'},   {u'Ǆ', u'ǆ'},
             {u'ǅ', u'ǆ'},    {u'Σ', u'σ'}, {u'ς', u'σ'},   {u'Ё', u'ё'},   {u'Ж', u'ж'},
             {u'Ա', u'ա'},    {u'Ⴀ', u'ⴀ'}, {u'Ꭰ', u'Ꭰ'},   {0xAB70, u'Ꭰ'}, {u'ᾈ', u'ᾀ'},
             {0x212A, u'k'},  {u'Ⅷ', u'ⅷ'}, {u'Ａ', u'ａ'}, {u'中', u'中'}, {0xD801, 0xD801},
             {0xFFFF, 0xFFFF}})
        EXPECT_EQ(NuFoldCase(item.unit), item.folded) << std::hex << int{item.unit};
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        const char16_t folded = NuFoldCase(static_cast<char16_t>(unit));
        ASSERT_EQ(NuFoldCase(folded), folded) << unit;
    }
}

TEST(CaseFolding, comparesTexts) {
    EXPECT_TRUE(NuEqualFolded(u"Straße ЖУК", u"sTRAßE жук"));
    EXPECT_FALSE(NuEqualFolded(u"name", u"names"));
    EXPECT_FALSE(NuEqualFolded(u"[", u"{"));
    EXPECT_EQ(NuFolded(u"ÉTÉ Xml"), u"été xml");
}

TEST(TextHash, scattersWhatWasChosenToCollide) {
    // Names that collide for one pair of keys are like any others to the next pair.
    constexpr std::uint64_t places = 256;
    const auto mostAtOnePlace = [](const nu::HashKeys& keys, const auto& names) {
        std::map<std::uint64_t, std::size_t> counts;
        std::size_t most = 0;
        for (const std::u16string& name : names) {
            most = std::max(most, ++counts[nu::hashText(keys, name, NuFoldCase) % places]);
        }
        return most;
    };
    const nu::HashKeys known[] = {{0, 0x9E3779B97F4A7C15u}, {5, 0xC2B2AE3D27D4EB4Fu}};
    for (const nu::HashKeys& keys : known) {
        std::vector<std::u16string> names;
        for (std::uint64_t number = 0; names.size() < 100; ++number) {
            std::u16string name = u"aaaaaaaaa";
            for (std::uint64_t left = number, index = 0; left > 0; left /= 26, ++index) {
                name[index * 7 % 9] = static_cast<char16_t>(u'a' + left % 26);
            }
            if (nu::hashText(keys, name) % places == 77) {
                names.push_back(std::move(name));
            }
        }
        EXPECT_EQ(mostAtOnePlace(keys, names), names.size());
        EXPECT_LT(mostAtOnePlace(nu::hashKeys(), names), 10U);
        EXPECT_LT(mostAtOnePlace({keys.start + 1, keys.factor}, names), 10U);
        EXPECT_LT(mostAtOnePlace({keys.start, keys.factor ^ 0x1235A1F000}, names), 10U);
    }
    // Differences that a product without its upper half would hand on whatever the keys.
    std::vector<std::u16string> pairs(2, u"abcdefgh");
    pairs[1][3] ^= 0x8000;
    for (const std::size_t unit : {5U, 7U}) {
        pairs[1][unit] ^= 0x8000;
        EXPECT_NE(nu::hashText(nu::hashKeys(), pairs[0]), nu::hashText(nu::hashKeys(), pairs[1]));
    }
}

TEST(ContainsText, findsPartsInAnyLetterCase) {
    struct Case {
        std::u16string text;
        std::u16string part;
        bool contained;
    };
    for (const Case& item : std::vector<Case>{{u"", u"", true},
                                              {u"abc", u"", true},
                                              {u"", u"a", false},
                                              {u"<?xml encoding=\"UTF-8\"?>", u"utf-8", true},
                                              {u"utf8", u"utf-8", false},
                                              {u"ab", u"abc", false},
                                              {u"xABC", u"abc", true},
                                              {u"aaab", u"AAB", true},
                                              {u"abacabab", u"abab", true},
                                              {u"abcabcabd", u"ABCABD", true},
                                              {u"abcabcab", u"abcabd", false},
                                              {u"ein ЖУК", u"жук", true}})
        EXPECT_EQ(NuContainsText(item.text, item.part), item.contained);
    // Every place begins a match that nearly succeeds: time that grew with the product of the two
    // lengths would not end here.
    const std::u16string text(2'000'000, u'a');
    EXPECT_FALSE(NuContainsText(text, std::u16string(1'000'000, u'A') + u"b"));
}

TEST(CharSet, holdsEightBitCharactersOnly) {
    constexpr TNuCharSet set(u": ÿĀ");
    static_assert(NuCharInSet(u':', set) && !NuCharInSet(u';', set));
    EXPECT_TRUE(NuCharInSet(u' ', set) && NuCharInSet(u'ÿ', set));
    EXPECT_FALSE(NuCharInSet(u'Ā', set) || NuCharInSet(u'\0', set) || NuCharInSet(0x13A, set));
}

// Gives one byte at a time, as a stream may.
class HesitantStream final : public TNuMemoryStream {
public:
    using TNuMemoryStream::TNuMemoryStream;
    std::size_t Read(void* buffer, std::size_t count) override {
        return TNuMemoryStream::Read(buffer, count < 1 ? count : 1);
    }
};

TEST(Encoding, isToldByTheMark) {
    struct Case {
        std::string bytes;
        int encoding;
        std::int64_t position;
    };
    for (const Case& item : std::vector<Case>{{"", 1, 0},
                                              {"<a/>", 1, 0},
                                              {"\xEF\xBB\xBF<a/>", 2, 3},
                                              {"\xEF\xBB\xBF", 2, 3},
                                              {"\xEF\xBB<", 1, 0},
                                              {"\xFF\xFE<\0"s, 4, 2},
                                              {"\xFF\xFE", 4, 2},
                                              {"\xFF\xFE\0"s, 4, 2},
                                              {"\xFF\xFE\0\0<"s, 6, 4},
                                              {"\xFF", 1, 0},
                                              {"\xFE\xFF\0<"s, 5, 2},
                                              {"\0\0\xFE\xFF"s, 7, 4},
                                              {"<\0a\0"s, 1, 0}}) {
        HesitantStream stream("ab" + item.bytes);
        stream.SetPosition(2);
        EXPECT_EQ(NuGetEncoding(stream), item.encoding) << item.bytes;
        EXPECT_EQ(stream.GetPosition(), 2 + item.position) << item.bytes;

        TNuStringStream narrow(1);
        narrow.WriteBuffer(item.bytes.data(), item.bytes.size());
        narrow.SetPosition(0);
        EXPECT_EQ(NuGetEncoding(narrow), item.encoding) << item.bytes;
    }
}

TEST(Encoding, ofAWideStringStreamIsKnown) {
    struct Case {
        std::u16string text;
        std::int64_t position;
    };
    for (const Case& item : std::vector<Case>{{u"", 0},
                                              {u"<a/>", 0},
                                              {u"\uFEFF<a/>", 2},
                                              {u"\uFEFF\uFEFF", 2},
                                              {{0xFEFF, 0}, 2},
                                              {{0xFFFE, u'<'}, 0},
                                              {{0xBBEF, 0x00BF}, 0},
                                              {{0, 0xFFFE}, 0}}) {
        TNuStringStream stream(item.text);
        EXPECT_EQ(NuGetEncoding(stream), 4);
        EXPECT_EQ(stream.GetPosition(), item.position);
    }
}

} // namespace
