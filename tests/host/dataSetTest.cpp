#include "host/runtime/csvDataSet.h"
#include "host/runtime/exception.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/persistent.h"
#include "host/runtime/rangeDataSet.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

using host::CsvDataSet;
using host::TFieldType;
using host::Variant;

std::string saved(CsvDataSet& table, const host::CsvOptions& options = {}) {
    host::TMemoryStream stream;
    table.Save(stream, options);
    return {reinterpret_cast<const char*>(stream.Memory()),
            static_cast<std::size_t>(stream.GetSize())};
}

/// The type that is guessed for a column of these values.
TFieldType guessed(const std::string& column) {
    CsvDataSet table;
    table.LoadText("name,other\n" + column);
    return table.FieldType(0);
}

TEST(CsvDataSet, TextComesBackAndIsWrittenInOneForm) {
    struct {
        std::string text;
        std::string written;
    } const cases[] = {
        {"a,b\n1,x\n", "a,b\r\n1,x\r\n"},
        {"\xEF\xBB\xBF"
         "a,b\r\n1,x",
         "a,b\r\n1,x\r\n"},
        {"a,b\r1,x\r\r2,\r", "a,b\r\n1,x\r\n2,\r\n"},
        {"a,b\n\"1\",\"\"\n,\n", "a,b\r\n1,\"\"\r\n,\r\n"},
        {"a\n\"x,\"\"y\"\"\r\nz\"\n\n1\n", "a\r\n\"x,\"\"y\"\"\r\nz\"\r\n\r\n1\r\n"},
        {"", ""},
        {"a,\"b c\"\n", "a,b c\r\n"},
        {"d,t,m,f,c\n2024-02-29,23:59:59.5,2024-02-29 07:08,1.5e300,true\n",
         "d,t,m,f,c\r\n2024-02-29,23:59:59.500,2024-02-29T07:08:00,1.5E300,true\r\n"},
    };
    for (const auto& expected : cases) {
        CsvDataSet table;
        table.LoadText(expected.text);
        EXPECT_EQ(saved(table), expected.written) << expected.text;
        host::TMemoryStream stream(expected.written);
        CsvDataSet again(stream);
        EXPECT_EQ(saved(again), expected.written);
    }
    CsvDataSet table;
    table.LoadText("1;\xC3\xA9\n", {.separator = u';', .hasHeader = false});
    EXPECT_EQ(table.FieldName(1), u"F2");
    EXPECT_EQ(table.GetValue(1), Variant(u"\u00E9"));
    EXPECT_EQ(saved(table, {.separator = u'\t'}), "F1\tF2\r\n1\t\xC3\xA9\r\n");
}

TEST(CsvDataSet, GuessesTheTypeThatAllValuesHave) {
    struct {
        std::string column;
        TFieldType type;
    } const cases[] = {
        {"", TFieldType::WideString},
        {",1\n,2\n", TFieldType::WideString},
        {"1,\n-2,\n,\n0,\n", TFieldType::Integer},
        {"1,\n2147483648,\n", TFieldType::LargeInt},
        {"2147483648,\n1,\n", TFieldType::LargeInt},
        {"1,\n0.5,\n2e9,\n", TFieldType::Float},
        {"1,\n12345678901234567890,\n", TFieldType::WideString},
        {"007,\n", TFieldType::WideString},
        {"+49,\n", TFieldType::WideString},
        {"1,\nx,\n", TFieldType::WideString},
        {"true,\nFALSE,\n", TFieldType::Boolean},
        {"true,\n1,\n", TFieldType::WideString},
        {"2024-02-29,\n", TFieldType::Date},
        {"2023-02-29,\n", TFieldType::WideString},
        {"2024-02-29,\n2024-02-29T07:08:09.25,\n2024-03-01,\n", TFieldType::DateTime},
        {"07:08,\n23:59:60,\n", TFieldType::WideString},
        {"07:08,\n23:59:59.999,\n", TFieldType::Time},
    };
    for (const auto& expected : cases) {
        EXPECT_EQ(guessed(expected.column), expected.type) << expected.column;
    }
}

TEST(CsvDataSet, FaultsNameTheLineAndChangeNothing) {
    struct {
        std::string text;
        std::u16string_view message;
    } const cases[] = {
        {"a,b\n\"x\ny\",1\n1\n", u"Line 4 has 1 fields instead of 2!"},
        {"a,b\n1,2,3\n", u"Line 2 has 3 fields instead of 2!"},
        {"a,b\n1,\"x\n\n", u"The quote that opens in line 2 is not closed!"},
        {"a\n\"x\"y\n", u"There is text behind a closing quote in line 2!"},
        {"a,A\n", u"There are two fields \"A\"!"},
        {"a,b\n1,2\nx,2\n", u"\"x\" is no value of field 1 in line 3!"},
    };
    constexpr std::array types{TFieldType::Integer};
    CsvDataSet table;
    table.LoadText("kept\n1\n");
    for (const auto& expected : cases) {
        try {
            table.LoadText(expected.text, {.types = types});
            ADD_FAILURE() << expected.text;
        } catch (const host::EConvertError& error) {
            EXPECT_EQ(error.Message(), expected.message);
        }
    }
    EXPECT_EQ(saved(table), "kept\r\n1\r\n");
}

TEST(RowSet, RecordsArePostedOrCancelledAndKeepToTheirTypes) {
    host::TRowSet rows;
    rows.AddField(u"id", TFieldType::SmallInt);
    rows.AddField(u"name", TFieldType::String);
    EXPECT_TRUE(rows.Eof());
    EXPECT_THROW(rows.SetValue(0, 1), host::Exception);
    EXPECT_THROW(rows.AddField(u"ID", TFieldType::Memo), host::Exception);
    rows.Append();
    rows.SetValue(0, u"7");
    EXPECT_THROW(rows.SetValue(0, 40'000), host::EConvertError);
    EXPECT_THROW(rows.SetValue(2, 1), host::EListError);
    rows.Post();
    rows.Append();
    rows.Cancel();
    rows.AddField(u"late", TFieldType::Boolean);
    rows.First();
    EXPECT_EQ(rows.GetValue(0), Variant(std::int16_t{7}));
    EXPECT_TRUE(rows.IsNull(1) && rows.IsNull(2));
    rows.Next();
    EXPECT_TRUE(rows.Eof());
    EXPECT_EQ(rows.RecordCount(), 1U);
}

class TReading : public host::Published<TReading> {
public:
    std::uint8_t Channel = 0;
    std::optional<double> Value;
    std::vector<double> History; // no field
    [[nodiscard]] std::u16string GetUnit() const { return u"mm"; }

    static constexpr auto published = host::publish<TReading>(
        u"TReading", host::prop<&TReading::Channel>(), host::prop<&TReading::Value>(),
        host::prop<&TReading::History>(), host::prop<&TReading::GetUnit>());
};

struct Kinds {
    bool Flag;
    std::int8_t Tiny;
    std::int16_t Small;
    std::uint16_t Word;
    std::int32_t Number;
    std::uint32_t Large;
    std::int64_t Huge;
    float Ratio;
    host::Currency Price;
    host::TDateTime Day;
    std::string Name;
    // These are no fields.
    Variant Any;
    std::vector<std::uint8_t> Bytes;
    std::vector<std::int32_t> Numbers;
    std::vector<std::u16string> Names;
    std::map<int, int> Map;
    static constexpr auto published = host::publish<Kinds>(
        u"Kinds", host::prop<&Kinds::Flag>(), host::prop<&Kinds::Tiny>(),
        host::prop<&Kinds::Small>(), host::prop<&Kinds::Word>(), host::prop<&Kinds::Number>(),
        host::prop<&Kinds::Large>(), host::prop<&Kinds::Huge>(), host::prop<&Kinds::Ratio>(),
        host::prop<&Kinds::Price>(), host::prop<&Kinds::Day>(), host::prop<&Kinds::Name>(),
        host::prop<&Kinds::Any>(), host::prop<&Kinds::Bytes>(), host::prop<&Kinds::Numbers>(),
        host::prop<&Kinds::Names>(), host::prop<&Kinds::Map>());
};

TEST(RangeDataSet, EveryKindOfValueHasItsTypeOfField) {
    std::vector<Kinds> values;
    const host::RangeDataSet<Kinds> data(values);
    std::vector<TFieldType> types;
    for (std::size_t index = 0; index < data.FieldCount(); ++index) {
        types.push_back(data.FieldType(index));
    }
    const std::vector<TFieldType> expected{
        TFieldType::Boolean,  TFieldType::SmallInt, TFieldType::SmallInt,  TFieldType::Word,
        TFieldType::Integer,  TFieldType::LargeInt, TFieldType::LargeInt,  TFieldType::Float,
        TFieldType::Currency, TFieldType::DateTime, TFieldType::WideString};
    EXPECT_EQ(types, expected);
}

TEST(RangeDataSet, PublishedValuesAreFields) {
    std::vector<TReading> readings(1);
    host::RangeDataSet<TReading> data(readings);
    ASSERT_EQ(data.FieldCount(), 3U);
    EXPECT_EQ(data.FieldType(0), TFieldType::SmallInt);
    EXPECT_EQ(data.FieldType(1), TFieldType::Float);
    data.First();
    EXPECT_TRUE(data.IsNull(1));
    data.SetValue(1, u"0.5");
    EXPECT_THROW(data.SetValue(0, 256), host::EConvertError);
    EXPECT_THROW(data.SetValue(2, u"m"), host::Exception);
    data.Append();
    data.SetValue(0, 9);
    data.Post();
    EXPECT_EQ(readings[0].Value, 0.5);
    ASSERT_EQ(readings.size(), 2U);
    EXPECT_EQ(readings[1].Channel, 9);
    host::TMemoryStream stream;
    host::writeCsv(data, stream);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(stream.Memory()),
                          static_cast<std::size_t>(stream.GetSize())),
              "Channel,Value,Unit\r\n0,0.5,mm\r\n9,,mm\r\n");
}

} // namespace
