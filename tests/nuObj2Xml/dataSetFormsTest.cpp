// The records of data sets as elements and back.

#include "nuObj2Xml/dataSetForms.h"

#include <gtest/gtest.h>

#include <optional>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/rowSet.h"
#include "nuXmlDOM.h"
#include "nuXmlParser.h"

namespace {

using host::TFieldType;
using host::Variant;

/// A field of every type that there is, named by its number.
host::TRowSet allTypes() {
    host::TRowSet rows;
    for (const int type : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 14, 16, 24, 25}) {
        rows.AddField(u"f" + NuIntToXML(type), static_cast<TFieldType>(type));
    }
    return rows;
}

NuXmlString written(host::IDataSet& data, std::u16string_view root = u"<rows/>") {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(root);
    NuSerialize(data, *document->get_documentElement());
    return document->get_documentElement()->get_xml();
}

TEST(DataSetForms, RecordsOfAllTypesComeBack) {
    const Variant day = host::TDateTime{45418};
    const Variant time = host::TDateTime{0.25};
    const std::vector<Variant> values{u"a<&b",
                                      std::int16_t{-7},
                                      70000,
                                      std::uint16_t{65535},
                                      true,
                                      0.1,
                                      host::Currency{12345},
                                      1e300,
                                      day,
                                      time,
                                      host::TDateTime{45418.5},
                                      1,
                                      u"two\nlines",
                                      u"\u00E9 ",
                                      std::int64_t{1} << 40};
    host::TRowSet rows = allTypes();
    rows.Append();
    for (std::size_t field = 0; field < values.size(); ++field) {
        rows.SetValue(field, values[field]);
    }
    rows.Post();
    rows.Append();
    rows.Post();

    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(written(rows));
    host::TRowSet again = allTypes();
    NuDeserialize(*document->get_documentElement(), again);
    ASSERT_EQ(again.RecordCount(), 2U);
    again.First();
    for (std::size_t field = 0; field < values.size(); ++field) {
        EXPECT_EQ(again.GetValue(field), values[field]) << field;
    }
    again.Next();
    for (std::size_t field = 0; field < values.size(); ++field) {
        EXPECT_TRUE(again.IsNull(field)) << field;
    }
}

TEST(DataSetForms, TypesAndNilTakeThePrefixesInScope) {
    host::TRowSet rows;
    rows.AddField(u"id", TFieldType::LargeInt);
    rows.AddField(u"day", TFieldType::Date);
    rows.Append();
    rows.SetValue(0, 5);
    rows.Post();
    EXPECT_EQ(written(rows), u"<rows><row><id type=\"int\">5</id><day nil=\"true\"/></row></rows>");
    const NuXmlString declared = u"<rows xmlns:i=\"http://www.w3.org/2001/XMLSchema-instance\" "
                                 u"xmlns:s=\"http://www.w3.org/2001/XMLSchema\">";
    EXPECT_EQ(written(rows, declared + u"<old/></rows>"),
              declared +
                  u"<old/><row><id i:type=\"s:int\">5</id><day i:nil=\"true\"/></row></rows>");
}

TEST(DataSetForms, ReadingGoesByFieldsAndTellsThePlace) {
    struct {
        std::u16string_view xml;
        std::size_t records;
        Variant id;
        Variant name;
        std::u16string_view error; ///< How it begins; empty for none.
    } const cases[] = {
        {u"<r><ROW><x:ID>7</x:ID><other>x</other></ROW></r>", 1, 7, host::null, u""},
        {u"<r><row><id type=\"string\">7</id><name>a</name><name>b</name></row></r>", 1, 7, u"b",
         u""},
        {u"<r><row><name xsi:nil=\"TRUE\">x</name></row><record/></r>", 1, host::null, host::null,
         u""},
        {u"<r><row><name></name><id></id></row></r>", 1, host::null, u"", u""},
        {u"<r><row><id>7</id></row><row><name>n</name><id>2147483648</id></row></r>", 1, 7,
         host::null, u"2147483648"},
        {u"<r><row><id>7</id></row><row><id>x</id></row></r>", 1, 7, host::null, u"'x'"},
    };
    for (const auto& expected : cases) {
        host::TRowSet rows;
        rows.AddField(u"id", TFieldType::Integer);
        rows.AddField(u"name", TFieldType::Memo);
        const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(expected.xml);
        std::optional<NuXmlString> message;
        try {
            NuDeserialize(*document->get_documentElement(), rows);
        } catch (const host::EConvertError& error) {
            message = error.Message();
        }
        EXPECT_EQ(message.has_value(), !expected.error.empty());
        if (message) {
            EXPECT_TRUE(message->starts_with(expected.error)) << NuToUtf8(*message);
            EXPECT_TRUE(message->ends_with(u" (at id of record 2)")) << NuToUtf8(*message);
        }
        EXPECT_EQ(rows.RecordCount(), expected.records);
        rows.First();
        EXPECT_EQ(rows.GetValue(0), expected.id);
        EXPECT_EQ(rows.GetValue(1), expected.name);
    }
}

TEST(DataSetForms, WhatHasNoNameIsRefusedBeforeAnythingIsWritten) {
    for (const auto& [name, type] :
         {std::pair(u"a b", 3), std::pair(u"1", 3), std::pair(u"ok", 12)}) {
        host::TRowSet rows;
        rows.AddField(u"first", TFieldType::Integer);
        rows.AddField(name, static_cast<TFieldType>(type));
        const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(u"<rows/>");
        EXPECT_THROW(NuSerialize(rows, *document->get_documentElement()), host::Exception);
        EXPECT_FALSE(document->get_documentElement()->hasChildNodes());
    }
}

} // namespace
