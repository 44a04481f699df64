#include "nuXmlParser/escape.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <random>

#include <gtest/gtest.h>

#include "common/codePage.h"
#include "host/runtime/exception.h"
#include "host/runtime/unicode.h"
#include "nuXmlParser/unescape.h"

namespace {

using namespace std::string_view_literals;

// The expected characters of the names, by name; written apart from the product's table, from the
// code points up.
struct NamedRange {
    char16_t first;
    std::u16string_view names; // for successive code points, "-" where there is none
};

constexpr NamedRange namedRanges[] = {
    {0x00A0,
     u"nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy reg macr deg "
     u"plusmn sup2 sup3 acute micro para middot cedil sup1 ordm raquo frac14 frac12 frac34 "
     u"iquest Agrave Aacute Acirc Atilde Auml Aring AElig Ccedil Egrave Eacute Ecirc Euml "
     u"Igrave Iacute Icirc Iuml ETH Ntilde Ograve Oacute Ocirc Otilde Ouml times Oslash "
     u"Ugrave Uacute Ucirc Uuml Yacute THORN szlig agrave aacute acirc atilde auml aring "
     u"aelig ccedil egrave eacute ecirc euml igrave iacute icirc iuml eth ntilde ograve "
     u"oacute ocirc otilde ouml divide oslash ugrave uacute ucirc uuml yacute thorn yuml"},
    {0x0391, u"Alpha Beta Gamma Delta Epsilon Zeta Eta Theta Iota Kappa Lambda Mu Nu Xi Omicron Pi "
             u"Rho - Sigma Tau Upsilon Phi Chi Psi Omega"},
    {0x03B1, u"alpha beta gamma delta epsilon zeta eta theta iota kappa lambda mu nu xi omicron pi "
             u"rho sigmaf sigma tau upsilon phi chi psi omega"},
    {0x0152, u"OElig oelig"},
    {0x0160, u"Scaron scaron"},
    {0x03D1, u"thetasym upsih - - - piv"},
    {0x2002, u"ensp emsp - - - - - thinsp - - zwnj zwj lrm rlm"},
    {0x2013, u"ndash mdash - - - lsquo rsquo sbquo - ldquo rdquo bdquo - dagger Dagger bull"},
    {0x2030, u"permil - prime Prime - - - - - lsaquo rsaquo"},
    {0x2190, u"larr uarr rarr darr harr"},
    {0x21D0, u"lArr uArr rArr dArr hArr"},
    {0x2200, u"forall - part exist - empty - nabla isin notin - ni - - - prod - sum minus"},
    {0x2227, u"and or cap cup int"},
    {0x2282, u"sub sup nsub - sube supe"},
    {0x2308, u"lceil rceil lfloor rfloor"},
    {0x2329, u"lang rang"},
};

constexpr std::pair<char16_t, std::u16string_view> namedAlone[] = {
    {0x0022, u"quot"},   {0x0026, u"amp"},     {0x0027, u"apos"},   {0x003C, u"lt"},
    {0x003E, u"gt"},     {0x0178, u"Yuml"},    {0x0192, u"fnof"},   {0x02C6, u"circ"},
    {0x02DC, u"tilde"},  {0x2026, u"hellip"},  {0x203E, u"oline"},  {0x2044, u"frasl"},
    {0x20AC, u"euro"},   {0x2111, u"image"},   {0x2118, u"weierp"}, {0x211C, u"real"},
    {0x2122, u"trade"},  {0x2135, u"alefsym"}, {0x21B5, u"crarr"},  {0x2217, u"lowast"},
    {0x221A, u"radic"},  {0x221D, u"prop"},    {0x221E, u"infin"},  {0x2220, u"ang"},
    {0x2234, u"there4"}, {0x223C, u"sim"},     {0x2245, u"cong"},   {0x2248, u"asymp"},
    {0x2260, u"ne"},     {0x2261, u"equiv"},   {0x2264, u"le"},     {0x2265, u"ge"},
    {0x2295, u"oplus"},  {0x2297, u"otimes"},  {0x22A5, u"perp"},   {0x22C5, u"sdot"},
    {0x25CA, u"loz"},    {0x2660, u"spades"},  {0x2663, u"clubs"},  {0x2665, u"hearts"},
    {0x2666, u"diams"}};

std::map<std::u16string, char16_t> entities() {
    std::map<std::u16string, char16_t> all;
    for (const auto& [character, name] : namedAlone) {
        all.emplace(name, character);
    }
    for (const NamedRange& range : namedRanges) {
        char16_t character = range.first;
        for (std::size_t start = 0; start < range.names.size(); ++character) {
            const std::size_t end = std::min(range.names.find(u' ', start), range.names.size());
            if (const auto name = range.names.substr(start, end - start); name != u"-") {
                all.emplace(name, character);
            }
            start = end + 1;
        }
    }
    return all;
}

TEST(Escape, ReplacesTheFiveCharacters) {
    EXPECT_EQ(NuStrToXML(u"a<b & 'c'"), u"a&lt;b &amp; &apos;c&apos;");
    EXPECT_EQ(NuStrToXML(u"\">\""), u"&quot;&gt;&quot;");
    EXPECT_EQ(NuStrToXML("a<b & \"c'\x80\xFF>"), "a&lt;b &amp; &quot;c&apos;\x80\xFF&gt;");
    // Everything else stays: controls, look-alikes in the upper half, lone surrogates.
    const std::u16string other = u"\t\n\x01\x7F\u00A0\u2026\uFF1C\u3C26\u2627\xD800x\xDC00 =;#%(?";
    EXPECT_EQ(NuStrToXML(other), other);
    EXPECT_EQ(NuStrToXML(u""), u"");
    EXPECT_EQ(NuStrToXML(""), "");
}

TEST(Escape, NulIsDroppedFromUtf16StringsOnly) {
    EXPECT_EQ(NuStrToXML(u"\0A\0\0B<\0"sv), u"AB&lt;");
    EXPECT_EQ(NuStrToXML("A\0<\0"sv), "A\0&lt;\0"sv);
    TNuStringStream stream(2);
    NuStrToXML(u"A\0<\0", 4, stream);
    EXPECT_EQ(stream.WideView(), u"A\0&lt;\0"sv);
}

TEST(Escape, StreamFormAppends) {
    TNuStringStream stream(2);
    stream.AddString(u"<");
    stream.SetPosition(0);
    NuStrToXML(u"ignored", 0, stream);
    NuStrToXML(u">'", 1, stream);
    const std::u16string longText = std::u16string(5000, u'x') + std::u16string(5000, u'&');
    NuStrToXML(longText.data(), longText.size(), stream);
    EXPECT_EQ(stream.GetAsWideString(), u"<&gt;" + NuStrToXML(longText));
}

TEST(Escape, StreamFormNeedsUtf16) {
    TNuStringStream narrow(1);
    for (const std::size_t length : {0U, 1U}) { // the width counts even where nothing is written
        try {
            NuStrToXML(u"x", length, narrow);
            FAIL();
        } catch (const host::EAssertionFailed& error) {
            EXPECT_EQ(error.Message(), u"Assertion failure "
                                       u"(source\\Components\\xml\\uNuXMLParser, line 458)");
        }
    }
    EXPECT_EQ(narrow.GetSize(), 0);
}

struct Pair {
    std::u16string_view escaped;
    std::u16string_view plain;
};

TEST(Unescape, Utf16) {
    const Pair table[] = {
        {u"", u""},
        {u"&lt;&gt;&amp;&quot;&apos;", u"<>&\"'"},
        {u"&#65;&#x42;&#X43;", u"ABC"},
        {u"&nbsp;&eacute;&euro;", u"\u00A0\u00E9\u20AC"},
        // A reference is none when a space or the end comes before ";". Nothing else ends it, and
        // what was run over is not looked at again.
        {u"a & b", u"a & b"},
        {u"AT&T", u"AT&T"},
        {u"&", u"&"},
        {u"x&amp", u"x&amp"},
        {u"&a&amp;", u"&a&amp;"},
        {u"&&amp;", u"&&amp;"},
        {u"&lt&gt;", u"&lt&gt;"},
        {u"& &amp;", u"& &"},
        {u"&a &amp;", u"&a &"},
        {u"&\tamp;&lt;", u"&\tamp;<"},
        {u"&foo;&lt;", u"&foo;<"},
        {u"&verylongname;", u"&verylongname;"},
        {u"&;", u"&;"},
        {u"a;b; c", u"a;b; c"},
        // What a reference gives is text, never a reference again.
        {u"&amp;amp;", u"&amp;"},
        {u"&#x26;lt;", u"&lt;"},
        // Code points are cut to 16 bits.
        {u"&#128512;", u"\uF600"},
        {u"&#65601;", u"A"},
        {u"&#65536;&#0;", u"\0\0"sv},
        {u"&#xD83D;&#xDE00;", u"\U0001F600"},
        // Names: case-sensitive, at most 8 characters, told apart by a key folded from low bytes.
        {u"&AMP;&Alpha;&alpha;", u"&AMP;\u0391\u03B1"},
        {u"&thetasym;", u"\u03D1"},
        {u"&thetasyma;", u"&thetasyma;"},
        {u"&Alpgb;", u"\u0391"},
        {u"&\u016Ct;", u"<"},
        {u"&lt\0;"sv, u"<"},
        {u"&\u0100;", u"&\u0100;"},
        // Forms of a number beyond plain digits.
        {u"&#+65;&#-1;&#0065;", u"A\uFFFF"
                                u"A"},
        {u"&#$41;&#0x41;&#0X41;&#-$1;&#xffFF;", u"AAA\uFFFF\uFFFF"},
        {u"&#2147483647;&#-2147483648;&#xFFFFFFFF;", u"\uFFFF\0\uFFFF"sv},
    };
    for (const auto& [escaped, plain] : table) {
        EXPECT_EQ(NuXMLToStr(escaped), plain) << host::utf16ToUtf8(escaped);
    }
}

TEST(Unescape, EveryNamedEntity) {
    const auto all = entities();
    ASSERT_EQ(all.size(), 253U);
    for (const auto& [name, character] : all) {
        EXPECT_EQ(NuXMLToStr(u"&" + name + u";"), std::u16string(1, character))
            << host::utf16ToUtf8(name);
    }
}

TEST(Unescape, NarrowKnowsTheFirstLetterOnly) {
    const std::pair<std::string_view, std::string_view> table[] = {
        {"&apos;&amp;&Anything;", "&&&"},
        {"&Quot;&q;&gt;&Gamma;&lambda;&L;", "\"\">><<"},
        {"&nbsp;&;&xlt;", "&nbsp;&;&xlt;"},
        {"&averyveryverylongname;", "&"},
        {"&#65;&#x42;&#X43;&#128512;", "ABC\xEF\x98\x80"},
        {"\xFF&a \x80&a;", "\xFF&a \x80&"},
        {"&a&l;x", "&x"},
        {"", ""},
    };
    NuSetSystemCodePage(cNuCodePageUtf8);
    for (const auto& [escaped, plain] : table) {
        EXPECT_EQ(NuXMLToStr(escaped), plain) << escaped;
    }
    NuSetSystemCodePage(1252);
    EXPECT_EQ(NuXMLToStr("&#xE9;&#x20AC;&#x416;"), "\xE9\x80?");
    NuSetSystemCodePage(0);
}

TEST(Unescape, BadNumbersAreErrors) {
    const Pair table[] = {
        {u"&#;", u""},
        {u"&#x;", u"$"},
        {u"&#12z;", u"12z"},
        {u"&#xG;", u"$G"},
        {u"&#1\t;", u"1\t"},
        {u"&#-;", u"-"},
        {u"&#$;", u"$"},
        {u"&#0x;", u"0x"},
        {u"&#--1;", u"--1"},
        {u"&#x-1;", u"$-1"},
        {u"&#&#65;", u"&#65"},
        {u"&#2147483648;", u"2147483648"},
        {u"&#-2147483649;", u"-2147483649"},
        {u"&#x100000000;", u"$100000000"},
        {u"&#99999999999999999999999;", u"99999999999999999999999"},
        {u"&#\uFF11;", u"\uFF11"},
    };
    for (const auto& [escaped, number] : table) {
        const std::u16string message =
            u"'" + std::u16string(number) + u"' is not a valid integer value";
        const std::string narrow = host::utf16ToUtf8(escaped);
        for (const bool wide : {true, false}) {
            try {
                wide ? void(NuXMLToStr(escaped)) : void(NuXMLToStr(narrow));
                ADD_FAILURE() << narrow;
            } catch (const host::EConvertError& error) {
                EXPECT_EQ(error.Message(), message);
            }
        }
    }
}

// The rules again, one character at a time.
std::u16string escapeSlowly(std::u16string_view text) {
    const std::map<char16_t, std::u16string> replacements = {{u'\'', u"&apos;"}, {u'"', u"&quot;"},
                                                             {u'&', u"&amp;"},   {u'<', u"&lt;"},
                                                             {u'>', u"&gt;"},    {u'\0', u""}};
    std::u16string result;
    for (const char16_t unit : text) {
        const auto found = replacements.find(unit);
        result += found == replacements.end() ? std::u16string(1, unit) : found->second;
    }
    return result;
}

std::uint32_t keyOf(std::u16string_view name) {
    std::array<unsigned char, 8> letters{};
    std::copy(name.begin(), name.end(), letters.begin());
    std::uint32_t key = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        key = key << 8 | ((letters[index] + letters[7 - index]) & 0xFFU);
    }
    return key;
}

/// Nothing when the text holds a bad number.
std::optional<std::u16string> unescapeSlowly(std::u16string_view text) {
    static const auto keys = [] {
        std::map<std::uint32_t, char16_t> map;
        for (const auto& [name, character] : entities()) {
            map.emplace(keyOf(name), character);
        }
        return map;
    }();
    std::u16string result;
    std::size_t place = 0;
    while (place < text.size()) {
        if (text[place] != u'&') {
            result += text[place++];
            continue;
        }
        const std::size_t start = place;
        while (place < text.size() && text[place] != u' ' && text[place] != u';') {
            ++place;
        }
        const auto name = text.substr(start + 1, place - start - 1);
        if (place == text.size() || text[place] == u' ') {
            result += text.substr(start, place - start);
        } else if (name.starts_with(u'#')) {
            std::string digits(name.begin() + 1, name.end());
            const bool isHex = digits.starts_with('x');
            digits.erase(0, isHex ? 1 : 0);
            const std::string_view allowed = isHex ? "0123456789abcdefABCDEF" : "0123456789";
            if (digits.empty() || digits.find_first_not_of(allowed) != digits.npos) {
                return std::nullopt;
            }
            result += static_cast<char16_t>(std::stoul(digits, nullptr, isHex ? 16 : 10));
            ++place;
        } else if (name.size() <= 8 && keys.contains(keyOf(name))) {
            result += keys.at(keyOf(name));
            ++place;
        } else {
            result += text.substr(start, place - start);
        }
    }
    return result;
}

class RandomTexts : public testing::Test {
protected:
    std::u16string text(std::size_t longest, std::initializer_list<std::u16string_view> pieces) {
        std::u16string result;
        const std::size_t length = random_() % (longest + 1);
        while (result.size() < length) {
            result += pieces.begin()[random_() % pieces.size()];
        }
        return result;
    }

    std::mt19937 random_{20};
};

TEST_F(RandomTexts, MatchTheRulesTakenOneCharacterAtATime) {
    for (int round = 0; round < 20000; ++round) {
        const std::size_t longest = round % 100 == 0 ? 6000 : 80;
        const std::u16string mixed = text(
            longest, {u"&",    u"&",     u";",     u";",          u"#",
                      u"#x",   u"<",     u">",     u"\"",         u"'",
                      u"a",    u"m",     u"p",     u"l",          u"t",
                      u"1",    u"2",     u" ",     u"\0"sv,       u"\u016C",
                      u"&lt;", u"&amp;", u"&#65;", u"&thetasym;", u"plain text of some length"});
        ASSERT_EQ(NuStrToXML(mixed), escapeSlowly(mixed)) << round;
        const auto expected = unescapeSlowly(mixed);
        try {
            const std::u16string plain = NuXMLToStr(mixed);
            ASSERT_EQ(expected, plain) << round;
        } catch (const host::EConvertError&) {
            ASSERT_FALSE(expected) << round;
        }
    }
}

TEST_F(RandomTexts, ComeBackFromTheirEscapedForm) {
    for (int round = 0; round < 5000; ++round) {
        std::u16string plain =
            text(round % 50 == 0 ? 9000 : 300,
                 {u"&", u"<", u">", u"\"", u"'", u";", u"#", u" ", u"words of text"});
        for (std::size_t index = 0; index < plain.size(); index += 1 + random_() % 9) {
            plain[index] = static_cast<char16_t>(1 + random_() % 0xFFFF);
        }
        ASSERT_EQ(NuXMLToStr(NuStrToXML(plain)), plain) << round;
        const std::string narrow = host::utf16ToUtf8(plain);
        const std::string escaped = NuStrToXML(narrow);
        ASSERT_EQ(escaped, host::utf16ToUtf8(NuStrToXML(host::utf8ToUtf16(narrow)))) << round;
    }
}

// Every length up to some blocks, the special character at every place.
TEST(Escape, SpecialCharacterAtEveryPlace) {
    for (std::size_t length = 1; length <= 200; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            std::u16string plain(length, u'x');
            plain[place] = u'<';
            const std::u16string escaped =
                plain.substr(0, place) + u"&lt;" + plain.substr(place + 1);
            ASSERT_EQ(NuStrToXML(plain), escaped) << length << ' ' << place;
            ASSERT_EQ(NuXMLToStr(escaped), plain) << length << ' ' << place;
        }
    }
}

} // namespace
