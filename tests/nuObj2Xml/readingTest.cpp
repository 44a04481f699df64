// What texts do to objects: values, places, classes, errors, and what was not read.

#include <stdexcept>

#include <gtest/gtest.h>

#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuObj2Xml.h"
#include "nuXmlDOM.h"

namespace {

using host::prop;

class Shape : public host::Published<Shape> {
public:
    int Size = 1;
    static constexpr auto published =
        host::publish<Shape>(u"TShape", prop<&Shape::Size>().Alias(u"Width").Default(1));
};
class Circle : public host::Published<Circle, Shape> {
public:
    double Radius = 0;
    static constexpr auto published = host::publish<Circle>(u"TCircle", prop<&Circle::Radius>());
};
class Stranger : public host::Published<Stranger> {
public:
    static constexpr auto published = host::publish<Stranger>(u"TStranger");
};
class Rigid : public host::Published<Rigid, Shape> {
public:
    explicit Rigid(int size) { Size = size; }
    static constexpr auto published = host::publish<Rigid>(u"TRigid");
};

class Drawing : public host::Published<Drawing> {
public:
    std::u16string Title = u"old";
    int Count = 5;
    bool Visible = false;
    std::optional<std::int8_t> Layer;
    std::unique_ptr<Shape> Main;
    std::vector<std::unique_ptr<Shape>> Shapes;
    std::array<int, 2> Two{};
    std::map<int, std::u16string> Names;
    host::Variant Any;
    Shape Own;
    Shape* Marked = nullptr;
    [[nodiscard]] int GetChecked() const { return checked; }
    void SetChecked(int value) {
        if (value < 0) {
            throw std::out_of_range("too small");
        }
        checked = value;
    }
    int checked = 0;
    static constexpr auto published = host::publish<Drawing>(
        u"TDrawing", prop<&Drawing::Title>(), prop<&Drawing::Count>().Default(0),
        prop<&Drawing::Visible>(), prop<&Drawing::Layer>(), prop<&Drawing::Main>(),
        prop<&Drawing::Shapes>(), prop<&Drawing::Two>(), prop<&Drawing::Names>(),
        prop<&Drawing::Any>(), prop<&Drawing::Own>(),
        prop<&Drawing::GetChecked, &Drawing::SetChecked>());
};

template <class Fill> std::u16string outcome(Fill fill) {
    Drawing drawing;
    try {
        fill(drawing);
    } catch (const std::exception& error) {
        return host::messageOf(error);
    }
    return TNuSerializer(drawing).Serialize(u"D");
}

/// The same for a stream that holds the text, and enough behind it that none of it is near the end.
std::u16string readBytes(std::string text, std::string_view blank, TNuDeserializeOptions options) {
    for (int count = 0; count < 200; ++count) {
        text += blank;
    }
    host::TMemoryViewStream stream(text);
    return outcome([&](Drawing& drawing) { NuDeSerializeObject(drawing, stream, options); });
}

/// What a text makes of a new drawing, as its own text; or the message of the exception. UTF-8 is
/// read straight from its bytes and UTF-16 by events; nobody may see a difference.
std::u16string read(std::u16string_view text, TNuDeserializeOptions options = {}) {
    std::string units;
    for (const char16_t unit : text) {
        units += {static_cast<char>(unit), static_cast<char>(unit >> 8)};
    }
    const auto unchecked = options | dsUnchecked;
    EXPECT_EQ(readBytes("\xEF\xBB\xBF" + host::utf16ToUtf8(text), " ", unchecked),
              readBytes("\xFF\xFE" + units, std::string_view(" \0", 2), unchecked));
    return outcome([&](Drawing& drawing) { TNuSerializer(drawing).DeSerialize(text, options); });
}

/// The text of a new drawing with an element replaced by `changed`, or left out if that is only how
/// it begins.
std::u16string drawing(std::u16string_view changed) {
    const std::u16string_view elements[] = {
        u"<Title type=\"string\">old</Title>",
        u"<Count type=\"int\">5</Count>",
        u"<Visible type=\"boolean\">false</Visible>",
        u"<Layer",
        u"<Main",
        u"<Shapes></Shapes>",
        u"<Two><item type=\"int\">0</item><item type=\"int\">0</item></Two>",
        u"<Names></Names>",
        u"<Any",
        u"<Own type=\"TShape\"></Own>",
        u"<Checked type=\"int\">0</Checked>"};
    std::u16string text = u"<D type=\"TDrawing\">";
    for (const std::u16string_view element : elements) {
        const std::u16string_view name = element.substr(0, element.find_first_of(u" >"));
        if (changed.starts_with(name)) {
            text += changed == name ? u"" : changed;
        } else if (element.ends_with(u'>')) {
            text += element;
        }
    }
    return text + u"</D>";
}

struct Row {
    std::u16string_view content;
    std::u16string outcome;
};

TEST(Reading, takesWhatTextsSay) {
    std::u16string longText(5000, u'x');
    while (longText.size() < 20000) {
        longText += u"&amp;x \u20AC";
    }
    const std::u16string longTitle = u"<Title>" + longText + u"</Title>";
    const Row rows[] = {
        {u"", drawing(u"")},
        {u"<Title>a&amp;b<!-- -->c<![CDATA[&lt;]]></Title>",
         drawing(u"<Title type=\"string\">a&amp;bc&amp;lt;</Title>")},
        {u"<p:title xmlns:p='u' p:type=\"int\">x</p:title>",
         drawing(u"<Title type=\"string\">x</Title>")},
        {u"<Title>a</Title><Title>b</Title>", drawing(u"<Title type=\"string\">b</Title>")},
        {u"<!-- &<> -->\n <Title >\u20AC&#128512; </Title\n>",
         drawing(u"<Title type=\"string\">\u20AC\U0001F600 </Title>")},
        {u"<Main\n type = 'TCircle' />",
         drawing(u"<Main type=\"TCircle\"><Radius type=\"double\">0</Radius></Main>")},
        {u"<Title>a\u0001</Count>", drawing(u"<Title type=\"string\">a\u0001</Title>")},
        {u"<Title nil=\"TRUE\">x</Title>", drawing(u"<Title type=\"string\"></Title>")},
        {u"<Count xsi:nil=\"true\"></Count><Count> +07 </Count>",
         drawing(u"<Count type=\"int\">7</Count>")},
        {u"<Count>0</Count>", drawing(u"<Count")},
        {u"<Nobody><Title>x</Title></Nobody>noise<Visible>1</Visible>",
         drawing(u"<Visible type=\"boolean\">true</Visible>")},
        {u"<Layer>-8</Layer>", drawing(u"<Layer type=\"byte\">-8</Layer>")},
        {u"<Layer>1</Layer><Layer nil=\"true\"/>", drawing(u"")},
        {u"<Main/>", drawing(u"<Main type=\"TShape\"></Main>")},
        {u"<Main><Width>3</Width></Main>",
         drawing(u"<Main type=\"TShape\"><Size type=\"int\">3</Size></Main>")},
        {u"<Main xmlns:i=\"http://www.w3.org/2001/XMLSchema-instance\" type=\"x\" "
         u"i:type=\"q:tcircle\">"
         u"<Radius>.5</Radius></Main>",
         drawing(u"<Main type=\"TCircle\"><Radius type=\"double\">0.5</Radius></Main>")},
        // A declaration only for the reader by itself.
        {u"<Main XMLNS:i=\"http://www.w3.org/2001/XMLSchema-instance\" i:type=\"TCircle\"/>"
         u"<Nobody>enough behind it to be read from bytes: "
         u".............................................."
         u"......................................................</Nobody>",
         drawing(u"<Main type=\"TShape\"></Main>")},
        {longTitle, drawing(u"<Title type=\"string\">" + longText + u"</Title>")},
        {u"<Main type=\"TCircle\"/><Main type=\"TShape\"/><Main><Size>4</Size></Main>",
         drawing(u"<Main type=\"TShape\"><Size type=\"int\">4</Size></Main>")},
        {u"<Shapes><item type=\"TCircle\"/><other/><item nil=\"true\"/></Shapes>",
         drawing(u"<Shapes><item type=\"TCircle\"><Radius type=\"double\">0</Radius></item>"
                 u"<item nil=\"true\"></item></Shapes>")},
        {u"<Two><item>3</item></Two>",
         drawing(u"<Two><item type=\"int\">3</item><item type=\"int\">0</item></Two>")},
        {u"<Names><item><key>7</key><value>a</value></item><item><key>2</key></item></Names>",
         drawing(u"<Names><item><key type=\"int\">7</key><value type=\"string\">a</value></item>"
                 u"</Names>")},
        {u"<Any type=\"x:Double\">1e300</Any>", drawing(u"<Any type=\"double\">1E300</Any>")},
        {u"<Any type=\"long\">18446744073709551615</Any>",
         drawing(u"<Any type=\"long\">18446744073709551615</Any>")},
        {u"<Any type=\"what\">1</Any>", drawing(u"<Any type=\"string\">1</Any>")},
        {u"<Any type=\"int\" nil=\"true\">1</Any>", drawing(u"")},
        {u"<Own type=\"TPersistent\"><Size>2</Size></Own>",
         drawing(u"<Own type=\"TShape\"><Size type=\"int\">2</Size></Own>")},
    };
    NuRegisterSerializationClass(host::classOf<Circle>, nu::serializerOf<TNuSerializer>);
    for (const Row& row : rows) {
        EXPECT_EQ(read(u"<D>" + std::u16string(row.content) + u"</D>"), row.outcome)
            << host::utf16ToUtf8(row.content);
    }
    NuUnregisterSerializationClass(host::classOf<Circle>);
}

TEST(Reading, saysWhatIsWrongAndWhere) {
    const Row rows[] = {
        {u"<Count></Count>", u"'' is not a valid integer value (at D/Count)"},
        {u"<Count>2147483648</Count>", u"'2147483648' is not a valid integer value (at D/Count)"},
        {u"<Layer>x</Layer>", u"'x' is not a valid integer value (at D/Layer)"},
        {u"<Own><Size>x</Size></Own>", u"'x' is not a valid integer value (at D/Own/Size)"},
        {u"<Shapes><item/><item><Size>x</Size></item></Shapes>",
         u"'x' is not a valid integer value (at D/Shapes/item[2]/Size)"},
        {u"<Two><item>1</item><item>1</item><item>1</item></Two>",
         u"There are more than 2 items (at D/Two)"},
        {u"<Names><item><value/></item></Names>",
         u"The item has no key in front of its value (at D/Names/item[1])"},
        {u"<Any type=\"int\">x</Any>", u"'x' is not a valid integer value (at D/Any)"},
        {u"<Main type=\"TNobody\"/>", u"Class TNobody is not registered!"},
        {u"<Main type=\"TStranger\"/>", u"The given object does not inherit from TShape!"},
        {u"<Own type=\"TStranger\"/>", u"The given object does not inherit from TShape!"},
        {u"<Main type=\"TRigid\"/>",
         u"An object of class TRigid cannot be made, because it has no constructor without "
         u"arguments!"},
        {u"<Checked>-1</Checked>", u"too small"},
        {u"<Title>&#x;</Title>", u"'$' is not a valid integer value (at D/Title)"},
        {u"<Count>1", u"The text ends inside of an object (at D/Count)!"},
    };
    host::RegisterClass(host::classOf<Stranger>);
    host::RegisterClass(host::classOf<Rigid>);
    for (const Row& row : rows) {
        const bool isOpen = row.content.find(u'/') == row.content.npos;
        EXPECT_EQ(read(u"<D>" + std::u16string(row.content) + (isOpen ? u"" : u"</D>")),
                  row.outcome)
            << host::utf16ToUtf8(row.content);
    }
    host::UnregisterClass(host::classOf<Stranger>);
    host::UnregisterClass(host::classOf<Rigid>);
    EXPECT_EQ(read(u"<D type=\"a:TPersistent\"/>"), drawing(u""));
    EXPECT_EQ(read(u"\u0100noise<D/>"), drawing(u""));
    EXPECT_EQ(read(u"<D type=\"tns:TShape\"/>"), u"The given object does not inherit from TShape!");
    EXPECT_EQ(read(u""), u"The text holds no element!");
    Drawing half;
    EXPECT_THROW(
        TNuSerializer(half).DeSerialize(u"<D><Title>new</Title><Shapes><item/></Shapes><Count>x</"
                                        u"Count><Visible>1</Visible></D>"),
        host::EConvertError);
    EXPECT_EQ(half.Title, u"new");
    EXPECT_EQ(half.Shapes.size(), 1U);
    EXPECT_FALSE(half.Visible);
}

TEST(Reading, isStrictWhenAsked) {
    const std::u16string whole =
        u"<Title/><Visible>0</Visible><Shapes/><Two/><Names/><Own/><Checked>1</Checked>";
    const Row rows[] = {
        {u"<Nobody/>", u"There is no property \"Nobody\" in class TDrawing (at D)!"},
        {u"<Own><Sise/></Own>", u"There is no property \"Sise\" in class TShape (at D/Own)!"},
        {u"<Shapes> <thing/></Shapes>",
         u"There is no place for an element \"thing\" (at D/Shapes)!"},
        {u"<Names><thing/></Names>", u"There is no place for an element \"thing\" (at D/Names)!"},
        {u"<Names><item><key>1</key><thing/></item></Names>",
         u"There is no place for an element \"thing\" (at D/Names/item[1])!"},
        {u"<Two><item nil=\"true\"/></Two>", u"The value cannot be missing (at D/Two/item[1])"},
        {u"<Own>text</Own>", u"There is text beside elements (at D/Own)!"},
        {u"<Title><b/></Title>", u"There is an element in a value (at D/Title)!"},
        {u"<Count nil=\"true\"/>", u"The value cannot be missing (at D/Count)"},
        {u"", u"The property \"Title\" of class TDrawing is missing (at D)!"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(read(u"<D>" + std::u16string(row.content) + u"</D>", dsStrict), row.outcome);
    }
    EXPECT_EQ(read(u"<D><Own></Size></D>", dsStrict).substr(0, 7), u"the end");
    EXPECT_EQ(read(u"<D>" + whole + u"</D>", dsStrict), read(u"<D>" + whole + u"</D>"));
    TNuDeserializeOptions shallow;
    shallow.Limits.Depth = 2;
    EXPECT_EQ(read(u"<D><Own/></D>", shallow), read(u"<D><Own/></D>"));
    EXPECT_NE(read(u"<D><Own><a/></Own></D>", shallow).find(u"deeper than 2"), whole.npos);
    // Without a word about it, a property keeps its value; or gets its default.
    EXPECT_NE(read(u"<D/>").find(u"<Count"), std::u16string::npos);
    EXPECT_EQ(read(u"<D/>", dsResetMissing).find(u"<Count"), std::u16string::npos);
}

/// Sees the elements of its objects, and throws them away.
class Watcher : public TNuSerializer {
public:
    using TNuSerializer::TNuSerializer;
    void DoAfterDeserialize(TNuDOMElement& element) override {
        seen += element.get_xml() + u";";
        element.get_parentNode()->removeChild(element);
    }
    inline static NuXmlString seen;
};

TEST(Reading, showsElementsToSerializersThatWantThem) {
    NuRegisterSerializationClass(host::classOf<Shape>, nu::serializerOf<Watcher>);
    EXPECT_NE(read(u"<D><Own "
                   u"a=\"&lt;\"><x><![CDATA[c]]></x><!--k--></Own><Main><Size>2</Size></Main></D>"),
              u"");
    const NuXmlString once = u"<Own a=\"&lt;\"><x><![CDATA[c]]></x><!--k--></Own>;"
                             u"<Main><Size>2</Size></Main>;";
    EXPECT_EQ(Watcher::seen, once + once + once);
    NuUnregisterSerializationClass(host::classOf<Shape>);
}

} // namespace
