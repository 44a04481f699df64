#include "common/codePage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "host/runtime/exception.h"

namespace {

const std::vector<std::uint32_t> singleBytePages = {
    437,   737,   775,   850,   852,   855,   857,   858,   860,   861,   862,
    863,   865,   866,   869,   874,   1250,  1251,  1252,  1253,  1254,  1255,
    1256,  1257,  1258,  20127, 20866, 21866, 28591, 28592, 28593, 28594, 28595,
    28596, 28597, 28598, 28599, 28600, 28601, 28603, 28604, 28605, 28606};

class CodePages : public testing::Test {
protected:
    ~CodePages() override { NuSetSystemCodePage(cNuCodePageUtf8); }
};

TEST_F(CodePages, meanWhatTheirPublishersSay) {
    struct Case {
        std::uint32_t page;
        unsigned char byte;
        char16_t unit;
    };
    for (const Case& item : std::vector<Case>{
             {437, 0x80, u'Ç'},     {437, 0xFB, u'√'},   {850, 0x9B, u'ø'},    {858, 0xD5, u'€'},
             {866, 0x80, u'А'},     {866, 0xF0, u'Ё'},   {874, 0xA1, u'ก'},    {874, 0x81, 0x81},
             {1250, 0x8A, u'Š'},    {1251, 0xE6, u'ж'},  {1251, 0xA8, u'Ё'},   {1252, 0x80, u'€'},
             {1252, 0x81, 0x81},    {1253, 0xE1, u'α'},  {1253, 0xAA, 0xFFFD}, {1254, 0xF0, u'ğ'},
             {1255, 0xE0, u'א'},    {1256, 0xC7, u'ا'},  {1257, 0xE0, u'ą'},   {1258, 0xFE, u'₫'},
             {20127, 0xE9, 0xFFFD}, {20866, 0xD6, u'ж'}, {21866, 0xA7, u'ї'},  {28591, 0x80, 0x80},
             {28591, 0xE9, u'é'},   {28592, 0xB1, u'ą'}, {28595, 0xB0, u'А'},  {28597, 0xE1, u'α'},
             {28596, 0xA1, 0xFFFD}, {28599, 0xF0, u'ğ'}, {28603, 0xB4, u'“'},  {28605, 0xA4, u'€'},
             {28606, 0xA4, u'€'},   {28605, 0x41, u'A'}}) {
        const std::string text(40, static_cast<char>(item.byte));
        EXPECT_EQ(NuAnsiStringToWideString(text, item.page), std::u16string(40, item.unit))
            << item.page << ' ' << int{item.byte};
    }
}

TEST_F(CodePages, giveEveryMeaningfulByteBack) {
    for (const std::uint32_t page : singleBytePages) {
        std::string bytes;
        for (int byte = 0; byte < 256; ++byte) {
            const std::string single(1, static_cast<char>(byte));
            if (NuAnsiStringToWideString(single, page) != u"\uFFFD")
                bytes += single;
        }
        EXPECT_GE(bytes.size(), page == 20127 ? 128u : 210u) << page;
        std::size_t lost = 1;
        const std::u16string text = NuAnsiStringToWideString(bytes, page);
        EXPECT_EQ(NuWideStringToAnsiString(text, page, lost), bytes) << page;
        EXPECT_EQ(lost, 0u) << page;
    }
}

TEST_F(CodePages, countWhatTheyCannotHold) {
    struct Case {
        std::uint32_t page;
        std::u16string text;
        std::string bytes;
        std::size_t lost;
    };
    for (const Case& item : std::vector<Case>{
             {1252, u"€ und Ж", "\x80 und ?", 1},
             {1251, u"€ und Ж", "\x88 und \xC6", 0},
             {28591, u"sixteen letters €and then some", "sixteen letters ?and then some", 1},
             {1252, u"\U0001F600", "??", 2},
             {1253, u"\uFFFD?", "??", 1},
             {20127, std::u16string(u"\0é", 2), std::string("\0?", 2), 1},
             {65001, u"Ж\U0001F600", "\xD0\x96\xF0\x9F\x98\x80", 0},
             {65001,
              {0xDE00, 0xD83D, 0xDE00, 0xD83D},
              "\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD",
              2}}) {
        std::size_t lost = 99;
        EXPECT_EQ(NuWideStringToAnsiString(item.text, item.page, lost), item.bytes);
        EXPECT_EQ(lost, item.lost) << item.bytes;
    }
}

TEST_F(CodePages, readUtf8OrElseTheWholeTextAsWindows1252) {
    EXPECT_EQ(NuAnsiStringToWideString("\xD0\xB6 a", 65001), u"ж a");
    EXPECT_EQ(NuAnsiStringToWideString("\xD0\xB6 \x80\x81\x8D\x8F\x90\x9D", 65001),
              u"Ð¶ €\u0081\u008D\u008F\u0090\u009D");
    EXPECT_EQ(NuAnsiStringToWideString("", 65001), u"");
}

TEST_F(CodePages, haveOneForTheSystem) {
    NuSetSystemCodePage(1251);
    EXPECT_EQ(NuAnsiStringToWideString("\xE6"), u"ж");
    EXPECT_EQ(NuWideStringToAnsiString(u"ж"), "\xE6");
    EXPECT_THROW(NuSetSystemCodePage(932), host::EConvertError);
    EXPECT_EQ(NuGetSystemCodePage(), 1251u);
    NuSetSystemCodePage(65001);
    EXPECT_EQ(NuWideStringToAnsiString(u"ж"), "\xD0\xB6");
    for (const std::uint32_t unknown : {1u, 28602u, 65000u}) {
        try {
            NuAnsiStringToWideString("a", unknown);
            ADD_FAILURE() << unknown;
        } catch (const host::EConvertError& error) {
            EXPECT_EQ(error.what(), "Unknown code page " + std::to_string(unknown));
        }
        EXPECT_THROW(NuWideStringToAnsiString(u"a", unknown), host::EConvertError);
    }
}

TEST_F(CodePages, comeFromTheEnvironment) {
    struct Case {
        const char* all;
        const char* characterType;
        const char* language;
        std::uint32_t page;
    };
    for (const Case& item :
         std::vector<Case>{{nullptr, nullptr, nullptr, 65001},
                           {"", "", "ru_RU.KOI8-R", 20866},
                           {"de_DE.ISO-8859-15@euro", "ru_RU.CP1251", "C", 28605},
                           {nullptr, "ru_RU.CP1251", "de_DE.UTF-8", 1251},
                           {"C", "ru_RU.CP1251", nullptr, 65001},
                           {"POSIX", nullptr, nullptr, 65001},
                           {"de_DE.UTF-8", nullptr, nullptr, 65001},
                           {"de_DE@euro.CP1252", nullptr, nullptr, 65001},
                           {"de_DE", nullptr, nullptr, 65001},
                           {"de_DE.iso88591", nullptr, nullptr, 28591},
                           {"th_TH.TIS-620", nullptr, nullptr, 874},
                           {"uk_UA.koi8u", nullptr, nullptr, 21866},
                           {"en_US.windows-1252", nullptr, nullptr, 1252},
                           {"en_US.IBM850", nullptr, nullptr, 850},
                           {"ja_JP.CP932", nullptr, nullptr, 65001},
                           {"ja_JP.ISO-8859-12", nullptr, nullptr, 65001},
                           {"xx.cp1252x", nullptr, nullptr, 65001},
                           {"xx.cp99999999999", nullptr, nullptr, 65001}}) {
        const auto set = [](const char* name, const char* value) {
            value == nullptr ? unsetenv(name) : setenv(name, value, 1);
        };
        set("LC_ALL", item.all);
        set("LC_CTYPE", item.characterType);
        set("LANG", item.language);
        NuSetSystemCodePage(0);
        EXPECT_EQ(NuGetSystemCodePage(), item.page) << (item.all == nullptr ? "" : item.all);
    }
}

} // namespace
