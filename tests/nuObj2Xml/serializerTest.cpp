// What serializers write: pieces, whole texts, and what is registered for which class.

#include <gtest/gtest.h>

#include "common/stringStream.h"
#include "host/runtime/unicode.h"
#include "nuObj2Xml.h"

namespace {

using host::prop;

class Address : public host::Published<Address> {
public:
    std::u16string Street;
    std::int32_t Number = 0;
    std::unique_ptr<Address> Next;
    static constexpr auto published =
        host::publish<Address>(u"TAddress", prop<&Address::Street>(),
                               prop<&Address::Number>().Default(0), prop<&Address::Next>());
};

class Person : public host::Published<Person> {
public:
    std::u16string Name;
    std::shared_ptr<Address> Home;
    std::shared_ptr<host::TObject> Other; ///< not published: not persistent
    static constexpr auto published =
        host::publish<Person>(u"TPerson", prop<&Person::Name>(), prop<&Person::Home>());
};

class Boss : public host::Published<Boss, Person> {
public:
    host::Variant Extra;
    static constexpr auto published = host::publish<Boss>(u"TBoss", prop<&Boss::Extra>());
};

/// The bytes of a text as it goes to a stream.
std::u16string written(TNuSerializer& serializer, std::u16string_view name) {
    TNuStringStream stream(cNuXmlStringType);
    serializer.Serialize(stream, name);
    return stream.GetAsWideString();
}

struct Form {
    TNuNamespaceOptions options;
    std::u16string_view location;
    std::u16string_view start;
    std::u16string_view property;
    std::u16string_view end;
};

TEST(Serializer, writesPiecesAsOptionsSay) {
    constexpr auto uri = u"urn:t";
    const Form forms[] = {
        {{}, u"", u"<P type=\"TPerson\">", u"<N type=\"int\">-5</N>", u"</P>"},
        {noUseDefaultNS, u"", u"<P type=\"TPerson\">", u"<N type=\"int\">-5</N>", u"</P>"},
        {noUseTNSPrefix, u"", u"<tns:P type=\"tns:TPerson\">", u"<tns:N type=\"int\">-5</tns:N>",
         u"</tns:P>"},
        {noAddTNS, u"", u"<P xmlns:tns=\"urn:t\" type=\"TPerson\">", u"<N type=\"int\">-5</N>",
         u"</P>"},
        {noAddTNS | noUseDefaultNS, u"", u"<P xmlns=\"urn:t\" type=\"TPerson\">",
         u"<N type=\"int\">-5</N>", u"</P>"},
        {noUseXSIPrefix, u"a", u"<P xsi:noNamespaceSchemaLocation=\"a\" xsi:type=\"TPerson\">",
         u"<N xsi:type=\"int\">-5</N>", u"</P>"},
        {noAddXSI, u" ",
         u"<P xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         u"schemaLocation=\"urn:t  \" type=\"TPerson\">",
         u"<N type=\"int\">-5</N>", u"</P>"},
        {noUseXSDPrefix, u"", u"<P type=\"TPerson\">", u"<N type=\"xsd:int\">-5</N>", u"</P>"},
        {noAddXSD, u"a<b",
         u"<P xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
         u"noNamespaceSchemaLocation=\"a&lt;b\" type=\"TPerson\">",
         u"<N type=\"int\">-5</N>", u"</P>"},
        {TNuNamespaceOptions::fromBits(127), u"urn:t x.xsd",
         u"<tns:P xmlns=\"urn:t\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         u"xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
         u"xsi:schemaLocation=\"urn:t urn:t x.xsd\" xsi:type=\"tns:TPerson\">",
         u"<tns:N xsi:type=\"xsd:int\">-5</tns:N>", u"</tns:P>"},
    };
    for (const Form& form : forms) {
        SCOPED_TRACE(form.options.bits());
        TNuSerializer serializer(host::classOf<Person>); // a class is enough
        serializer.SetTargetNamespaceURI(uri);
        serializer.SetNamespaceOptions(form.options);
        serializer.SetSchemaLocation(form.location);
        EXPECT_EQ(serializer.GetStartRootElement(u"P"), form.start);
        EXPECT_EQ(serializer.GetPropElement(u"N", -5), form.property);
        EXPECT_EQ(serializer.GetCloseRootElement(u"P"), form.end);
    }
    TNuSerializer bare(host::classOf<Person>);
    bare.SetTargetNamespacePrefix(u"");
    bare.SetNamespaceOptions(noUseTNSPrefix | noAddTNS);
    EXPECT_EQ(bare.GetStartRootElement(u"P"), u"<:P type=\":TPerson\">");
    bare.SetNamespaceOptions({noAddTNS, noUseDefaultNS});
    bare.SetTargetNamespaceURI(u"");
    EXPECT_EQ(bare.GetStartRootElement(u"P"), u"<P type=\"TPerson\">");
    EXPECT_EQ(bare.TargetNamespaceURI(), u"");
    EXPECT_EQ(TNuSerializer(host::classOf<Person>).TargetNamespacePrefix(), u"tns");
    EXPECT_THROW(static_cast<void>(bare.GetPropElement(u"N", host::null)), host::Exception);
    EXPECT_EQ(written(bare, u"P"), u"");
}

TEST(Serializer, writesObjectsWithThoseInside) {
    Boss boss;
    boss.Name = u"<Ann>";
    boss.Home = std::make_shared<Address>();
    boss.Home->Street = u" \t";
    boss.Home->Next = std::make_unique<Address>();
    boss.Home->Next->Number = 7;
    boss.Extra = 0.5F;
    TNuSerializer serializer(boss);
    serializer.SetTargetNamespaceURI(u"u");
    serializer.SetSchemaLocation(u"s");
    serializer.SetNamespaceOptions({noUseTNSPrefix, noAddTNS, noUseXSIPrefix});
    const std::u16string expected =
        u"<tns:B xmlns:tns=\"u\" xsi:noNamespaceSchemaLocation=\"s\" xsi:type=\"tns:TBoss\">"
        u"<tns:Name xsi:type=\"string\">&lt;Ann&gt;</tns:Name>"
        u"<Home noNamespaceSchemaLocation=\"s\" type=\"TAddress\">"
        u"<Street type=\"string\">&#32;\t</Street>"
        u"<Next noNamespaceSchemaLocation=\"s\" type=\"TAddress\">"
        u"<Street type=\"string\"></Street><Number type=\"int\">7</Number></Next></Home>"
        u"<tns:Extra xsi:type=\"float\">0.5</tns:Extra></tns:B>";
    EXPECT_EQ(serializer.Serialize(u"B"), expected);
    EXPECT_EQ(written(serializer, u"B"), expected);
}

} // namespace
