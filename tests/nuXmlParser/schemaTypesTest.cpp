#include "nuXmlParser/schemaTypes.h"

#include <functional>

#include <gtest/gtest.h>

#include "host/runtime/exception.h"
#include "host/runtime/unicode.h"

namespace {

/// The result, or the message of the exception.
std::u16string outcome(const std::function<std::u16string()>& call) {
    try {
        return call();
    } catch (const host::Exception& error) {
        EXPECT_EQ(dynamic_cast<const host::EConvertError*>(&error), nullptr);
        return error.Message();
    }
}

constexpr std::u16string_view badDataType =
    u"The given DataType could not be converted to a valid SchemaType!";
constexpr std::u16string_view badFieldType =
    u"The given FieldType could not be converted to a valid SchemaType!";

TEST(SchemaTypes, nameDataTypes) {
    const std::u16string_view names[] = {u"",
                                         u"byte",
                                         u"short",
                                         u"int",
                                         u"long",
                                         u"unsignedByte",
                                         u"unsignedShort",
                                         u"unsignedInt",
                                         u"float",
                                         u"double",
                                         u"double",
                                         u"string",
                                         u"string",
                                         u"string",
                                         u"string",
                                         u"boolean",
                                         u"date",
                                         u"time",
                                         u"dateTime",
                                         u"",
                                         u"",
                                         u"",
                                         u"",
                                         u"",
                                         u"",
                                         u"",
                                         u"",
                                         u"base64Binary",
                                         u"stringArray",
                                         u"intArray",
                                         u""};
    for (std::size_t ordinal = 0; ordinal < std::size(names); ++ordinal) {
        EXPECT_EQ(
            outcome([&] { return NuDataTypeToSchemaType(static_cast<TNuDataType>(ordinal)); }),
            names[ordinal].empty() ? badDataType : names[ordinal])
            << ordinal;
    }
}

TEST(SchemaTypes, nameFieldTypes) {
    const std::pair<int, std::u16string_view> names[] = {
        {1, u"string"}, {16, u"string"}, {24, u"string"}, {2, u"short"},   {3, u"int"},
        {4, u"int"},    {14, u"int"},    {25, u"int"},    {5, u"boolean"}, {6, u"double"},
        {7, u"double"}, {8, u"decimal"}, {9, u"date"},    {10, u"time"},   {11, u"dateTime"}};
    for (int ordinal = -1; ordinal < 50; ++ordinal) {
        std::u16string_view expected = badFieldType;
        for (const auto& [known, name] : names) {
            expected = known == ordinal ? name : expected;
        }
        EXPECT_EQ(outcome([&] { return NuFieldTypeToSchemaType(ordinal); }), expected) << ordinal;
    }
}

TEST(SchemaTypes, nameVariants) {
    struct Row {
        host::Variant value;
        int dataType;
        std::u16string_view name;
    };
    const Row table[] = {
        {{}, 0, badDataType},
        {host::null, 0, badDataType},
        {std::int8_t{}, 1, u"byte"},
        {std::int16_t{}, 2, u"short"},
        {std::int32_t{}, 3, u"int"},
        {std::int64_t{}, 4, u"long"},
        {std::uint64_t{}, 4, u"long"},
        {std::uint8_t{}, 5, u"unsignedByte"},
        {std::uint16_t{}, 6, u"unsignedShort"},
        {std::uint32_t{}, 7, u"unsignedInt"},
        {1.0F, 8, u"float"},
        {1.0, 9, u"double"},
        {host::Currency{}, 10, u"double"},
        {"", 11, u"string"},
        {host::WideString{}, 12, u"string"},
        {u"", 13, u"string"},
        {true, 15, u"boolean"},
        {host::TDateTime{}, 18, u"dateTime"},
        {std::vector<std::uint8_t>{}, 27, u"base64Binary"},
        {std::vector<std::string>{}, 28, u"stringArray"},
        {std::vector<host::WideString>{}, 28, u"stringArray"},
        {std::vector<std::u16string>{}, 28, u"stringArray"},
        {std::vector<std::int32_t>{}, 29, u"intArray"},
    };
    for (const auto& [value, dataType, name] : table) {
        EXPECT_EQ(static_cast<int>(NuVarType(value)), dataType);
        EXPECT_EQ(outcome([&, &held = value] { return NuSchemaType(held); }), name);
        EXPECT_EQ(NuVariantTypeToSchemaType(value.Type()), u"short"); // not what one expects
    }
    EXPECT_EQ(NuVariantTypeToSchemaType(0xFFFF), u"short");
    EXPECT_EQ(NuVarTypeToDataType(0x2005), TNuDataType::Unknown);
}

TEST(SchemaTypes, areReadInAnyForm) {
    struct Row {
        std::u16string_view name;
        int variantType;
        int dataType;
    };
    const Row known[] = {{u"", 0, 0},
                         {u"byte", 16, 1},
                         {u"short", 2, 2},
                         {u"xsd:Int", 3, 3},
                         {u"INT", 3, 3},
                         {u"integer", 3, 3},
                         {u"long", 20, 4},
                         {u"Int64", 20, 4},
                         {u"integer64", 20, 4},
                         {u":long", 20, 4},
                         {u"unsignedByte", 17, 5},
                         {u"unsignedShort", 18, 6},
                         {u"unsignedInt", 19, 7},
                         {u"float", 5, 9},
                         {u"decimal", 5, 9},
                         {u"double", 6, 10},
                         {u"string", 258, 13},
                         {u"boolean", 11, 15},
                         {u"date", 7, 18},
                         {u"time", 7, 18},
                         {u"xs:dateTime", 7, 18},
                         {u"timeInstant", 7, 18},
                         {u"base64Binary", 0x2011, 27},
                         {u"stringArray", 0x2102, 28},
                         {u"intArray", 0x2003, 29}};
    for (const auto& [name, variantType, dataType] : known) {
        for (const bool raise : {false, true}) {
            EXPECT_EQ(NuSchemaTypeToVariantType(name, raise), variantType);
            EXPECT_EQ(static_cast<int>(NuSchemaTypeToDataType(name, raise)), dataType);
        }
    }
    const std::pair<std::u16string_view, std::u16string> unknown[] = {
        {u"foo", u"foo"},
        {u"xs:FOO", u"foo"},
        {u"a:b:int", u"b:int"},
        {u"xsd:", u""},
        {u":", u""},
        {u"int ", u"int "},
        {u"unsignedLong", u"unsignedlong"}};
    for (const auto& [name, shown] : unknown) {
        EXPECT_EQ(NuSchemaTypeToVariantType(name, false), 0);
        EXPECT_EQ(NuSchemaTypeToDataType(name, false), TNuDataType::Unknown);
        EXPECT_EQ(outcome([&, &text = name] {
                      return std::u16string(1, NuSchemaTypeToVariantType(text, true));
                  }),
                  u"The given schematype \"" + shown +
                      u"\" could not be converted to a valid VariantType!");
    }
}

} // namespace
