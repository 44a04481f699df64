#include <algorithm>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "common/codePage.h"
#include "common/utf8.h"
#include "host/runtime/variant.h"
#include "nuXmlDOM.h"
#include "nuXmlParser.h"

namespace {

constexpr std::u16string_view declared =
    uR"(<r xmlns:i="http://www.w3.org/2001/XMLSchema-instance" xmlns:d="http://www.w3.org/2001/XMLSchema">)";
constexpr std::u16string_view instanceOnly =
    uR"(<r xmlns="http://www.w3.org/2001/XMLSchema-instance">)";
constexpr std::u16string_view undeclared = u"<r>";

/// The document `<r …><v/></r>` with v as it is given.
NuRef<TNuDOMDocument> around(std::u16string_view root, std::u16string_view value) {
    return NuCreateDOMDocument(NuXmlString(root).append(value).append(u"</r>"));
}

TNuDOMElement& valueOf(TNuDOMDocument& document) {
    return *document.GetRootNode()->FirstChildElement();
}

struct ReadCase {
    std::u16string_view root;
    std::u16string_view value;
    host::Variant expected;
};

TEST(TypedValueTest, ReadsWhatTheTypeSays) {
    const ReadCase rows[] = {
        {declared, u"<v i:type='d:int'>5</v>", std::int32_t{5}},
        {declared, u"<v i:type='d:string'>5</v>", u"5"},
        {declared, u"<v i:type='d:boolean'>true</v>", true},
        {declared, u"<v i:type='d:int' i:nil='TRUE'>5</v>", host::null},
        {declared, u"<v i:type='d:int' i:nil='false'>5</v>", std::int32_t{5}},
        {declared, u"<v i:type='d:int' i:nil='1'>5</v>", std::int32_t{5}},
        // Only the declared prefix counts.
        {declared, u"<v type='int'>5</v>", u"5"},
        {undeclared, u"<v type='int'>5</v>", std::int32_t{5}},
        {instanceOnly, u"<v nil='true'>5</v>", host::null},
        // Without a type it is text, if there is any.
        {declared, u"<v>5</v>", u"5"},
        {declared, u"<v/>", host::null},
        {declared, u"<v><!--5--></v>", host::null},
        {declared, u"<v i:type='d:string'/>", u""},
        {declared, u"<v>a<b>c</b><![CDATA[<]]>&lt;</v>", u"a<<"},
    };
    for (const ReadCase& row : rows) {
        NuXmlString value(row.value);
        std::replace(value.begin(), value.end(), u'\'', u'"');
        EXPECT_EQ(valueOf(*around(row.root, value)).GetVarValue(), row.expected)
            << NuToUtf8(row.value);
    }
}

struct FaultCase {
    std::u16string_view value;
    std::u16string_view message;
};

TEST(TypedValueTest, RefusesTypesThatSayNothing) {
    for (const FaultCase& row : {FaultCase{u"<v i:type=\"\">5</v>",
                                           u"The type attribute does not contain valid typeinfo."},
                                 FaultCase{u"<v i:type=\"d:nothing\">5</v>",
                                           u"The type attribute contains an invalid value."}}) {
        try {
            static_cast<void>(valueOf(*around(declared, row.value)).GetVarValue());
            ADD_FAILURE() << NuToUtf8(row.value);
        } catch (const ENuDomException& error) {
            EXPECT_EQ(error.Message(), row.message);
        }
    }
    const NuRef<TNuDOMDocument> document = around(declared, u"<v i:type=\"d:int\">x</v>");
    EXPECT_THROW(static_cast<void>(valueOf(*document).GetVarValue()), host::EConvertError);
}

struct WriteCase {
    std::u16string_view root;
    std::u16string_view before;
    std::function<void(TNuDOMElement&)> write;
    std::u16string_view after;
};

TEST(TypedValueTest, WritesTypesWhereTheyHaveANamespace) {
    using Element = TNuDOMElement;
    const WriteCase rows[] = {
        {declared, u"<v/>", [](Element& v) { v.SetAsInteger(5); }, u"<v i:type='d:int'>5</v>"},
        {declared, u"<v/>", [](Element& v) { v.SetAsInt64(-5); }, u"<v i:type='d:long'>-5</v>"},
        {declared, u"<v/>", [](Element& v) { v.SetAsBoolean(true); },
         u"<v i:type='d:boolean'>true</v>"},
        {declared, u"<v/>", [](Element& v) { v.SetAsDouble(0.5); },
         u"<v i:type='d:double'>0.5</v>"},
        {declared, u"<v i:nil='true'/>", [](Element& v) { v.SetAsString(u"<x"); },
         u"<v i:type='d:string'>&lt;x</v>"},
        {undeclared, u"<v/>", [](Element& v) { v.SetAsInteger(5); }, u"<v>5</v>"},
        {undeclared, u"<v/>", [](Element& v) { v.SetAsInt64(5); }, u"<v>5</v>"},
        {undeclared, u"<v/>", [](Element& v) { v.SetAsBoolean(false); }, u"<v>false</v>"},
        {undeclared, u"<v/>", [](Element& v) { v.SetAsDouble(-1.5); }, u"<v>-1.5</v>"},
        {undeclared, u"<v nil='true'/>", [](Element& v) { v.SetAsString(u"x"); },
         u"<v nil='true'>x</v>"},
        // Without a namespace a string goes without a type, and everything else has a bare one.
        {undeclared, u"<v nil='true'/>", [](Element& v) { v.SetVarValue(std::int32_t{5}); },
         u"<v type='int'>5</v>"},
        {undeclared, u"<v nil='true' type='int'/>", [](Element& v) { v.SetVarValue(u"x"); },
         u"<v type='int'>x</v>"},
        {instanceOnly, u"<v/>", [](Element& v) { v.SetVarValue(u"x"); }, u"<v type='string'>x</v>"},
        // No value leaves the type.
        {declared, u"<v i:type='d:int'>5</v>", [](Element& v) { v.SetVarValue(host::null); },
         u"<v i:type='d:int' i:nil='true'/>"},
        {undeclared, u"<v>5<![CDATA[6]]><b/></v>", [](Element& v) { v.SetVarValue({}); },
         u"<v nil='true'><b/></v>"},
        {declared, u"<v/>", [](Element& v) { v.SetPreseveSpace(true); },
         u"<v xml:space='preserve'/>"},
        {declared, u"<v xml:space='preserve'/>", [](Element& v) { v.SetPreseveSpace(false); },
         u"<v xml:space='default'/>"},
    };
    for (const WriteCase& row : rows) {
        NuXmlString before(row.before);
        NuXmlString after(row.after);
        std::replace(before.begin(), before.end(), u'\'', u'"');
        std::replace(after.begin(), after.end(), u'\'', u'"');
        const NuRef<TNuDOMDocument> document = around(row.root, before);
        row.write(valueOf(*document));
        EXPECT_EQ(NuToUtf8(valueOf(*document).get_xml()), NuToUtf8(after));
    }
}

TEST(TypedValueTest, ReadsEightBitTextInTheSystemCodePage) {
    const NuRef<TNuDOMDocument> document = around(declared, u"<v/>");
    NuSetSystemCodePage(1252);
    valueOf(*document).SetVarValue(host::Variant(std::string("\xE4")));
    NuSetSystemCodePage(0);
    EXPECT_EQ(valueOf(*document).get_nodeValue(), u"\u00E4");
}

TEST(TypedValueTest, KeepsEverythingWhenAValueHasNoText) {
    const NuRef<TNuDOMDocument> document = around(declared, u"<v i:nil=\"true\"/>");
    const NuXmlString before = document->get_xml();
    EXPECT_THROW(valueOf(*document).SetVarValue(host::TDateTime{1e300}), host::EConvertError);
    EXPECT_EQ(document->get_xml(), before);
}

TEST(TypedValueTest, MomentsComeBack) {
    for (const std::u16string_view root : {declared, undeclared}) {
        const NuRef<TNuDOMDocument> document = around(root, u"<v/>");
        TNuDOMElement& value = valueOf(*document);
        value.SetAsDateTime({45000.25});
        EXPECT_EQ(value.GetAsDateTime(), host::TDateTime{45000.25});
        EXPECT_EQ(value.GetAsString(), NuDateTimeToXML({45000.25}, xdtfLocal));
    }
}

/// Type and nil are not asked.
TEST(TypedValueTest, GettersReadTheTextAlone) {
    const NuRef<TNuDOMDocument> document =
        around(declared, u"<v i:nil=\"true\" i:type=\"d:boolean\">42</v>");
    TNuDOMElement& value = valueOf(*document);
    EXPECT_EQ(value.GetAsInteger(), 42);
    EXPECT_EQ(value.GetAsInt64(), 42);
    EXPECT_EQ(value.GetAsDouble(), 42.0);
    EXPECT_EQ(value.GetAsString(), u"42");
    value.set_text(u"no number");
    EXPECT_EQ(value.GetAsInteger(), 0);
    EXPECT_EQ(value.GetAsInt64(), 0);
    EXPECT_EQ(value.GetAsDouble(), 0.0);
    EXPECT_EQ(value.GetAsDateTime(), host::TDateTime{});
    EXPECT_THROW(static_cast<void>(value.GetAsBoolean()), host::EConvertError);
    value.set_text(u"");
    EXPECT_THROW(static_cast<void>(value.GetAsBoolean()), host::EConvertError);
}

TEST(TypedValueTest, TheNearestElementSaysWhetherSpaceCounts) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(
        u"<r xml:space=\"Preserve\"><a><b/></a><c xml:space=\"nonsense\"><d/></c></r>");
    TNuDOMElement& root = *document->GetRootNode();
    EXPECT_TRUE(root.SelectSingleElement(u"a/b")->GetPreserveSpace());
    EXPECT_FALSE(root.SelectSingleElement(u"c/d")->GetPreserveSpace());
    EXPECT_FALSE(NuCreateDOMDocument(u"<r/>")->GetRootNode()->GetPreserveSpace());
}

} // namespace
