// What the page about objects shows, piece by piece: classes that publish their members, objects
// as texts, files, streams and elements, and a serializer of one's own.

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/rowSet.h"
#include "nuObj2Xml.h"
#include "nuXmlDOM.h"

class TAddress : public host::Published<TAddress> {
public:
    std::u16string Street;
    std::int32_t Number = 0;

    static constexpr auto published = host::publish<TAddress>(
        u"TAddress", host::prop<&TAddress::Street>(), host::prop<&TAddress::Number>().Default(0));
};

enum class Color { Red, Blue };

template <> struct host::EnumNames<Color> {
    static constexpr auto all =
        host::names<Color>({{Color::Red, u"clRed"}, {Color::Blue, u"clBlue"}});
};

struct Point {
    double x = 0;
    double y = 0;
};

template <>
inline constexpr auto host::describe<Point> = host::publish<Point>(u"Point",
                                                                   host::prop<&Point::x>(),
                                                                   host::prop<&Point::y>());

class TPerson : public host::Published<TPerson> {
public:
    std::u16string Name;
    Color Paint = Color::Red;
    Point Place;

    static constexpr auto published = host::publish<TPerson>(
        u"TPerson", host::prop<&TPerson::Name>(), host::prop<&TPerson::Paint>().Default(Color::Red),
        host::prop<&TPerson::Place>());
};

class TPersonSerializer : public TNuSerializer {
public:
    using TNuSerializer::TNuSerializer;
    void DoAfterSerialize(NuXmlString& text) override;        // the whole element, to change
    void DoAfterDeserialize(TNuDOMElement& element) override; // all that the object was read from
};

void TPersonSerializer::DoAfterSerialize(NuXmlString& text) {
    text.insert(text.rfind(u"</"), u"<!-- by hand -->");
}

void TPersonSerializer::DoAfterDeserialize(TNuDOMElement& element) {
    std::cout << "read from " << NuToUtf8(element.get_nodeName()) << '\n';
}

namespace {

void print(std::u16string_view text) { std::cout << NuToUtf8(text) << '\n'; }

void showText() {
    TAddress home;
    home.Street = u"Main St";
    NuXmlString text = NuSerializeObject2Xml(home);
    // <Address type="TAddress"><Street type="string">Main St</Street></Address>

    TAddress other;
    NuDeSerializeObject(other, text);
    print(text);
    print(other.Street);
}

void showFile(TAddress& settings) {
    const auto path = std::filesystem::temp_directory_path() / "nuxml-objects-example.xml";
    NuSaveObject(path, settings); // UTF-8; the old file stays until the new one is complete
    NuLoadObject(path, settings);
    std::filesystem::remove(path);
    print(settings.Street);
}

void showStream(const std::vector<TPerson>& people) {
    host::TMemoryStream stream;
    nu::ObjectWriter out(stream, u"people");
    for (const TPerson& person : people) {
        out.Write(person);
    }
    out.Close();

    stream.SetPosition(0);
    nu::ReadObjects<TPerson>(stream, u"people/Person", [](std::unique_ptr<TPerson> person) {
        print(person->Name); // yours; give false to read no more
    });
}

void showOptions(const TPerson& person) {
    print(NuSerializeObject2Xml(person, u"Person",
                                {noAddXSI, noUseXSIPrefix, noUseXSDPrefix, noAddXSD}));
    // <Person xmlns:xsi="..." xmlns:xsd="..." xsi:type="TPerson"><Name xsi:type="xsd:string">...
}

void showElements(TPerson& person) {
    const NuRef<TNuDOMDocument> document = NuParseDocument("<all><rows/><person/></all>");
    TNuDOMElement& rows = *document->get_documentElement()->GetChildElement(u"rows");
    TNuDOMElement& element = *document->get_documentElement()->GetChildElement(u"person");
    host::TRowSet data;
    data.AddField(u"id", host::TFieldType::Integer);
    data.Append();
    data.SetValue(0, host::Variant(std::int32_t{7}));
    data.Post();

    NuSerialize(data, rows);      // <row><id type="int">7</id></row> for each record
    NuDeserialize(rows, data);    // appends them
    NuSerialize(person, element); // the properties of an object as child elements
    NuDeserialize(element, person);
    print(document->get_xml());
}

void showSerializer(TPerson& person) {
    NuRegisterSerializationClass(host::classOf<TPerson>, nu::serializerOf<TPersonSerializer>);
    const NuXmlString text = NuSerializeObject2Xml(person);
    print(text);
    NuDeSerializeObject(person, text);
}

} // namespace

int main() {
    TAddress settings;
    settings.Street = u"High St";
    std::vector<TPerson> people(2);
    people[0].Name = u"Ann";
    people[1].Name = u"Bo";
    people[1].Paint = Color::Blue;

    showText();
    showFile(settings);
    showStream(people);
    showOptions(people[1]);
    showElements(people[1]);
    showSerializer(people[1]);
}
