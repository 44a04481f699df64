#include "nuXmlDOM/path/path.h"

#include <chrono>
#include <malloc.h>
#include <ostream>
#include <string>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include "common/utf8.h"
#include "nuXmlDOM.h"

namespace {

enum Call : std::uint8_t { nodes, elements, node, element };

struct Case {
    /// A digit for each level: "" is the document, "0" its element, "01" the second element in
    /// that.
    std::string_view context;
    std::u16string_view path;
    /// The labels of the nodes, or the class and the text of an exception.
    std::u16string_view outcome;
    TNuDOMSelectOptions options = {};
    Call call = nodes;
    /// The document element afterwards; empty where it must be as it was.
    std::u16string_view changed = {};
};

void PrintTo(const Case& row, std::ostream* out) {
    *out << NuToUtf8(row.path) << " from \"" << row.context << "\", options "
         << int{row.options.bits()} << ", call " << int{row.call};
}

constexpr TNuDOMSelectOptions anyCase = soCaseInsensitive;
constexpr TNuDOMSelectOptions anyNamespace = soIgnoreNamespace;
constexpr TNuDOMSelectOptions create = soCreate;
constexpr TNuDOMSelectOptions raise = soRaise;

/// What tells a node from others in these documents: its name and its id.
std::u16string labelOf(TNuDOMNode& found) {
    std::u16string label = found.get_nodeName();
    if (found.get_nodeType() == host::ATTRIBUTE_NODE) {
        return u"@" + label + u"=" + found.get_nodeValue();
    }
    if (found.get_nodeType() == host::ELEMENT_NODE) {
        label += static_cast<TNuDOMElement&>(found).getAttribute(u"id");
    }
    return label;
}

std::u16string labelsOf(const TNuDOMNodeList& list) {
    std::u16string labels;
    for (TNuDOMNode* found : list) {
        labels += (labels.empty() ? u"" : u" ") + labelOf(*found);
    }
    return labels;
}

std::u16string select(TNuDOMNode& context, const Case& row) {
    const TNuDOMPath path(row.path, row.options);
    TNuDOMNode* single = nullptr;
    switch (row.call) {
    case nodes:
        return labelsOf(*path.CreateNodeList(context));
    case elements:
        return labelsOf(*path.CreateElementList(context));
    case node:
        single = path.SelectSingleNode(context);
        break;
    case element:
        single = path.SelectSingleElement(context);
        break;
    }
    return single != nullptr ? labelOf(*single) : u"none";
}

std::u16string outcomeOf(TNuDOMNode& context, const Case& row) {
    try {
        return select(context, row);
    } catch (const host::EAssertionFailed& error) {
        return u"EAssertionFailed " + error.Message().substr(0, error.Message().find(u" ("));
    } catch (const host::EConvertError& error) {
        return u"EConvertError " + error.Message();
    } catch (const ENuDomTypeMismatch& error) {
        return u"ENuDomTypeMismatch " + error.Message();
    } catch (const ENuDomNotFound& error) {
        return u"ENuDomNotFound " + error.Message();
    } catch (const ENuDomHierarchyRequest& error) {
        return u"ENuDomHierarchyRequest " + error.Message();
    } catch (const ENuDomException& error) {
        return u"ENuDomException " + error.Message();
    } catch (const host::Exception& error) {
        EXPECT_EQ(typeid(error), typeid(host::Exception));
        return u"Exception " + error.Message();
    }
}

void check(std::u16string_view xml, const Case& row) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(xml);
    TNuDOMNode* context = document.get();
    for (const char digit : row.context) {
        context =
            context == document.get()
                ? document->GetRootNode()
                : static_cast<TNuDOMElement*>(context)->get_childElements().GetItem(digit - '0');
    }
    EXPECT_EQ(NuToUtf8(outcomeOf(*context, row)), NuToUtf8(row.outcome));
    EXPECT_EQ(NuToUtf8(document->get_xml()), NuToUtf8(row.changed.empty() ? xml : row.changed));
}

class PathTest : public testing::TestWithParam<Case> {};
class PathKindsTest : public testing::TestWithParam<Case> {};

constexpr std::u16string_view nested =
    uR"(<root><a id="1"><b>x</b></a><a id="02"/><c><a id="3"/></c></root>)";

TEST_P(PathTest, Selects) { check(nested, GetParam()); }

const Case nestedCases[] = {
    // Names, positions, values
    {"0", u"a", u"a1 a02"},
    {"0", u"a[@id]", u"a1 a02"},
    {"0", u"a[@id=2]", u"a02"},
    {"0", u"a[@id>1]", u"a02"},
    {"0", u"a[@id='2']", u""},
    {"0", u"a[@id>'1']", u""},
    {"0", u"a[ @id = 2 ]", u""},
    {"0", u"a[@id = 2 ][@id>= 2]", u"a02"},
    {"0", u"a[@id<='02']", u"a02"},
    {"0", u"a[b='x']", u"a1"},
    {"0", u"a[b='X']", u"a1"},
    {"0", u"a[b>'X']", u"a1"},
    {"0", u"a[b]", u"a1"},
    {"0", u"a[2]", u"a02"},
    {"0", u"a[last()]", u"a02"},
    {"0", u"a[first()]", u"a1"},
    {"0", u"a[0]", u""},
    {"0", u"a[@id][2][1]", u"a02"},
    {"0", u"a[@id][2][2]", u""},
    {"0", u"*", u"a1 a02 c"},
    {"0", u"a/@id", u"@id=1 @id=02"},
    {"0", u"a/@ID", u"@id=1 @id=02"},
    {"0", u"a/@id", u"", {}, elements},
    {"0", u"a/@*", u"@id=1 @id=02"},
    {"0", u"//a", u"a1 a02 a3"},
    {"0", u"//a[1]", u"a1"},
    {"0", u"*/a[1]", u"a3"},
    {"00", u"/root/c", u"c"},
    {"", u"/root/c", u"c"},
    {"", u"root", u"root"},
    {"0", u"root", u""},
    {"0", u"a | c", u"a1 a02 c"},
    {"0", u"a | a", u"a1 a02 a1 a02"},
    {"0", u"a|c", u""},
    // Nothing means all elements.
    {"0", u"", u"a1 a02 c"},
    {"0", u"/", u"root"},
    {"0", u"a/", u"b"},
    {"0", u"//", u"a1 a02 c b a3"},
    {"0", u"c | ", u"c a1 a02 c"},
    {"", u"///a", u"a1 a02 a3"},
    // A double slash searches from the context, children first.
    {"02", u"//a", u"a3"},
    {"", u"//a/b", u"b"},
    {"", u"//*//*", u"a1 a02 c b a3 b a3"},
    {"", u"//@id", u"@id=1 @id=02 @id=3"},
    {"00", u"//@id", u"@id=1"},
    {"0", u"//.", u"root a1 b a02 c a3"},
    {"0", u"//..", u"#document root a1 root root c"},
    {"0", u"//..[2]", u"root root root"},
    {"0", u"//..[3]", u"a1"},
    {"0", u"//..[4]", u""},
    {"0", u"//..[last()]", u"c"},
    // A leading point leads one level further up than elsewhere.
    {"000", u".", u"a1"},
    {"000", u"./b", u"b"},
    {"00", u"./a", u"a1 a02"},
    {"000", u"../root", u"root"},
    {"020", u"..", u"#document"},
    {"00", u"../root", u""},
    {"0", u"a/.", u"a1 a02"},
    {"0", u"a/..", u"root root"},
    {"0", u".", u"#document"},
    {"0", u".", u"", {}, elements},
    {"0", u"./root", u"root"},
    {"", u"..", u"Exception Invalid Path; There is no parentnode!"},
    {"", u".", u"Exception Invalid Path; There is no parentnode!"},
    {"0", u"..", u"Exception Invalid Path; There is no parentnode!"},
    {"0", u"..x", u"Exception Invalid Path; There is no parentnode!"},
    {"00", u"..x", u"Exception Invalid Path"},
    {"00", u".x", u"Exception Invalid Path"},
    {"00", u"...", u"Exception Invalid Path"},
    {"0", u"x/.y", u""},
    {"", u"root/../root", u"root"},
    // Quotation marks and brackets
    {"0", u"a[@id='1", u"Exception Unterminated Filtervalue!"},
    {"0", u"a[@id", u"Exception Unterminated Filter!"},
    {"0", u"..x[", u"Exception Invalid Path; There is no parentnode!"},
    {"00", u"..x[", u"Exception Unterminated Filter!"},
    {"0", u"a[@id='/']", u"Exception Unterminated Filtervalue!"},
    {"0", u"*[a/b]", u"Exception Unterminated Filter!"},
    {"0", u"a[@id=' | ']", u"Exception Unterminated Filtervalue!"},
    {"0", u"a[@id=']']", u""},
    {"0", u"a[@id=0'1']", u""},
    {"0", u"a[@id='0''2\"']", u"a02"},
    {"0", u"*[a[@id]]", u"c"},
    {"0", u"a[1] x", u"a1"},
    // Literals without quotation marks are integers.
    {"0", u"a[@id=x]", u"EConvertError 'x' is not a valid integer value"},
    {"0", u"c[@id=x]", u""},
    {"0", u"a[@id=1.5]", u"EConvertError '1.5' is not a valid integer value"},
    {"0", u"a[b=1]", u"EConvertError 'x' is not a valid integer value"},
    {"0", u"a[@id=+1]", u"a1"},
    {"0", u"a[@id>-9223372036854775808]", u"a1 a02"},
    {"0", u"a[@id<9223372036854775808]",
     u"EConvertError '9223372036854775808' is not a valid integer value"},
    {"0", u"a[@id==1]", u""},
    {"0", u"a[@id<>x]", u"EConvertError 'x' is not a valid integer value"},
    {"0", u"a[@id!='1']", u""},
    // What looks like a position, and what is a child
    {"0", u"a[-1]", u""},
    {"0", u"a[x1]", u""},
    {"0", u"a[2147483648]", u""},
    {"0", u"a[ 2]", u"a02"},
    {"0", u"a[]", u"a1"},
    {"", u"root[]", u"ENuDomException More than one instance of \"\" was found."},
    {"", u"root[a]", u"ENuDomException More than one instance of \"a\" was found."},
    {"0", u"a[.]", u"a1 a02"},
    {"", u"root[.]", u""},
    {"", u"root[c]", u"root"},
    {"", u"//*[a]", u"ENuDomException More than one instance of \"a\" was found."},
    {"0", u"//*[a]", u"c"},
    // Values of the candidate itself
    {"0", u"//b[.='X']", u"b"},
    {"0", u"//b[string()='x']", u"b"},
    {"0", u"//b[String()>='x']", u"b"},
    {"0", u"//b[.>'x']", u""},
    {"0", u"//b[. ='x']", u""},
    // Only elements have attributes, children and a value.
    {"0", u"a/@id[@x]",
     u"ENuDomTypeMismatch You can only specify attribute filters for DOM Elements!"},
    {"0", u"a/@id[@x=1]",
     u"ENuDomTypeMismatch You can only specify attribute filters for DOM Elements!"},
    {"0", u"a/@id[x]", u"ENuDomTypeMismatch You can only specify child filters for DOM Elements!"},
    {"0", u"a/@id[x='']",
     u"ENuDomTypeMismatch You can only specify child filters for DOM Elements!"},
    {"0", u"a/@id[.='']",
     u"ENuDomTypeMismatch You can only specify value filters for DOM Elements!"},
    {"0", u"a/@id[1]", u"@id=1 @id=02"},
    {"0", u"a/@id/b", u""},
    // One result
    {"0", u"c", u"c", {}, node},
    {"0", u"a", u"none", {}, node},
    {"0", u"a", u"ENuDomException There is no node for the given path \"a\".", raise, node},
    {"0", u"x", u"none", {}, element},
    {"0", u"x | y", u"ENuDomException There is no node for the given path \"x | y\".", raise,
     element},
    {"0", u"a", u"ENuDomException More than one instance of \"a\" was found.", {}, element},
    {"0", u"A", u"ENuDomException More than one instance of \"A\" was found.", anyCase, element},
    {"0", u"c/@id | c", u"c", {}, element},
    {"0", u"x", u"", raise},
    {"0", u"a[b]", u"ENuDomException There is no node for the given path \"b\".", raise},
    {"0", u"a[b='x']", u"a1", raise},
    {"0", u"//*[@id]", u"ENuDomNotFound There is no attribute \"id\"", raise},
    {"0", u"a[@id=2]", u"a02", raise},
    // Creating
    {"0", u"c/d", u"d", create, element,
     uR"(<root><a id="1"><b>x</b></a><a id="02"/><c><a id="3"/><d/></c></root>)"},
    {"0", u"a/d[@k='1']", u"d d", create, nodes,
     uR"(<root><a id="1"><b>x</b><d/></a><a id="02"><d/></a><c><a id="3"/></c></root>)"},
    {"02", u"D/ p:e /f", u"f", anyCase | create, nodes,
     uR"(<root><a id="1"><b>x</b></a><a id="02"/><c><a id="3"/><d><p:e><f/></p:e></d></c></root>)"},
    {"02", u"p:a | p:x", u"a3 p:x", anyNamespace | create, nodes,
     uR"(<root><a id="1"><b>x</b></a><a id="02"/><c><a id="3"/><p:x/></c></root>)"},
    {"02", u"a[@id='4'] | a[2][@k]", u"a a", create, nodes,
     uR"(<root><a id="1"><b>x</b></a><a id="02"/><c><a id="3"/><a k=""/></c></root>)"},
    {"0", u"a[b='x']", u"a1", create, nodes,
     uR"(<root><a id="1"><b>x</b></a><a id="02"><b/></a><c><a id="3"/></c></root>)"},
    {"0", u"a[b]", u"a1 a02", create, nodes,
     uR"(<root><a id="1"><b>x</b></a><a id="02"><b/></a><c><a id="3"/></c></root>)"},
    {"02", u"d/*",
     u"Exception It is not possible to use the soCreate option for the given search path!", create,
     nodes, uR"(<root><a id="1"><b>x</b></a><a id="02"/><c><a id="3"/><d/></c></root>)"},
    {"0", u"@k",
     u"Exception It is not possible to use the soCreate option for the given search path!", create},
    {"0", u"//d", u"Exception It is not possible to use the soCreate option in a // search!",
     create},
    {"0", u"//a[2]", u"a02", create},
    {"01", u"[@k]", u"Exception Invalid path", create},
    {"01", u" ", u"Exception Invalid path", create},
    {"", u"other", u"ENuDomHierarchyRequest A document can only have 1 rootnode", create},
    {"", u"other", u"EAssertionFailed Invalid combination of options", create | raise},
    {"", u".", u"Exception Invalid Path; There is no parentnode!", create | raise},
};

INSTANTIATE_TEST_SUITE_P(Nested, PathTest, testing::ValuesIn(nestedCases));

constexpr std::u16string_view kinds =
    uR"(<r><?b pi?><b id="1">x</b>t<!--c--><B id="2" k="a/b" K="Z">3</B>)"
    uR"(<p:b xmlns:p="u" id="4" p:k="Я"><![CDATA[<&]]></p:b><e xmlns="v"><f>&lt;&amp;</f><f/></e></r>)";

TEST_P(PathKindsTest, Selects) { check(kinds, GetParam()); }

const Case kindsCases[] = {
    // A name is that of any node; its filters are for elements.
    {"0", u"b", u"b b1"},
    {"0", u"b", u"b1", {}, elements},
    {"0", u"b[2]", u"b1", {}, elements},
    {"0", u"b[@id]",
     u"ENuDomTypeMismatch You can only specify attribute filters for DOM Elements!"},
    {"0", u"b[2][@id]", u"b1"},
    {"0", u"#text", u"#text"},
    {"0", u"#COMMENT", u"#comment", anyCase},
    {"0", u"#text", u"", anyNamespace},
    {"0", u"Node()", u"b b1 #text #comment B2 p:b4 e"},
    {"", u"node()", u"r"},
    {"0", u"TEXT()", u"b1 B2 p:b4"},
    {"0", u"//text()", u"b1 B2 p:b4 f"},
    {"0", u"*[#text='x']", u""},
    // Letter case and namespaces
    {"0", u"B", u"b b1 B2", anyCase},
    {"0", u"p:b", u"p:b4"},
    {"0", u"q:b", u"b b1 p:b4", anyNamespace},
    {"0", u"P:B", u"p:b4", anyCase},
    {"0", u"//B", u"b b1 B2", anyCase},
    {"", u"//q:b", u"b b1 p:b4", anyNamespace},
    {"0", u"*/@k", u"@k=a/b @K=Z @p:k=Я"},
    {"0", u"*/@p:k", u""},
    {"0", u"*[@p:k]", u"p:b4"},
    {"0", u"*[@K='z']", u"B2"},
    {"0", u"*[@K='z']", u"", anyCase},
    {"0", u"*[@K='A\"/\"B']", u"B2", anyCase},
    {"0", u"*[@q:k]", u"B2 p:b4", anyNamespace},
    {"0", u"*[@K='я']", u"p:b4", anyCase | anyNamespace},
    {"0", u"B/@p:id", u"", anyNamespace},
    {"0", u"p:b/@", u""},
    {"0", u"e/@", u"@xmlns=v"},
    {"0", u"p:", u"b1 B2 p:b4 e", anyNamespace},
    // Slashes in double quotes belong to the value, as far as they are looked for.
    {"0", u"B[@k=\"a/b\"]", u"B2"},
    {"0", u"B[@k=\"a&slash;b\"]", u"B2"},
    {"0", u"B[@k='a&slash;b']", u"B2"},
    {"0", u"/.//r", u"r"},
    {"0", u"B[@x=\"/////////\"]/b", u"Exception Unterminated Filtervalue!"},
    {"0", u"*[@x=\"//\"] | b", u"b b1"},
    // Values as they are meant, CDATA too
    {"0", u"e[f='<&']", u"e"},
    {"0", u"e[f='']", u"e"},
    {"0", u"*[.='<&']", u"p:b4"},
    {"0", u"*[.<'2']", u"e"},
    {"0", u"B[.=3]", u"B2"},
    {"0", u"e[f]", u"ENuDomException More than one instance of \"f\" was found."},
    {"0", u"*[B | f]", u"Exception Unterminated Filter!"},
};

INSTANTIATE_TEST_SUITE_P(Kinds, PathKindsTest, testing::ValuesIn(kindsCases));

TEST(PathTest, MakesTheDocumentElement) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    EXPECT_EQ(document->SelectSingleElement(u"a/b", soCreate)->NodePath(false), u"/a/b");
    EXPECT_EQ(document->get_xml(), u"<a><b/></a>");
}

TEST(PathTest, ListsStayAsTheyWere) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(nested);
    const auto list = document->CreateElementList(u"root/a");
    document->GetRootNode()->AddElement(u"a");
    document->GetRootNode()->removeChild(*list->GetItem(0));
    EXPECT_EQ(list->Count(), 2U);
    EXPECT_EQ(list->GetItem(0), nullptr);
    // Lists that come later, and what is put into those that know already that nodes go.
    const auto later = document->CreateElementList(u"root/a");
    list->Add(document->GetRootNode()->AddElement(u"b"));
    document->GetRootNode()->removeChild(*list->GetItem(2));
    document->GetRootNode()->removeChild(*later->GetItem(1));
    EXPECT_EQ(list->GetItem(2), nullptr);
    EXPECT_EQ(later->GetItem(1), nullptr);
    EXPECT_NE(later->GetItem(0), nullptr);
}

TEST(PathTest, ListsUseTheMemoryOfFormerOnes) {
    constexpr std::size_t many = 4000;
    NuXmlString xml(u"<r><b/>");
    for (std::size_t index = 0; index < many; ++index) {
        xml += u"<a>1</a>";
    }
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(xml + u"</r>");
    const TNuDOMPath largePath(u"r/a");
    const TNuDOMPath smallPath(u"r/b");
    std::vector<NuRef<TNuDOMNodeList>> small;
    const auto bytesInUse = [] {
        const struct mallinfo2 state = mallinfo2();
        return state.uordblks + state.hblkhd;
    };
    const auto before = bytesInUse();
    for (int round = 0; round < 100; ++round) {
        // Nobody looks at a member before the next one is made.
        ASSERT_EQ(largePath.CreateNodeList(*document)->Count(), many);
        small.push_back(smallPath.CreateNodeList(*document));
        ASSERT_EQ(small.back()->Count(), 1U);
    }
    EXPECT_LT(bytesInUse() - before, 10 * many * sizeof(void*));
    // Two at a time do not share it.
    const auto first = largePath.CreateNodeList(*document);
    const auto second = smallPath.CreateNodeList(*document);
    EXPECT_EQ(first->Count(), many);
    EXPECT_EQ(first->Last(), document->GetRootNode()->get_lastChild());
    EXPECT_EQ(second->Last(), document->GetRootNode()->get_firstChild());
    EXPECT_EQ(small.front()->Last(), second->Last());
}

TEST(PathTest, FindsTextsThatWereNamed) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(u"<r><a>x</a><b/></r>");
    const auto a = document->SelectSingleElement(u"r/a");
    a->get_firstChild()->set_nodeName(u"n");
    EXPECT_EQ(document->CreateNodeList(u"//n")->Count(), 1U);
    // Named before it comes.
    const NuRef<TNuDOMText> text = document->createTextNode(u"y");
    text->set_nodeName(u"m");
    document->SelectSingleElement(u"r/b")->appendChild(*text);
    EXPECT_EQ(document->CreateNodeList(u"r/b/m")->Count(), 1U);
}

TEST(PathTest, NeedsAnElementOrADocument) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(kinds);
    EXPECT_THROW(
        static_cast<void>(TNuDOMPath(u"a").CreateNodeList(*document->GetRootNode()->FirstChild())),
        ENuDomNotSupported);
    EXPECT_THROW(TNuDOMPath(u".").SelectSingleNode(*document->createElement(u"a")),
                 host::Exception);
}

std::u16string repeated(std::u16string_view piece, std::size_t count) {
    std::u16string text;
    for (std::size_t index = 0; index < count; ++index) {
        text += piece;
    }
    return text;
}

/// Nested brackets call for nested selections, so they end before the stack does.
TEST(PathTest, ReadsBracketsInBracketsUpToALimit) {
    const NuRef<TNuDOMDocument> document =
        NuCreateDOMDocument(repeated(u"<a>", 300) + repeated(u"</a>", 300));
    const auto brackets = [&](std::size_t depth) {
        return document->CreateNodeList(repeated(u"a[", depth) + u"a" + repeated(u"]", depth))
            ->Count();
    };
    EXPECT_EQ(brackets(250), 1U);
    try {
        brackets(251);
        FAIL();
    } catch (const host::Exception& error) {
        EXPECT_EQ(error.Message(), u"Invalid Path");
    }
}

TEST(PathTest, TakesWhateverItIsGiven) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(nested);
    const auto outcome = [&](std::u16string_view path) {
        return outcomeOf(*document, {"", path, u""}).substr(0, 40);
    };
    constexpr std::size_t million = 1'000'000;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(outcome(repeated(u"[", million)), u"Exception Unterminated Filter!");
    EXPECT_EQ(outcome(u"root" + repeated(u"[1]", million)), u"root");
    EXPECT_EQ(outcome(u"root" + repeated(u"[\"", million)), u"Exception Unterminated Filter!");
    EXPECT_EQ(outcome(repeated(u"a | ", million) + u"root"), u"root");
    EXPECT_EQ(outcome(u"root" + repeated(u"/.", million)), u"root");
    EXPECT_EQ(outcome(repeated(u"//", million)), u"");
    EXPECT_EQ(outcome(u"root[\"" + repeated(u"/", million) + u"\"]"),
              u"Exception Unterminated Filtervalue!");
    EXPECT_EQ(outcome(u"root[" + repeated(u"9", million) + u"]"), u"");
    EXPECT_EQ(outcome(repeated(u"root[", 250) + repeated(u"x", 60'000) + repeated(u"]", 250)), u"");
    // Generous even for a sanitized build on a busy machine; anything quadratic takes hours.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::minutes(2));
}

struct NameCase {
    std::u16string_view name;
    std::u16string_view labels;
};

TEST(PathTest, FindsElementsByTagName) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(kinds);
    // A name is a path, so it can say more.
    for (const NameCase& row : {NameCase{u"f", u"f f"}, NameCase{u"*", u"r b1 B2 p:b4 e f f"},
                                NameCase{u"b | e", u"b1"}, NameCase{u"f[1]", u"f"}}) {
        EXPECT_EQ(labelsOf(*document->getElementsByTagName(row.name)), row.labels)
            << NuToUtf8(row.name);
    }
    TNuDOMElement& root = *document->GetRootNode();
    EXPECT_EQ(labelsOf(*root.getElementsByTagNameNS(u"u", u"b")), u"p:b4");
    EXPECT_EQ(labelsOf(*root.getElementsByTagNameNS(u"*", u"b")), u"b1 p:b4");
    EXPECT_EQ(labelsOf(*root.getElementsByTagNameNS(u"v", u"*")), u"e f f");
    EXPECT_EQ(labelsOf(*root.getElementsByTagNameNS(u"", u"*")), u"b1 B2");
}

TEST(PathTest, FindsAnElementByItsId) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(
        u"<r><e><a p:Id=\"x'y\" n=\"1\"/><a id='&quot;q' n=\"2\"/></e><a ID=\"N\" n=\"3\"/>"
        u"<a id=\"q\" n=\"4\"/><a id=\"a/b\" n=\"5\"/></r>");
    const auto found = [&](std::u16string_view id) {
        const TNuDOMElement* element = document->getElementById(id);
        return element != nullptr ? element->getAttribute(u"n") : u"none";
    };
    EXPECT_EQ(found(u"n"), u"3");
    EXPECT_EQ(found(u"a/b"), u"5");
    EXPECT_EQ(found(u"\"Q"), u"4");
    EXPECT_EQ(found(u"x'y"), u"none");
    EXPECT_EQ(found(u"nowhere"), u"none");
    EXPECT_EQ(TNuDOMDocument::Create()->getElementById(u"x"), nullptr);
    // Ids that a path would take for something else.
    TNuDOMElement& last = document->GetRootNode()->AddElement(u"z");
    last.setAttribute(u"n", u"6");
    for (const std::u16string_view id :
         {u"/////////", u"a/b/c/d/e/f | //*", u"a | b", u" ", u"[", u"]", u"a&slash;b", u"&amp;",
          u"@*", u"<=>", u"http://x/y?z=1#/1/2"}) {
        last.setAttribute(u"id", id);
        EXPECT_EQ(found(id), u"6") << NuToUtf8(id);
    }
}

TEST(PathTest, ComplainsOfWhatNoPathCanMean) {
    struct Complaint {
        std::u16string_view path;
        std::u16string_view text;
    };
    constexpr std::u16string_view contains = u"the path language has no function contains()";
    for (const Complaint& row : {
             Complaint{u"a/b[@c='and'] | //d[e]/text() | x[.=1][string()='a or b'][last()]", u""},
             Complaint{u"a[@b = 'x (y)'] | ../node()/@* | /a[1][first()]", u""},
             Complaint{u"a[contains(@b,'x')]", contains},
             Complaint{u"a[b[contains(@c, 'x')]]", contains},
             Complaint{u"a[@b=contains(c)]", contains},
             Complaint{u"a[contains(b)='x']", contains},
             Complaint{u"a/contains(b)", contains},
             Complaint{u"a[not(contains(b))]", u"the path language has no function not()"},
             Complaint{u"a[last()-1]", u"the path language has no place for last()-1 here"},
             Complaint{u"a/child::b", u"the path language has no axis child::"},
             Complaint{u"a[@b!='x']", u"the path language has no operator !="},
             Complaint{u"a[b<>1]", u"the path language has no operator <>"},
             Complaint{u"a[@b='x' and @c='y']", u"the path language has no operator and"},
             Complaint{u"a[@b or @c]", u"the path language has no operator or"},
             Complaint{u"a[b or c]", u"the path language has no operator or"},
             Complaint{u"a|b", u"the path language wants a blank on each side of |"},
             Complaint{u"a / b", u"no name has a blank in it, as \"a \" has"},
             Complaint{u"a[b[c]", u"Unterminated Filter!"},
             Complaint{u"a[.b='x']", u"Invalid Path"},
         }) {
        EXPECT_EQ(TNuDOMPath(row.path).Complaint(), row.text) << NuToUtf8(row.path);
    }
}

TEST(PathTest, FailsForAWrongReferenceWhateverItIsComparedWith) {
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(u"<r><a><b>&#;</b></a></r>");
    for (const std::u16string_view literal : {u"", u"x", u"&#;", u"a long one"}) {
        const std::u16string value = u"='" + std::u16string(literal) + u"']";
        EXPECT_THROW(static_cast<void>(document->CreateNodeList(u"//b[." + value)),
                     host::EConvertError);
        EXPECT_THROW(static_cast<void>(document->CreateNodeList(u"//a[b" + value)),
                     host::EConvertError);
    }
}

TEST(PathTest, MakesNamesInLowerCase) {
    // Final sigma, micro sign and long s are in lower case already, whatever they fold to.
    const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(u"<r/>");
    constexpr auto options = soCreate | soCaseInsensitive;
    for (const std::u16string_view path : {u"/R/ΌΡΟΣ/\u00B5\u03C2\u017F", u"r/ΌΡΟς/\u03BCΣS"}) {
        EXPECT_EQ(document->CreateNodeList(path, options)->Count(), 1U);
        EXPECT_EQ(document->get_xml(), u"<r><όροσ><\u00B5\u03C2\u017F/></όροσ></r>");
    }
}

struct SortCase {
    std::u16string_view xml;
    std::u16string_view path;
    std::u16string_view ids;
};

TEST(PathTest, SortsByWhatIsAtAPath) {
    constexpr SortCase rows[] = {
        {uR"(<r><i id="1"><k>9</k></i><i id="2"><k>10</k></i><i id="3"><k>1.5</k></i></r>)", u"k",
         u"312"},
        {uR"(<r><i id="1"><k>b</k></i><i id="2"><k>B</k></i><i id="3"><k/></i></r>)", u"k", u"321"},
        {uR"(<r><i id="10"/><i id="9"/><i id="2"/></r>)", u"@id", u"1029"},
        {uR"(<r><i id="1"><k>2</k></i></r>)", u"missing", u"1"},
        {uR"(<r><i id="1"><k>2</k></i><i id="2"/></r>)", u"k",
         u"There is no node for the given path \"k\"."},
    };
    for (const SortCase& row : rows) {
        const NuRef<TNuDOMDocument> document = NuCreateDOMDocument(row.xml);
        const auto list = document->CreateElementList(u"r/i");
        std::u16string ids;
        try {
            list->Sort(row.path);
            for (TNuDOMNode* member : static_cast<const TNuDOMNodeList&>(*list)) {
                ids += static_cast<TNuDOMElement*>(member)->getAttribute(u"id");
            }
        } catch (const ENuDomException& error) {
            ids = error.Message();
        }
        EXPECT_EQ(NuToUtf8(ids), NuToUtf8(row.ids)) << NuToUtf8(row.xml);
    }
}

} // namespace
