// What serializers write: pieces, whole texts, and what is registered for which class.

#include <stdexcept>
#include <typeinfo>

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

// Serializers with a way of their own

/// Changes the text of its object.
class Shouting : public TNuSerializer {
public:
    using TNuSerializer::TNuSerializer;
    void DoAfterSerialize(NuXmlString& text) override { text = u"!" + text; }
};

/// Writes straight to the stream it is given.
class Curt : public TNuSerializer {
public:
    using TNuSerializer::TNuSerializer;
    void Serialize(host::TStream& stream, std::u16string_view name) override {
        WriteToStream(stream, std::u16string(name) + u"=" + TargetNamespaceURI() + u";");
    }
};

/// A registration for the length of a test.
class Registered {
public:
    Registered(const host::TClassInfo& info, const TNuSerializerClass& serializer) : info_(info) {
        NuRegisterSerializationClass(info, serializer);
    }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;
    ~Registered() { NuUnregisterSerializationClass(info_); }

private:
    const host::TClassInfo& info_;
};

template <class Serializer, class Found> bool is(const Found& found) {
    return found != nullptr && typeid(*found) == typeid(Serializer);
}

TEST(Serializer, leavesNestedObjectsToTheirSerializers) {
    Person person;
    person.Name = u"Ann";
    person.Home = std::make_shared<Address>();
    person.Home->Next = std::make_unique<Address>();
    TNuSerializer serializer(person);
    serializer.SetTargetNamespaceURI(u"u");
    serializer.SetNamespaceOptions(noUseTNSPrefix);
    const std::u16string start =
        u"<tns:P type=\"tns:TPerson\"><tns:Name type=\"string\">Ann</tns:Name>";
    {
        const Registered curt(host::classOf<Address>, nu::serializerOf<Curt>);
        EXPECT_EQ(serializer.Serialize(u"P"), start + u"Home=u;</tns:P>");
    }
    const Registered shouting(host::classOf<Address>, nu::serializerOf<Shouting>);
    EXPECT_EQ(
        serializer.Serialize(u"P"),
        start +
            u"!<Home type=\"TAddress\"><Street type=\"string\"></Street>"
            u"!<Next type=\"TAddress\"><Street type=\"string\"></Street></Next></Home></tns:P>");
    Shouting outer(person);
    EXPECT_EQ(outer.Serialize(u"P").front(), u'!');
    EXPECT_EQ(written(outer, u"P").front(), u'!');
}

TEST(SerializerRegistry, findsSubclassesBeforeAncestorsInAnyOrder) {
    Boss boss;
    Person person;
    EXPECT_EQ(GetNuSerializer(static_cast<host::TObject*>(nullptr)), nullptr);
    EXPECT_TRUE(is<TNuSerializer>(GetNuSerializer(&boss))); // by the entry of TPersistent
    const Registered subclass(host::classOf<Boss>, nu::serializerOf<Curt>);
    const Registered ancestor(host::classOf<Person>, nu::serializerOf<Shouting>);
    EXPECT_TRUE(is<Curt>(GetNuSerializer(&boss)));
    EXPECT_TRUE(is<Curt>(GetNuSerializer(host::classOf<Boss>)));
    EXPECT_TRUE(is<Curt>(GetNuSerializer(u"tBOSS")));
    EXPECT_TRUE(is<Shouting>(GetNuSerializer(&person)));

    // Once more: another serializer, and no second entry behind the first.
    NuRegisterSerializationClass(host::classOf<Boss>, nu::serializerOf<TNuSerializer>);
    EXPECT_TRUE(is<TNuSerializer>(GetNuSerializer(&boss)));
    NuUnregisterSerializationClass(host::classOf<Boss>);
    EXPECT_EQ(host::FindClass(u"TBoss"), nullptr);
    EXPECT_TRUE(is<Shouting>(GetNuSerializer(&boss)));
}

/// The message of what `action` throws.
template <class Action> std::u16string messageOf(Action action) {
    try {
        action();
    } catch (const host::Exception& error) {
        return error.Message();
    }
    return u"nothing";
}

TEST(SerializerRegistry, saysWhatIsMissing) {
    host::TObject object;
    EXPECT_EQ(messageOf([&] { static_cast<void>(GetNuSerializer(&object)); }),
              u"There is no serializer registered for class TObject");
    EXPECT_EQ(messageOf([&] { static_cast<void>(GetNuSerializer(u"TNobody")); }),
              u"Class TNobody is not registered!");
    // Only a serializer for an object makes its class known.
    EXPECT_EQ(TNuSerializer(host::classOf<Address>).GetObject(), nullptr);
    EXPECT_EQ(host::FindClass(u"TAddress"), nullptr);
    Address address;
    TNuSerializer{address};
    EXPECT_NE(host::FindClass(u"TAddress"), nullptr);
    NuUnregisterSerializationClass(host::classOf<Address>);
    TNuSerializer{object};
    EXPECT_EQ(host::FindClass(u"TObject"), nullptr);
}

/// An object that can hold itself and that fails when it is asked to.
class Ring : public host::Published<Ring> {
public:
    std::shared_ptr<Ring> Next;
    std::vector<std::shared_ptr<Ring>> All;
    bool fails = false;
    [[nodiscard]] std::u16string GetWord() const {
        if (fails) {
            throw std::runtime_error("no word");
        }
        return u"w";
    }
    static constexpr auto published = host::publish<Ring>(u"TRing", prop<&Ring::GetWord>(),
                                                          prop<&Ring::Next>(), prop<&Ring::All>());
};

TEST(Serializer, stopsAtCyclesAndAtTheBottomOfDeepNesting) {
    auto ring = std::make_shared<Ring>();
    ring->All = {nullptr, std::make_shared<Ring>()};
    ring->All[1]->Next = ring;
    TNuStringStream stream(cNuXmlStringType);
    TNuSerializer serializer(*ring);
    EXPECT_EQ(messageOf([&] { serializer.Serialize(stream, u"R"); }),
              u"The object at \"R/All/item[2]/Next\" is already being written!");
    ring->All[1]->Next = nullptr;
    ring->All[1]->fails = true;
    EXPECT_THROW(serializer.Serialize(stream, u"R"), std::runtime_error);
    EXPECT_EQ(stream.GetSize(), 0);
    ring->All[1]->fails = false;
    ring->All.push_back(ring->All[1]); // the same object twice is no cycle
    EXPECT_NE(serializer.Serialize(u"R").find(u"</item><item"), std::u16string::npos);

    ring->All.clear();
    const auto deepen = [&](std::size_t levels) {
        for (std::size_t level = 1; level < levels; ++level) {
            auto outer = std::make_shared<Ring>();
            outer->Next = ring;
            ring = outer;
        }
    };
    deepen(10'000);
    const std::u16string deep = TNuSerializer(*ring).Serialize(u"R");
    deepen(90'001);
    EXPECT_TRUE(messageOf([&] {
                    static_cast<void>(TNuSerializer(*ring).Serialize(u"R"));
                }).starts_with(u"Objects are nested too deeply at \"R/Next/"));
    const Registered shouting(host::classOf<Ring>, nu::serializerOf<Shouting>);
    EXPECT_TRUE(messageOf([&] {
                    static_cast<void>(TNuSerializer(*ring).Serialize(u"R"));
                }).starts_with(u"Objects are nested too deeply"));
    while (ring) {
        ring = std::exchange(ring->Next, nullptr); // one by one, not one in the other
    }
    Ring read;
    TNuSerializer(read).DeSerialize(deep);
    std::size_t levels = 1;
    for (std::shared_ptr<Ring> place = read.Next; place;
         place = std::exchange(place->Next, nullptr)) {
        ++levels;
    }
    EXPECT_EQ(levels, 10'000U);
}

} // namespace
