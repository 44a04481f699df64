#include "host/runtime/variant.h"

#include <algorithm>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "host/runtime/decimalText.h"
#include "host/runtime/exception.h"
#include "host/runtime/numberText.h"
#include "support/randomText.h"

namespace {

using host::Currency;
using host::TDateTime;
using host::Variant;
using host::WideString;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(Variant, knowsItsType) {
    const std::pair<Variant, int> table[] = {
        {{}, 0},
        {host::null, 1},
        {std::int8_t{-1}, 16},
        {std::int16_t{1}, 2},
        {1, 3},
        {1L, 20},
        {1LL, 20},
        {std::uint8_t{1}, 17},
        {std::uint16_t{1}, 18},
        {1U, 19},
        {1ULL, 21},
        {1.5F, 4},
        {1.5, 5},
        {Currency{1}, 6},
        {TDateTime{1}, 7},
        {true, 11},
        {"8", 256},
        {std::string_view("8"), 256},
        {WideString{u"w"}, 8},
        {u"s", 258},
        {std::u16string_view(u"s"), 258},
        {std::vector<std::uint8_t>{1}, 0x2011},
        {std::vector<std::int32_t>{1}, 0x2003},
        {std::vector<std::string>{"a"}, 0x2100},
        {std::vector<WideString>{{u"a"}}, 0x2008},
        {std::vector<std::u16string>{u"a"}, 0x2102},
    };
    for (const auto& [value, type] : table) {
        EXPECT_EQ(value.Type(), type);
        EXPECT_EQ(value.IsString(), type == 256 || type == 8 || type == 258);
        EXPECT_EQ(value.IsArray(), type >= 0x2000);
        for (const auto& [other, otherType] : table) {
            EXPECT_EQ(value == other, Variant(value).Held() == other.Held()) << type;
            EXPECT_TRUE(value != other || type == otherType);
        }
    }
    EXPECT_TRUE(Variant().IsEmpty() && !Variant().IsNull() && Variant(host::null).IsNull());
    EXPECT_NE(Variant(1), Variant(1L));
    EXPECT_NE(Variant(notANumber), Variant(notANumber));
    EXPECT_EQ(*Variant(u"s").If<std::u16string>(), u"s");
    EXPECT_EQ(Variant(u"s").If<WideString>(), nullptr);
}

/// The result as text, or "error".
std::u16string outcome(const std::function<Variant()>& convert) {
    try {
        return convert().AsString();
    } catch (const host::EConvertError&) {
        return u"error";
    }
}

TEST(Variant, converts) {
    struct Row {
        Variant value;
        std::u16string_view boolean, int32, int64, uint64, real, currency, text;
    };
    constexpr std::u16string_view none = u"error";
    const Row table[] = {
        {{}, none, none, none, none, none, none, none},
        {host::null, none, none, none, none, none, none, none},
        {std::vector<std::int32_t>{1}, none, none, none, none, none, none, none},
        {-5, u"true", u"-5", u"-5", none, u"-5", u"-5", u"-5"},
        {std::numeric_limits<std::int64_t>::min(), u"true", none, u"-9223372036854775808", none,
         u"-9.223372036854776E18", none, u"-9223372036854775808"},
        {std::numeric_limits<std::uint64_t>::max(), u"true", none, none, u"18446744073709551615",
         u"1.8446744073709552E19", none, u"18446744073709551615"},
        {2.5, u"true", u"2", u"2", u"2", u"2.5", u"2.5", u"2.5"},
        {-0.5, u"true", u"0", u"0", u"0", u"-0.5", u"-0.5", u"-0.5"},
        {2147483647.5, u"true", none, u"2147483648", u"2147483648", u"2147483647.5",
         u"2147483647.5", u"2147483647.5"},
        {0.1F, u"true", u"0", u"0", u"0", u"0.10000000149011612", u"0.1", u"0.1"},
        {0.00005, u"true", u"0", u"0", u"0", u"0.00005", u"0", u"0.00005"},
        {infinity, u"true", none, none, none, u"INF", none, u"INF"},
        {notANumber, u"true", none, none, none, u"NaN", none, u"NaN"},
        {Currency{-15'000}, u"true", u"-2", u"-2", none, u"-1.5", u"-1.5", u"-1.5"},
        // More digits than a double holds.
        {Currency{-4'836'242'080'750'374'627}, u"true", none, u"-483624208075037", none,
         u"-483624208075037.44", u"-483624208075037.4627", u"-483624208075037.4627"},
        {Currency{5'481'828'291'982'971'348}, u"true", none, u"548182829198297", u"548182829198297",
         u"548182829198297.1", u"548182829198297.1348", u"548182829198297.1348"},
        {TDateTime{1.25}, u"true", u"1", u"1", u"1", u"1.25", u"1.25", none},
        {true, u"true", u"1", u"1", u"1", u"1", u"1", u"true"},
        {false, u"false", u"0", u"0", u"0", u"0", u"0", u"false"},
        {u"7", none, u"7", u"7", u"7", u"7", u"7", u"7"},
        {u"1", u"true", u"1", u"1", u"1", u"1", u"1", u"1"},
        {"+1e2", none, none, none, none, u"100", u"100", u"+1e2"},
        {WideString{u"false"}, u"false", none, none, none, none, none, u"false"},
        {"\xC3\xA4", none, none, none, none, none, none, u"\u00E4"},
        {u" 7", none, none, none, none, none, none, u" 7"},
    };
    for (const Row& row : table) {
        const Variant& v = row.value;
        SCOPED_TRACE(testing::PrintToString(row.text) + " type " + std::to_string(v.Type()));
        EXPECT_EQ(outcome([&] { return Variant(v.AsBoolean()); }), row.boolean);
        EXPECT_EQ(outcome([&] { return Variant(v.AsInteger()); }), row.int32);
        EXPECT_EQ(outcome([&] { return Variant(v.AsInt64()); }), row.int64);
        EXPECT_EQ(outcome([&] { return Variant(v.AsUInt64()); }), row.uint64);
        EXPECT_EQ(outcome([&] { return Variant(v.AsDouble()); }), row.real);
        EXPECT_EQ(outcome([&] { return Variant(v.AsCurrency()); }), row.currency);
        EXPECT_EQ(outcome([&] { return Variant(v.AsString()); }), row.text);
    }
    EXPECT_EQ(Variant(1.5F).AsDateTime(), TDateTime{1.5});
    EXPECT_THROW((void)Variant(u"1").AsDateTime(), host::EConvertError);
}

TEST(Variant, saysWhatCannotBeConverted) {
    const std::pair<Variant, std::u16string_view> table[] = {
        {host::null, u"A value of type null cannot be converted to type 32-bit integer"},
        {u"x", u"'x' cannot be converted to a value of type 32-bit integer"},
        {1e10, u"'10000000000' cannot be converted to a value of type 32-bit integer"},
    };
    for (const auto& [value, message] : table) {
        try {
            (void)value.AsInteger();
            ADD_FAILURE();
        } catch (const host::EConvertError& error) {
            EXPECT_EQ(error.Message(), message);
        }
    }
}

TEST(Variant, comparesForSorting) {
    // Groups of equals, in ascending order.
    const std::vector<std::vector<Variant>> groups = {
        {{}, host::null},
        {notANumber, std::numeric_limits<float>::quiet_NaN()},
        {-infinity},
        {std::numeric_limits<std::int64_t>::min()},
        {-1, -1.0F, Currency{-10'000}, u"-1", "-01.00", u"-1e0"},
        {TDateTime{-1.25}}, // 06:00 on the day before zero
        {TDateTime{-1.75}}, // 18:00 on that day
        {0, false, -0.0, u"-0.000", u"0e99"},
        {0.1, Currency{1000}, u".1", u"1E-1"},
        {1, true, TDateTime{1}},
        {u"9", 9, WideString{u"+9"}},
        {u"10", 10U},
        {std::numeric_limits<std::int64_t>::max(), u"9223372036854775807"},
        {std::uint64_t{1} << 63U, u"9223372036854775808"},
        {u"9223372036854775809"},
        {u"1e400"},
        {std::vector<std::int32_t>{1, 2}},
        {std::vector<std::int32_t>{2}},
        {std::vector<WideString>{}, std::vector<WideString>{}},
        {std::vector<WideString>{{u"a"}}},
        {std::vector<std::uint8_t>{0}},
    };
    const auto signOf = [](int result) { return (result > 0) - (result < 0); };
    for (std::size_t left = 0; left < groups.size(); ++left) {
        for (std::size_t right = 0; right < groups.size(); ++right) {
            for (const Variant& one : groups[left]) {
                for (const Variant& other : groups[right]) {
                    // Words of numbers are no decimal numbers, so they mix with text by letters.
                    const bool isWord = (left < 3 || right < 3) && left != 0 && right != 0 &&
                                        (one.IsString() || other.IsString());
                    const bool isTrue = one == Variant(true) || other == Variant(true) ||
                                        one == Variant(false) || other == Variant(false);
                    if (!isWord && !(isTrue && (one.IsString() || other.IsString()))) {
                        EXPECT_EQ(signOf(Variant::Compare(one, other)),
                                  (left > right) - (left < right))
                            << left << " " << right;
                    }
                }
            }
        }
    }
    const std::u16string_view texts[] = {u"", u"10x", u"9x", u"A", u"B", u"a", u"\u00E4"};
    for (std::size_t index = 1; index < std::size(texts); ++index) {
        EXPECT_LT(Variant::Compare(texts[index - 1], texts[index]), 0) << index;
    }
    EXPECT_LT(Variant::Compare(10, u"9x"), 0);
    EXPECT_LT(Variant::Compare(u"10", u"1x"), 0); // 9 < 10 < 1x < 9
    EXPECT_LT(Variant::Compare(u"1x", u"9"), 0);
}

TEST(DecimalText, takesNumbersOfAnyLength) {
    const std::u16string nines(5000, u'9');
    const std::u16string zeros(5000, u'0');
    const std::pair<std::u16string, std::optional<double>> table[] = {
        {nines + u"e-5000", 1.0},
        {u"0." + zeros + u"25e5001", 2.5},
        {u"-" + zeros + u"12" + zeros + u"e-5000", -12.0},
        {u"1" + zeros, infinity},
        {u"-0." + zeros + u"1", -0.0},
        {u"1" + zeros + u"e-999999999999999999999999", 0.0},
        {u"0e" + nines, 0.0},
        // Half way between two numbers, and the least bit above it.
        {u"9007199254740993." + zeros, 9007199254740992.0},
        {u"9007199254740993." + zeros + u"1", 9007199254740994.0},
        {nines + u"x", {}},
        {nines + u".e", {}},
    };
    for (const auto& [text, expected] : table) {
        EXPECT_EQ(host::parseFloating<double>(text), expected) << text.size();
    }
    const auto compare = [](std::u16string_view left, std::u16string_view right) {
        return host::compareDecimals(*host::parseDecimal(left), *host::parseDecimal(right));
    };
    EXPECT_LT(compare(nines, u"1" + zeros), 0);
    EXPECT_LT(compare(u"-" + nines + u"1", u"-" + nines), 0);
    EXPECT_EQ(compare(u"1" + zeros, u"1e5000"), 0);
}

TEST(DateTimeSerial, keepsMilliseconds) {
    const std::pair<double, std::int64_t> table[] = {
        {0, 0},
        {0.5, 43'200'000},
        {-0.5, 43'200'000},
        {-1.25, -86'400'000 + 21'600'000},
        {1, 86'400'000},
        {1 - 1e-10, 86'400'000},
    };
    for (const auto& [serial, milliseconds] : table) {
        EXPECT_EQ(host::toMilliseconds({serial}), milliseconds) << serial;
    }
    for (const double serial : {notANumber, infinity, -1e300}) {
        EXPECT_EQ(host::toMilliseconds({serial}), std::nullopt);
    }
    support::Random random(1);
    for (std::uint64_t round = 0; round < support::randomInputs(20'000); ++round) {
        const auto milliseconds =
            static_cast<std::int64_t>(random(400'000'000'000'000)) - 100'000'000'000'000;
        const TDateTime moment = host::fromMilliseconds(milliseconds);
        ASSERT_EQ(host::toMilliseconds(moment), milliseconds);
    }
}

} // namespace
