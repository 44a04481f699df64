#include <bit>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>

#include <gtest/gtest.h>

#include "common/codePage.h"
#include "common/text.h"
#include "host/runtime/exception.h"
#include "host/runtime/unicode.h"
#include "nuXmlParser.h"
#include "support/randomText.h"

namespace {

using namespace std::string_view_literals;
using host::Currency;
using host::TDateTime;
using host::Variant;
using host::WideString;

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Sets the C library's time zone for the time of its life.
struct TimeZone {
    explicit TimeZone(const char* name) {
        ::setenv("TZ", name, 1);
        ::tzset();
    }
    ~TimeZone() {
        ::unsetenv("TZ");
        ::tzset();
    }
};
// In rules of their own, so that no zone data need be installed.
constexpr const char* berlin = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* newYork = "EST5EDT,M3.2.0,M11.1.0";
constexpr const char* kathmandu = "NPT-5:45";
constexpr const char* oldAmsterdam = "AMT-0:19:32";
constexpr const char* farEast = "FAR-14:30";

/// What the call gives as text, or "error".
template <class Call> std::u16string outcome(Call call) {
    try {
        return call();
    } catch (const host::EConvertError&) {
        return u"error";
    }
}

struct Row {
    std::u16string_view text;
    std::u16string_view expected;
};

TEST(NumberText, readsIntegers) {
    const Row table[] = {
        {u"0", u"0"},
        {u"-0", u"0"},
        {u" \t\r\n+0012 ", u"12"},
        {u"2147483647", u"2147483647"},
        {u"-2147483648", u"-2147483648"},
        {u"-00000000000000000000000002147483648", u"-2147483648"},
        {u"2147483648", u"error"},
        {u"-2147483649", u"error"},
        {u"99999999999999999999999999", u"error"},
        {u"", u"error"},
        {u" ", u"error"},
        {u"+", u"error"},
        {u"+-1", u"error"},
        {u"1 2", u"error"},
        {u"1.0", u"error"},
        {u"0x1", u"error"},
        {u"\u00A01", u"error"},
        {u"\uFF11", u"error"},
        {u"1\0"sv, u"error"},
    };
    for (const auto& [text, expected] : table) {
        SCOPED_TRACE(host::utf16ToUtf8(text));
        EXPECT_EQ(outcome([&text = text] { return NuIntToXML(NuXMLToInt(text)); }), expected);
        EXPECT_EQ(NuIntToXML(NuXMLToIntDef(text, -77)), expected == u"error" ? u"-77" : expected);
    }
    const Row wide[] = {
        {u"9223372036854775807", u"9223372036854775807"},
        {u"-9223372036854775808", u"-9223372036854775808"},
        {u"9223372036854775808", u"error"},
        {u"-9223372036854775809", u"error"},
        {u"18446744073709551617", u"error"},
    };
    for (const auto& [text, expected] : wide) {
        EXPECT_EQ(outcome([&text = text] { return NuInt64ToXML(NuXMLToInt64(text)); }), expected);
        EXPECT_EQ(NuInt64ToXML(NuXMLToInt64Def(text, 5)), expected == u"error" ? u"5" : expected);
    }
}

TEST(NumberText, writesDoubles) {
    const std::pair<double, std::u16string_view> table[] = {
        {5, u"5"},
        {0.1, u"0.1"},
        {-0.0, u"-0"},
        {1e-5, u"0.00001"},
        {9.9999e-6, u"9.9999E-6"},
        {1e-7, u"1E-7"},
        {999999999999999.9, u"999999999999999.9"},
        {1e15, u"1E15"},
        {-1.5e300, u"-1.5E300"},
        {std::numeric_limits<double>::denorm_min(), u"5E-324"},
        {-1.2345678901234567e-5, u"-0.000012345678901234568"},
        {-std::numeric_limits<double>::max(), u"-1.7976931348623157E308"},
        {infinity, u"INF"},
        {-infinity, u"-INF"},
        {std::numeric_limits<double>::quiet_NaN(), u"NaN"},
    };
    for (const auto& [value, text] : table) {
        EXPECT_EQ(NuDoubleToXML(value), text);
    }
}

TEST(NumberText, readsDoubles) {
    const Row table[] = {
        {u" +1.50\n", u"1.5"},   {u".5", u"0.5"},
        {u"-5.", u"-5"},         {u"1e-3", u"0.001"},
        {u"1E+3", u"1000"},      {u"-0", u"-0"},
        {u"1e400", u"INF"},      {u"-1e400", u"-INF"},
        {u"-1e-400", u"-0"},     {u"INF", u"INF"},
        {u"+INF", u"INF"},       {u" -INF", u"-INF"},
        {u"NaN", u"NaN"},        {u"1e99999999999999999999", u"INF"},
        {u"inf", u"error"},      {u"nan", u"error"},
        {u"Infinity", u"error"}, {u"-NaN", u"error"},
        {u"", u"error"},         {u".", u"error"},
        {u"-", u"error"},        {u"+-1", u"error"},
        {u"--1", u"error"},      {u"1,5", u"error"},
        {u"1e", u"error"},       {u"1e+", u"error"},
        {u"e1", u"error"},       {u"0x1p3", u"error"},
        {u"1 2", u"error"},      {u"1.2.3", u"error"},
        {u"1f", u"error"},       {u"\u0131", u"error"},
        {u"1\u0130", u"error"},  {u"1\0"sv, u"error"},
    };
    for (const auto& [text, expected] : table) {
        SCOPED_TRACE(host::utf16ToUtf8(text));
        EXPECT_EQ(outcome([&text = text] { return NuDoubleToXML(NuXMLToDouble(text)); }), expected);
        EXPECT_EQ(NuDoubleToXML(NuXMLToDoubleDef(text, 2.5)),
                  expected == u"error" ? u"2.5" : expected);
        // Behind zeros the text is too long for the short way, and means the same.
        if (NuCharInSet(text.empty() ? u' ' : text.front(), u"0123456789.")) {
            const std::u16string longer = std::u16string(100, u'0') + std::u16string(text);
            EXPECT_EQ(outcome([&] { return NuDoubleToXML(NuXMLToDouble(longer)); }),
                      text == u"."    ? u"0"
                      : text == u"e1" ? u"0"
                                      : expected);
        }
    }
}

TEST(NumberText, countsTenThousandths) {
    const Row table[] = {
        {u" 12.5 ", u"12.5"},
        {u"-0.0001", u"-0.0001"},
        {u"1.20", u"1.2"},
        {u"100", u"100"},
        {u"1e2", u"100"},
        {u"12345e-4", u"1.2345"},
        {u"0.00005", u"0"}, // ties go to the even digit
        {u"0.00015", u"0.0002"},
        {u"0.00025", u"0.0002"},
        {u"0.000250000000000000000000001", u"0.0003"},
        {u"250e-6", u"0.0002"},
        {u"-0.00004999", u"0"},
        {u"0.000009e-5", u"0"},
        {u"922337203685477.5807", u"922337203685477.5807"},
        {u"-922337203685477.5808", u"-922337203685477.5808"},
        {u"922337203685477.58075", u"error"},
        {u"922337203685477.58074", u"922337203685477.5807"},
        {u"-922337203685477.5809", u"error"},
        {u"1844674407370955.1616", u"error"},
        {u"1e30", u"error"},
        {u"0e30", u"0"},
        {u"INF", u"error"},
        {u"NaN", u"error"},
        {u"", u"error"},
        {u"1,5", u"error"},
    };
    for (const auto& [text, expected] : table) {
        EXPECT_EQ(outcome([&text = text] { return NuCurrencyToXML(NuXMLToCurrency(text)); }),
                  expected)
            << host::utf16ToUtf8(text);
    }
}

TEST(DateTimeText, readsEveryShape) {
    const TimeZone zone(berlin);
    const Row table[] = {
        {u"2024-05-06T07:08:09", u"2024-05-06T07:08:09"},
        {u" 2024-05-06T07:08:09.5\n", u"2024-05-06T07:08:09.5"},
        {u"2024-05-06T07:08:09.1234", u"2024-05-06T07:08:09.123"},
        {u"2024-05-06T07:08:09.12350000000000000000000", u"2024-05-06T07:08:09.124"},
        {u"2024-12-31T23:59:59.9996", u"2025-01-01T00:00:00"},
        {u"2024-02-28T24:00:00", u"2024-02-29T00:00:00"},
        {u"2024-02-29", u"2024-02-29T00:00:00"},
        {u"2024-02-29-05:00", u"2024-02-29T00:00:00"},
        {u"07:08:09.010", u"1899-12-30T07:08:09.01"},
        {u"24:00:00.000", u"1899-12-30T00:00:00"},
        {u"0001-01-01T00:00:00", u"0001-01-01T00:00:00"},
        {u"9999-12-31T23:59:59.999", u"9999-12-31T23:59:59.999"},
        // In winter one hour ahead, in summer two.
        {u"2024-01-06T07:08:09Z", u"2024-01-06T08:08:09"},
        {u"2024-05-06T07:08:09Z", u"2024-05-06T09:08:09"},
        {u"2024-05-06T23:08:09-14:00", u"2024-05-07T15:08:09"},
        {u"00:30:00+05:45", u"1899-12-30T19:45:00"},
        {u"9999-12-31T23:30:00Z", u"error"},
        {u"9999-12-31T24:00:00", u"error"},
        {u"0000-01-01", u"error"},
        {u"-0001-01-01", u"error"},
        {u"12024-01-01", u"error"},
        {u"2023-02-29", u"error"},
        {u"1900-02-29", u"error"},
        {u"2024-13-01", u"error"},
        {u"2024-00-01", u"error"},
        {u"2024-01-00", u"error"},
        {u"2024-1-1", u"error"},
        {u"2024-01", u"error"},
        {u"20240101", u"error"},
        {u"2024-01-01T", u"error"},
        {u"2024-01-01 10:00:00", u"error"},
        {u"2024-01-01T10:00", u"error"},
        {u"2024-01-01T10:00:60", u"error"},
        {u"2024-01-01T10:60:00", u"error"},
        {u"2024-01-01T25:00:00", u"error"},
        {u"2024-01-01T24:00:01", u"error"},
        {u"2024-01-01T24:00:00.0001", u"error"},
        {u"2024-01-01T24:01:00", u"error"},
        {u"2024-01-01T10:00:00.", u"error"},
        {u"2024-01-01T10:00:00.5x", u"error"},
        {u"2024-01-01T10:00:00z", u"error"},
        {u"2024-01-01T10:00:00ZZ", u"error"},
        {u"2024-01-01T10:00:00+1:00", u"error"},
        {u"2024-01-01T10:00:00+14:01", u"error"},
        {u"2024-01-01T10:00:00+01:60", u"error"},
        {u"T10:00:00", u"error"},
        {u"", u"error"},
    };
    const TDateTime standIn = NuXMLToDateTime(u"2000-01-01");
    for (const auto& [text, expected] : table) {
        SCOPED_TRACE(host::utf16ToUtf8(text));
        EXPECT_EQ(outcome([&text = text] { return NuDateTimeToXML(NuXMLToDateTime(text)); }),
                  expected);
        EXPECT_EQ(NuDateTimeToXML(NuXMLToDateTimeDef(text, standIn)),
                  expected == u"error" ? u"2000-01-01T00:00:00" : expected);
    }
    EXPECT_EQ(NuXMLToDateTime(u"1899-12-29T06:00:00").serial, -1.25);
    EXPECT_EQ(NuXMLToDateTime(u"2024-05-06").serial, 45418);
    EXPECT_EQ(NuDateToXML(NuXMLToDate(u" 2024-05-06Z ")), u"2024-05-06");
    EXPECT_EQ(NuTimeToXML(NuXMLToTime(u" 07:08:09 ")), u"07:08:09");
    for (const auto text : {u"07:08:09"sv, u"2024-05-06T00:00:00"sv, u""sv}) {
        EXPECT_THROW((void)NuXMLToDate(text), host::EConvertError);
    }
    for (const auto text : {u"2024-05-06"sv, u"2024-05-06T00:00:00"sv, u""sv}) {
        EXPECT_THROW((void)NuXMLToTime(text), host::EConvertError);
    }
}

TEST(DateTimeText, writesZones) {
    struct Zoned {
        const char* zone;
        std::u16string_view local, utc, offset;
    };
    constexpr auto none = u"error"sv;
    const Zoned table[] = {
        {berlin, u"2024-01-06T07:08:09.5", u"2024-01-06T06:08:09.5Z",
         u"2024-01-06T07:08:09.5+01:00"},
        {berlin, u"2024-07-06T00:30:00", u"2024-07-05T22:30:00Z", u"2024-07-06T00:30:00+02:00"},
        {berlin, u"2024-03-31T02:30:00", u"2024-03-31T01:30:00Z", u"2024-03-31T02:30:00+01:00"},
        {berlin, u"2024-10-27T02:30:00", u"2024-10-27T00:30:00Z", u"2024-10-27T02:30:00+02:00"},
        {berlin, u"2024-10-27T03:00:00", u"2024-10-27T02:00:00Z", u"2024-10-27T03:00:00+01:00"},
        {newYork, u"2024-07-06T20:30:00", u"2024-07-07T00:30:00Z", u"2024-07-06T20:30:00-04:00"},
        {newYork, u"2024-11-03T01:30:00", u"2024-11-03T05:30:00Z", u"2024-11-03T01:30:00-04:00"},
        {kathmandu, u"2024-07-06T01:00:00", u"2024-07-05T19:15:00Z", u"2024-07-06T01:00:00+05:45"},
        {"UTC0", u"2024-07-06T01:00:00", u"2024-07-06T01:00:00Z", u"2024-07-06T01:00:00+00:00"},
        {oldAmsterdam, u"1920-07-06T01:00:00", u"1920-07-06T00:40:28Z",
         u"1920-07-06T00:59:28+00:19"},
        {farEast, u"2024-07-06T01:00:00", u"2024-07-05T10:30:00Z", u"2024-07-06T00:30:00+14:00"},
        {berlin, u"0001-01-01T00:30:00", none, u"0001-01-01T00:30:00+01:00"},
        {newYork, u"9999-12-31T23:30:00", none, u"9999-12-31T23:30:00-05:00"},
    };
    for (const auto& [zone, local, utc, offset] : table) {
        const TimeZone set(zone);
        SCOPED_TRACE(std::string(zone) + " " + host::utf16ToUtf8(local));
        const TDateTime value = NuXMLToDateTime(local);
        EXPECT_EQ(NuDateTimeToXML(value), local);
        EXPECT_EQ(outcome([&] { return NuDateTimeToXML(value, xdtfUTC); }), utc);
        EXPECT_EQ(NuDateTimeToXML(value, xdtfTimezone), offset);
        if (local != u"2024-03-31T02:30:00") { // left out by the clocks
            EXPECT_EQ(NuXMLToDateTime(offset), value);
        }
    }
    const TimeZone set(berlin);
    // Times alone have the zone of day zero, in summer too.
    const TDateTime summer = NuXMLToDateTime(u"2024-07-06T00:30:00.25");
    EXPECT_EQ(NuTimeToXML(summer), u"00:30:00.25");
    EXPECT_EQ(NuTimeToXML(summer, xdtfUTC), u"23:30:00.25Z");
    EXPECT_EQ(NuTimeToXML(summer, xdtfTimezone), u"00:30:00.25+01:00");
    EXPECT_EQ(NuTimeToXML(NuXMLToTime(u"23:30:00Z")), u"00:30:00");
    for (const double serial : {-693'594.0, 2'958'466.0, infinity, std::nan("")}) {
        EXPECT_THROW((void)NuDateTimeToXML({serial}), host::EConvertError) << serial;
        EXPECT_THROW((void)NuDateToXML({serial}), host::EConvertError) << serial;
    }
    EXPECT_THROW((void)NuTimeToXML({infinity}), host::EConvertError);
}

TEST(Base64Text, readsAndWrites) {
    const auto bytes = [](std::string_view text) {
        return std::vector<std::uint8_t>(text.begin(), text.end());
    };
    const std::pair<std::string_view, std::u16string_view> table[] = {
        {"", u""},           {"f", u"Zg=="},        {"fo", u"Zm8="},
        {"foo", u"Zm9v"},    {"foob", u"Zm9vYg=="}, {"\xFB\xFF\xBE"sv, u"+/++"},
        {"\0\0"sv, u"AAA="},
    };
    for (const auto& [plain, text] : table) {
        EXPECT_EQ(NuBytesToXML(bytes(plain)), text);
        EXPECT_EQ(NuXMLToBytes(text), bytes(plain));
        std::u16string spaced = u"\n";
        for (const char16_t unit : text) {
            spaced += {unit, u' ', u'\t'};
        }
        EXPECT_EQ(NuXMLToBytes(spaced), bytes(plain));
    }
    const std::pair<std::u16string_view, int> faults[] = {
        {u"Z", 1},    {u"Zg", 2},       {u"Zg=", 3},    {u"Zg===", 4},   {u"=", 0},
        {u"Z===", 1}, {u"Zg==Zg==", 4}, {u"Zm9v=", 4},  {u"Zm9-", 3},    {u"Zm9\u017A", 3},
        {u"Zh==", 3}, {u"Zm9=", 3},     {u"Zm9vZg", 6}, {u"Z\0=="sv, 1},
    };
    for (const auto& [text, place] : faults) {
        try {
            (void)NuXMLToBytes(text);
            ADD_FAILURE() << host::utf16ToUtf8(text);
        } catch (const host::EConvertError& error) {
            EXPECT_EQ(error.Message(),
                      u"The text is not valid base64 (at " + NuIntToXML(place) + u")")
                << host::utf16ToUtf8(text);
        }
    }
}

TEST(VariantText, writesAndReadsEveryType) {
    const std::pair<Variant, std::u16string_view> table[] = {
        {{}, u""},
        {host::null, u""},
        {std::int8_t{-128}, u"-128"},
        {std::int16_t{-32768}, u"-32768"},
        {-5, u"-5"},
        {std::numeric_limits<std::int64_t>::min(), u"-9223372036854775808"},
        {std::uint8_t{255}, u"255"},
        {std::uint16_t{65535}, u"65535"},
        {4294967295U, u"4294967295"},
        {std::numeric_limits<std::uint64_t>::max(), u"18446744073709551615"},
        {0.1F, u"0.1"},
        {16777216.0F, u"16777216"},
        {0.1, u"0.1"},
        {Currency{12'500}, u"1.25"},
        {TDateTime{45418.5}, u"2024-05-06T12:00:00"},
        {true, u"true"},
        {"<\xC3\xA4>", u"&lt;\u00E4&gt;"},
        {WideString{u"a&b"}, u"a&amp;b"},
        {u"'", u"&apos;"},
        {std::vector<std::uint8_t>{1, 2}, u"AQI="},
        {std::vector<std::int32_t>{1, -2, 3}, u"1 -2 3"},
        {std::vector<std::int32_t>{}, u""},
        {std::vector<std::u16string>{u"a b", u"", u"\"<", u"\"\""},
         u"&quot;a b&quot; &quot;&quot; &quot;&quot;&quot;&lt;&quot; "
         u"&quot;&quot;&quot;&quot;&quot;&quot;"},
        {std::vector<std::string>{"\xC3\xA4"}, u"&quot;\u00E4&quot;"},
        {std::vector<WideString>{{u"a"}, {u"b"}}, u"&quot;a&quot; &quot;b&quot;"},
        {std::vector<std::u16string>{}, u""},
    };
    for (const auto& [value, text] : table) {
        EXPECT_EQ(NuVariantToXml(value), text) << value.Type();
        EXPECT_EQ(NuXmlToVariant(text, value.Type()), value) << value.Type();
    }
    NuSetSystemCodePage(1252);
    EXPECT_EQ(NuVariantToXml("\xE4"), u"\u00E4");
    EXPECT_EQ(NuVarToWideString("\xE4"), u"\u00E4");
    EXPECT_EQ(NuXmlToVariant(u"\u00E4", host::varAnsiString), Variant("\xE4"));
    NuSetSystemCodePage(0);
    EXPECT_EQ(NuVarToWideString(5), u"5");
}

TEST(VariantText, readsFreelyButNotEverything) {
    const auto strings = [](std::vector<std::u16string> items) {
        return Variant(std::move(items));
    };
    struct Reading {
        std::u16string_view text;
        host::VarType type;
        std::optional<Variant> expected;
    };
    const Reading table[] = {
        {u" 07:30:00", host::varDate, TDateTime{0.3125}},
        {u"any", host::varEmpty, Variant()},
        {u"any", host::varNull, host::null},
        {u"\t1\n2  3 ", host::varInt32Array, std::vector<std::int32_t>{1, 2, 3}},
        {u" a  b\"c &quot;d e&quot;\n", host::varStringArray, strings({u"a", u"b\"c", u"d e"})},
        {u"1e40", host::varSingle, std::numeric_limits<float>::infinity()},
        {u"1.00005", host::varCurrency, Currency{10'000}},
        {u"128", host::varInt8, {}},
        {u"-1", host::varUInt8, {}},
        {u"32768", host::varInt16, {}},
        {u"65536", host::varUInt16, {}},
        {u"4294967296", host::varUInt32, {}},
        {u"18446744073709551616", host::varUInt64, {}},
        {u"", host::varInt32, {}},
        {u"", host::varBoolean, {}},
        {u"fal\u017Fe", host::varBoolean, {}},
        {u"1e300", host::varCurrency, {}},
        {u"1 x", host::varInt32Array, {}},
        {u"&quot;a", host::varStringArray, {}},
        {u"&quot;a&quot;b", host::varStringArray, {}},
        {u"&#;", host::varString, {}},
        {u"1", 9, {}},
        {u"1", 0x2005, {}},
    };
    for (const auto& [text, type, expected] : table) {
        std::optional<Variant> read;
        try {
            read = NuXmlToVariant(text, type);
        } catch (const host::EConvertError&) {
        }
        EXPECT_EQ(read, expected) << host::utf16ToUtf8(text) << " " << type;
    }
}

/// Random bits, which come out as numbers of every size.
std::uint64_t randomBits(support::Random& random) {
    return (std::uint64_t{random(1ULL << 32U)} << 32U | random(1ULL << 32U)) >> random(64);
}

TEST(VariantText, randomValuesComeBack) {
    const TimeZone zone(newYork);
    support::Random random(2);
    for (std::uint64_t round = 0; round < support::randomInputs(20'000); ++round) {
        const std::uint64_t bits = randomBits(random) << random(64);
        const auto real = std::bit_cast<double>(bits);
        const auto single = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        std::u16string text = support::randomMarkup(random);
        std::erase(text, u'\0');
        const TDateTime moment = host::fromMilliseconds(
            static_cast<std::int64_t>(random(300'000'000'000'000)) - 50'000'000'000'000);
        const std::vector<Variant> values = {
            static_cast<std::int8_t>(bits),
            static_cast<std::int16_t>(bits),
            static_cast<std::int32_t>(bits),
            static_cast<std::int64_t>(bits),
            static_cast<std::uint32_t>(bits),
            bits,
            std::isnan(real) ? 0.0 : real,
            std::isnan(single) ? 0.0F : single,
            Currency{static_cast<std::int64_t>(bits)},
            moment,
            text,
            WideString{text},
            std::vector<std::u16string>{text, u"", text.substr(text.size() / 2)},
            std::vector<std::uint8_t>(text.begin(), text.end()),
            std::vector<std::int32_t>(text.begin(), text.end()),
        };
        for (const Variant& value : values) {
            const NuXmlString written = NuVariantToXml(value);
            ASSERT_EQ(NuXmlToVariant(written, value.Type()), value) << host::utf16ToUtf8(written);
        }
        for (const auto format : {xdtfLocal, xdtfUTC, xdtfTimezone}) {
            ASSERT_EQ(NuTimeToXML(NuXMLToTime(NuTimeToXML(moment, format))), NuTimeToXML(moment));
            const TDateTime read = NuXMLToDateTime(NuDateTimeToXML(moment, format));
            const double difference = host::toLinearDays(read) - host::toLinearDays(moment);
            // An hour apart where the clocks leave that time out.
            ASSERT_TRUE(read == moment || std::abs(difference - 1.0 / 24) < 1e-6)
                << host::utf16ToUtf8(NuDateTimeToXML(moment));
        }
    }
}

} // namespace
