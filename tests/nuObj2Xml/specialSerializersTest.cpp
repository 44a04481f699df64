// What the host's own classes hold beside properties, written and read back.

#include "nuObj2Xml/specialSerializers.h"

#include <gtest/gtest.h>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "nuObj2Xml.h"

namespace {

class TLine : public host::Published<TLine, host::TCollectionItem> {
public:
    std::u16string Text;
    static constexpr auto published = host::publish<TLine>(u"TLine", host::prop<&TLine::Text>());
};
class TBoldLine : public host::Published<TBoldLine, TLine> {
public:
    static constexpr auto published = host::publish<TBoldLine>(u"TBoldLine");
};

/// A list, a collection and a nested object of each kind of place.
class TPoem : public host::Published<TPoem> {
public:
    host::TStringList Notes;
    host::TCollection Lines{host::classOf<TLine>};
    static constexpr auto published =
        host::publish<TPoem>(u"TPoem", host::prop<&TPoem::Notes>(), host::prop<&TPoem::Lines>());
};

class TClock : public host::Published<TClock, host::TComponent> {
public:
    std::int32_t Rate = 0;
    TClock* Master = nullptr;
    static constexpr auto published = host::publish<TClock>(
        u"TClock", host::prop<&TClock::Rate>().Default(0), host::ref<&TClock::Master>());
};
class TForm : public host::Published<TForm, host::TWindowedControl> {
public:
    static constexpr auto published = host::publish<TForm>(u"TForm");
};
class TButton : public host::Published<TButton, host::TWindowedControl> {
public:
    bool Flat = false;
    static constexpr auto published =
        host::publish<TButton>(u"TButton", host::prop<&TButton::Flat>().Default(false));
};

const bool areRegistered = [] {
    for (const host::TClassInfo* info :
         {&host::classOf<TLine>, &host::classOf<TBoldLine>, &host::classOf<TClock>,
          &host::classOf<TForm>, &host::classOf<TButton>}) {
        host::RegisterClass(*info);
    }
    return true;
}();

constexpr std::u16string_view poem =
    u"<Poem type=\"TPoem\"><Notes type=\"TStringList\"><item type=\"string\">a &amp; b</item>"
    u"<item type=\"string\"></item></Notes><Lines type=\"TCollection\">"
    u"<item type=\"TLine\"><Text type=\"string\">one</Text></item>"
    u"<item type=\"TBoldLine\"><Text type=\"string\">two</Text></item></Lines></Poem>";

TEST(SpecialSerializers, ListsAndCollectionsReplaceWhatTheyHold) {
    TPoem written;
    written.Notes = {u"a & b", u""};
    written.Lines.Add<TLine>().Text = u"one";
    written.Lines.Add<TBoldLine>().Text = u"two";
    EXPECT_EQ(NuSerializeObject2Xml(written), poem);

    TPoem read;
    read.Notes = {u"old"};
    read.Lines.Add();
    NuDeSerializeObject(read, poem);
    EXPECT_EQ(NuSerializeObject2Xml(read), poem);
    NuDeSerializeObject(read, u"<Poem><Lines/></Poem>");
    EXPECT_EQ(read.Notes.Count(), 2U);
    EXPECT_EQ(read.Lines.Count(), 0U);
}

NuXmlString failure(TPoem& target, std::u16string_view xml) {
    try {
        NuDeSerializeObject(target, xml, dsStrict);
    } catch (const host::Exception& error) {
        return error.Message();
    }
    return u"none";
}

TEST(SpecialSerializers, OnlyClassesThatFitBecomeItems) {
    TPoem target;
    EXPECT_EQ(failure(target, u"<P><Lines><item type=\"TShell\"/></Lines></P>"),
              u"Class TShell is not registered!");
    EXPECT_EQ(failure(target, u"<P><Lines><item type=\"TClock\"/></Lines></P>"),
              u"The given object does not inherit from TLine!");
    EXPECT_EQ(failure(target, u"<P><Notes><line>x</line></Notes></P>"),
              u"There is no property \"line\" in class TStringList (at P/Notes)!");
}

/// A form with a clock, and a panel in which a button stands; another clock belongs to the first.
void fill(TForm& form) {
    form.SetName(u"Main");
    auto& clock = form.Add<TClock>();
    clock.SetName(u"Clock");
    clock.Rate = 5;
    auto& slave = clock.Add<TClock>();
    slave.SetName(u"Slave");
    slave.Master = &clock;
    auto& panel = form.Add<host::TWindowedControl>();
    panel.SetParent(&form);
    auto& button = form.Add<TButton>();
    button.SetName(u"Ok");
    button.Flat = true;
    button.SetParent(&panel);
}

constexpr std::u16string_view formText =
    u"<Form type=\"TForm\"><Name type=\"string\">Main</Name><Components>"
    u"<Clock type=\"TClock\"><Name type=\"string\">Clock</Name><Rate type=\"int\">5</Rate>"
    u"<Components><Slave type=\"TClock\"><Name type=\"string\">Slave</Name>"
    u"<Master type=\"string\">Clock</Master></Slave></Components></Clock></Components>"
    u"<Controls><TWindowedControl type=\"TWindowedControl\"><Controls><Ok type=\"TButton\">"
    u"<Name type=\"string\">Ok</Name><Flat type=\"boolean\">true</Flat></Ok></Controls>"
    u"</TWindowedControl></Controls></Form>";

TEST(SpecialSerializers, ComponentsAndControlsComeBackWithOwnersAndParents) {
    TForm form;
    fill(form);
    EXPECT_EQ(NuSerializeObject2Xml(form), formText);

    host::TComponent application;
    host::TWindowedControl* const made = NuDeSerializeControl(&application, nullptr, formText);
    EXPECT_EQ(NuSerializeObject2Xml(made, u"Form"), formText);
    EXPECT_EQ(made->Owner(), &application);
    const auto& clock = dynamic_cast<TClock&>(*made->FindComponent(u"clock"));
    EXPECT_EQ(dynamic_cast<TClock&>(*clock.FindComponent(u"Slave")).Master, &clock);
    const auto& button = dynamic_cast<TButton&>(*application.FindComponent(u"Ok"));
    EXPECT_EQ(button.Parent(), made->Controls()[0]);

    // What is there already is read in place.
    TForm known;
    fill(known);
    const host::TComponent* const former = known.FindComponent(u"Clock");
    NuDeSerializeObject(known, u"<Form><Components><clock><Rate>7</Rate></clock></Components>"
                               u"</Form>");
    EXPECT_EQ(known.FindComponent(u"Clock"), former);
    EXPECT_EQ(dynamic_cast<const TClock*>(former)->Rate, 7);
    EXPECT_EQ(known.Components().size(), 3U);
}

TEST(SpecialSerializers, ComponentsOfForeignClassesAreNotMade) {
    struct {
        std::u16string_view xml;
        std::u16string_view message;
    } const cases[] = {
        {u"<c type=\"TShell\"/>", u"Class TShell is not registered!"},
        {u"<c type=\"TClock\"/>", u"The given object does not inherit from TWindowedControl!"},
        {u"<c/>", u"The element does not tell a class!"},
        {u"<c type=\"TForm\"><Controls><x type=\"TClock\"/></Controls></c>",
         u"The given object does not inherit from TWindowedControl!"},
        {u"<c type=\"TForm\"><Components><x type=\"TLine\"/></Components></c>",
         u"The given object does not inherit from TComponent!"},
        {u"", u"The text holds no element!"},
    };
    for (const auto& expected : cases) {
        host::TComponent owner;
        try {
            NuDeSerializeControl(&owner, nullptr, expected.xml);
            ADD_FAILURE() << NuToUtf8(expected.xml);
        } catch (const host::Exception& error) {
            EXPECT_EQ(error.Message(), expected.message);
        }
        EXPECT_TRUE(owner.Components().empty());
    }
}

} // namespace
