#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "common/codePage.h"
#include "common/stringStream.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuXmlSax.h"
#include "support/eventTrace.h"
#include "support/oddStream.h"

namespace {

using namespace std::string_view_literals;
using support::Positions;
using View = std::u16string_view;

/// A document and its events, as EventTrace writes them.
struct Case {
    View document;
    std::string_view events;
    std::string_view largeEvents = events; ///< of the large-stream parser, places aside
};

/// The ways in which the same text reaches the reader.
struct Form {
    std::string_view name;
    bool (*fits)(View text);
    bool isForLarge; ///< the large-stream parser decodes it alike
    void (*parse)(TNuSAXXMLReader& reader, View text);
};

/// With a NUL behind it the mark of UTF-16 would be that of UTF-32.
bool hasUtf16Mark(View text) { return !text.starts_with(u'\0'); }
bool hasTagEnd(View text) { return text.find(u'>') != text.npos; }

void parseBytes(TNuSAXXMLReader& reader, std::string_view bytes) {
    host::TMemoryStream stream(bytes);
    reader.Parse(stream);
}

constexpr Form forms[] = {
    {"text", [](View) { return true; }, true,
     [](TNuSAXXMLReader& reader, View text) { reader.Parse(text); }},
    {"UTF-8 with a mark", [](View text) { return !text.empty(); }, true,
     [](TNuSAXXMLReader& reader, View text) {
         parseBytes(reader, "\xEF\xBB\xBF" + host::utf16ToUtf8(text));
     }},
    {"UTF-8 by default", hasTagEnd, false,
     [](TNuSAXXMLReader& reader, View text) {
         NuSetSystemCodePage(cNuCodePageUtf8);
         reader.ParseBytes(host::utf16ToUtf8(text));
     }},
    {"8-bit text",
     [](View text) {
         return hasTagEnd(text) &&
                std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x100; });
     },
     true,
     [](TNuSAXXMLReader& reader, View text) {
         NuSetSystemCodePage(28591);
         parseBytes(reader, std::string(text.begin(), text.end()));
     }},
    {"UTF-16 in memory", hasUtf16Mark, true,
     [](TNuSAXXMLReader& reader, View text) {
         parseBytes(reader, "\xFF\xFE" + support::utf16Bytes(text));
     }},
    {"UTF-16 in small pieces", hasUtf16Mark, true,
     [](TNuSAXXMLReader& reader, View text) {
         support::OddStream stream("\xFF\xFE" + support::utf16Bytes(text));
         stream.readsAtMost = 3;
         reader.Parse(stream);
     }},
};

/// The events without their places, which differ from source to source; no digit says so much.
std::string withoutPlaces(std::string_view events) {
    std::string text(events);
    std::erase_if(text, [](char unit) { return unit >= '0' && unit <= '9'; });
    return text;
}

void expectEvents(const std::vector<Case>& cases, Positions positions = Positions::None) {
    for (const Case& item : cases) {
        for (const Form& form : forms) {
            for (const bool isLarge : {false, true}) {
                if (!form.fits(item.document) ||
                    (isLarge && (!form.isForLarge || item.largeEvents.empty()))) {
                    continue;
                }
                TNuSAXXMLReader reader;
                reader.SetParserChoice(isLarge ? TNuSaxParserChoice::LargeStream
                                               : TNuSaxParserChoice::BySize);
                const auto trace = host::makeRef<support::EventTrace>(positions);
                trace->attachTo(reader);
                trace->record([&] { form.parse(reader, item.document); });
                if (isLarge) {
                    EXPECT_EQ(withoutPlaces(trace->text()), withoutPlaces(item.largeEvents))
                        << support::readable(item.document) << "\nlarge, as " << form.name;
                } else {
                    EXPECT_EQ(trace->text(), item.events)
                        << support::readable(item.document) << "\nas " << form.name;
                }
            }
        }
    }
    NuSetSystemCodePage(0);
}

/// For documents whose end the large-stream parser tells in another way.
void expectSmallEvents(std::vector<Case> cases) {
    for (Case& item : cases) {
        item.largeEvents = {};
    }
    expectEvents(cases);
}

TEST(Reader, reportsElements) {
    expectEvents({
        {u"<a><b/></a>", "SD|EP|S a|S b|E b|E a|ED"},
        {u"text<a/>more", "SD|EP|S a|E a|ED"},
        {u"<a/><b/>", "SD|EP|S a|E a|S b|E b|ED"},
        {u"abc>", "SD|EP|ED"},
        {u"<a></b>", "SD|EP|S a|E b|ED"},
        {u"<a></a >", "SD|EP|S a|E a |ED"},
        {u"<\na\t/>", "SD|EP|S a\\t|E a\\t|ED"},
        {u"<a><\t/a>", "SD|EP|S a|E a|ED"},
        {u"<a/b></a/b>", "SD|EP|S a/b|E a/b|ED"},
        {u"<a/ ></a>", "SD|EP|W1:5 noattr|S a/|E a|ED"},
        {u"<a />", "SD|EP|W1:4 noattr|S a|E a|ED"},
        {u"<a ></a>", "SD|EP|W1:4 noattr|S a|E a|ED"},
        {u"< a/>", "SD|EP|W1:2 space|S a|E a|ED"},
        {u"<a>< /b></a>", "SD|EP|S a|W1:5 space|S /b|E a|ED"},
        // The first character of a name is never looked at.
        {u"<><a/>", "SD|EP|S ><a|E ><a|ED"},
        {u"<a></></a>", "SD|EP|S a|E ></a|ED"},
        // Only a space ends a name: here a line break joins name and attribute.
        {u"<a\nb=\"1\"/>", "SD|EP|S a\\nb=\"1\"|E a\\nb=\"1\"|ED"},
        {u"<a\n b=\"1\"></a\n>", "SD|EP|S a\\n b=\"1\"|E a\\n|ED"},
        // Surplus end tags: the depth goes below 0, so text inside the next element is outside.
        {u"</a><b>x</b>", "SD|EP|E a|S b|E b|ED"},
        {u"</a></c><b><d><e>x</e></d></b>", "SD|EP|E a|E c|S b|S d|S e|T\"x\"|E e|E d|E b|ED"},
        {u"<é à=\"ü\">ß</é>", "SD|EP|S é à=\"ü\"|T\"ß\"|E é|ED"},
        {u"<中>😀</中>", "SD|EP|S 中|T\"😀\"|E 中|ED"},
    });
}

TEST(Reader, reportsAttributes) {
    expectEvents({
        {uR"(<a b="1" c=""/>)", R"(SD|EP|S a b="1" c=""|E a|ED)"},
        {uR"(<a b="1"b="2"/>)", R"(SD|EP|S a b="1" b="2"|E a|ED)"},
        {uR"(<a b="&quot;'<>/="/>)", R"(SD|EP|S a b="&quot;'<>/="|E a|ED)"},
        {u"<a b=\"1\"\n c=\"2\"\t\n/>", R"(SD|EP|S a b="1" c="2"|E a|ED)"},
        // Control characters that begin a value are lost, later ones stay.
        {u"<a b=\"\t1\t2\n\"/>", R"(SD|EP|S a b="1\t2\n"|E a|ED)"},
        {u"<a b=\"\n\"/>", R"(SD|EP|S a b=""|E a|ED)"},
        {uR"(<a x='1' y="2"/>)", R"(SD|EP|W1:6 quote|S a x="2"|E a|ED)"},
        {uR"(<a x='1'/>)", "SD|EP|W1:6 quote|F1:10 noquote|X fatal noquote"},
        {uR"(<a b c="1"/>)", R"(SD|EP|W1:5 equal|S a b="1"|E a|ED)"},
        {uR"(<a b = "1"/>)", R"(SD|EP|W1:5 equal|W1:7 quote|S a b="1"|E a|ED)"},
        {uR"(<a b></a><c d="x"/>)", R"(SD|EP|W1:12 equal|S a b></a><c="x"|E a|ED)"},
        {uR"(<a b="1"/c>)", R"(SD|EP|S a b="1"|E a|W1:10 gt|ED)"},
        {uR"(<a b="1"/ ></a>)", R"(SD|EP|S a b="1"|E a|W1:10 gt|E a|ED)"},
        {uR"(<a p:b="1" x:y:z="2"/>)", R"(SD|EP|S a p:b/b="1" x:y:z/z="2"|E a|ED)"},
        {uR"(<a :b="1"/>)", R"(SD|EP|S a :b="1"|E a|ED)"},
        {u"<a p:\nb=\"1\"/>", R"(SD|EP|S a p:\nb/\nb="1"|E a|ED)"},
    });
}

TEST(Reader, resolvesNamespaces) {
    expectEvents({
        {uR"(<a xmlns:p="u"><p:b/></a>)",
         R"(SD|EP|M p=u|S a xmlns:p/p="u"|S p:b/b{u}|E p:b/b{u}|E a|ED)"},
        {uR"(<a xmlns="u" b="1"><c d="2"/></a>)",
         R"(SD|EP|S a{u} xmlns/="u" b{u}="1"|S c{u} d{u}="2"|E c{u}|E a{u}|ED)"},
        {uR"(<a xmlns="u"><b xmlns="" c="1"/></a>)",
         R"(SD|EP|S a{u} xmlns/="u"|S b xmlns/="" c{}="1"|E b|E a{u}|ED)"},
        {uR"(<p:a/>)", R"(SD|EP|W1:5 There is no NamespaceURI for the prefix "p"!)"
                       R"(|S p:a/a|E p:a/a|ED)"},
        {uR"(<xml:a/>)", R"(SD|EP|W1:7 There is no NamespaceURI for the prefix "xml"!)"
                         R"(|S xml:a/a|E xml:a/a|ED)"},
        {uR"(<a></p:b>)", R"(SD|EP|S a|W1:9 There is no NamespaceURI for the prefix "p"!)"
                          R"(|E p:b/b|ED)"},
        {uR"(<a xmlns:p="u"/><p:b/>)",
         R"(SD|EP|M p=u|S a xmlns:p/p="u"|E a)"
         R"(|W1:21 There is no NamespaceURI for the prefix "p"!|S p:b/b|E p:b/b|ED)"},
        // The newest declaration counts, also on one element, and prefixes ignore letter case.
        {uR"(<a xmlns:p="1"><P:b xmlns:P="2"></p:b><p:c/></a>)",
         R"(SD|EP|M p=1|S a xmlns:p/p="1"|M P=2|S P:b/b{2} xmlns:P/P="2"|E p:b/b{2})"
         R"(|S p:c/c{1}|E p:c/c{1}|E a|ED)"},
        {uR"(<p:a xmlns:p="1" xmlns:P="2" p:b="3"/>)",
         R"(SD|EP|M p=1|M P=2|S p:a/a{2} xmlns:p/p="1" xmlns:P/P="2" p:b/b{2}="3")"
         R"(|E p:a/a{2}|ED)"},
        {uR"(<a XMLNS:p="u" XmLnS="v"><p:b/></a>)",
         R"(SD|EP|M p=u|S a{v} XMLNS:p/p="u" XmLnS/="v"|S p:b/b{u}|E p:b/b{u}|E a{v}|ED)"},
        // What is behind the five letters decides.
        {uR"(<a xmlns ="u" xmlnsx="v" xmln="w"/>)",
         R"(SD|EP|W1:9 equal|S a xmlns="u" xmlnsx="v" xmln="w"|E a|ED)"},
        {uR"(<a xmlns:="u"><b/></a>)", R"(SD|EP|M =u|S a{u} xmlns:/="u"|S b{u}|E b{u}|E a{u}|ED)"},
        // Colons: one that begins a name divides nothing, the last one wins.
        {u"<:a/>", "SD|EP|S :a|E :a|ED"},
        {uR"(<a xmlns:p="u"><p:b:c/></a>)",
         R"(SD|EP|M p=u|S a xmlns:p/p="u"|W1:22 There is no NamespaceURI for the prefix "p:b"!)"
         R"(|S p:b:c/c|E p:b:c/c|E a|ED)"},
        {u"<p::a></p::a>", R"(SD|EP|W1:6 There is no NamespaceURI for the prefix "p:"!|S p::a/a)"
                           R"(|W1:13 There is no NamespaceURI for the prefix "p:"!|E p::a/a|ED)"},
        {u"<p:/>", R"(SD|EP|W1:4 There is no NamespaceURI for the prefix "p"!|S p:/|E p:/|ED)"},
        {u"<p:\na/>", R"(SD|EP|W2:2 There is no NamespaceURI for the prefix "p:"!)"
                      R"(|S p:\na/a|E p:\na/a|ED)"},
    });
}

TEST(Reader, reportsText) {
    expectEvents({
        {u"<a> x </a>", "SD|EP|S a|T\" x \"|E a|ED"},
        {u"<a>  </a>", "SD|EP|S a|E a|ED"},
        {u"<a>\r\n\t<b/>\n</a>\n", "SD|EP|S a|S b|E b|E a|ED"},
        {u"<a>\nx\n</a>", "SD|EP|S a|T\"\\nx\\n\"|E a|ED"},
        {u"<a>&lt;&#60;]]></a>", "SD|EP|S a|T\"&lt;&#60;]]>\"|E a|ED"},
        // A ">" right behind markup is taken for its end, a later one is text.
        {u"<a>>x>y</a>", "SD|EP|S a|T\"x>y\"|E a|ED"},
        {u"<a> >x</a>", "SD|EP|S a|T\" >x\"|E a|ED"},
        {u"<a>x<b/>y<!--c-->z</a>", R"(SD|EP|S a|T"x"|S b|E b|T"y"|C"c"|T"z"|E a|ED)"},
        {uR"(<a xml:space="preserve">  <b> </b><c xml:space="default"> </c> </a>)",
         R"(SD|EP|S a xml:space/space="preserve"|T"  "|S b|T" "|E b)"
         R"(|S c xml:space/space="default"|E c|T" "|E a|ED)"},
        {uR"(<a xml:space="Preserve"> <b XML:space="preserve"> </b></a>)",
         R"(SD|EP|S a xml:space/space="Preserve"|S b XML:space/space="preserve"|E b|E a|ED)"},
        {uR"(<a xml:space="preserve"><b xml:space=" default"> </b></a> <c> </c>)",
         R"(SD|EP|S a xml:space/space="preserve"|S b xml:space/space=" default"|T" "|E b|E a)"
         R"(|S c|E c|ED)"},
        // A NUL ends the input, except right behind markup, where it is white space.
        {u"<a>x\0y</a>"sv, "SD|EP|S a|T\"x\"|ED", "SD|EP|S a|T\"x\\x00y\"|E a|ED"},
        {u"<a>\0</a>"sv, "SD|EP|S a|E a|ED"},
        {u"<a>\0x</a>"sv, "SD|EP|S a|T\"\\x00x\"|E a|ED"},
        {u"\0<a/>"sv, "SD|EP|ED", "SD|EP|S a|E a|ED"},
        {u"<a\0/>"sv, "SD|EP|F1:3 name|X fatal name", "SD|EP|S a\\x00|E a\\x00|ED"},
        {u"<\0a>x</a>"sv, "SD|EP|X fatal eof", "SD|EP|S a|T\"x\"|E a|ED"},
        {u"<a \0b=\"1\"/>x</a>"sv, "SD|EP|X fatal eof", "SD|EP|S a b=\"1\"|E a|E a|ED"},
        {u"<a b=\"1\"\0c=\"2\"/>x</a>"sv, "SD|EP|F1:9 unclosed|X fatal unclosed",
         "SD|EP|S a b=\"1\" c=\"2\"|E a|E a|ED"},
        {u"<a b=\"\0\"/>x</a>"sv, "SD|EP|F1:7 noquote|X fatal noquote",
         "SD|EP|S a b=\"\"|E a|E a|ED"},
        {u"<a b=\"1\0\"/>x</a>"sv, "SD|EP|F1:8 novalue|X fatal novalue",
         "SD|EP|S a b=\"1\\x00\"|E a|E a|ED"},
        {u"<a></\0a>x</a>"sv, "SD|EP|S a|X fatal eof", "SD|EP|S a|E a|E a|ED"},
        {u"<a></a\0>x</a>"sv, "SD|EP|S a|E a|ED", "SD|EP|S a|E a\\x00|E a|ED"},
    });
}

TEST(Reader, reportsOtherMarkup) {
    expectEvents({
        // Instructions
        {uR"(<?xml version="1.0"?><a/>)", R"(SD|I xml"version="1.0""|EP|S a|E a|ED)"},
        {u"<?pi  a b ?><a/>", R"(SD|I pi" a b "|EP|S a|E a|ED)"},
        {u"<?pi?>junk<?x\n y\t?\n><a/>", R"(SD|I pi""|I x"y"|EP|S a|E a|ED)"},
        {u"<? x?>", R"(SD|I "x"|EP|ED)"},
        {u"<?xml\nversion?>", R"(SD|I xmlversion""|EP|ED)"},
        {u"<?a b?c?><a/>", R"(SD|I a"b"|W1:7 pi|EP|S a|E a|ED)"},
        {u"<r><?a b?c?></r>", R"(SD|EP|S r|I a"b"|W1:10 pi|T"c?>"|E r|ED)"},
        // Comments
        {u"<!----><a/>", R"(SD|C""|EP|S a|E a|ED)"},
        {u"<!-- a -- b --><a/>", R"(SD|C" a -- b "|EP|S a|E a|ED)"},
        {u"<a/><!--x-->", R"(SD|EP|S a|E a|C"x"|ED)"},
        {u"<!--x-->", R"(SD|C"x"|EP|ED)"},
        {u"<!-x--><a/>", R"(SD|W1:4 dash|C""|EP|S a|E a|ED)"},
        {u"<!--a--->b--><c/>", R"(SD|C"a--->b"|EP|S c|E c|ED)"},
        {u"<!--a----><c/>", R"(SD|C"a--"|EP|S c|E c|ED)"},
        {u"<!--\na\tb-\n-\t><c/>", R"(SD|C"ab"|EP|S c|E c|ED)"},
        // CDATA: any word before the bracket; control characters may part the first two brackets.
        {u"<a><![CDATA[x]]></a>", R"(SD|EP|S a|SC|T"x"|EC|E a|ED)"},
        {u"<a><![FOO[]]><![[x]]></a>", R"(SD|EP|S a|SC|T""|EC|SC|T"x"|EC|E a|ED)"},
        {u"<a><![CDATA[\n<&>\t]]></a>", R"(SD|EP|S a|SC|T"\n<&>\t"|EC|E a|ED)"},
        {u"<a><![CDATA[a]]b]]]></a>", R"(SD|EP|S a|SC|T"a]]b]"|EC|E a|ED)"},
        {u"<a><![CDATA[x]\n]></a>", R"(SD|EP|S a|SC|T"x"|EC|E a|ED)"},
        {u"<a><![CDATA[x]]\n>y]]></a>", R"(SD|EP|S a|SC|T"x]]\n>y"|EC|E a|ED)",
         R"(SD|EP|S a|SC|T"x"|EC|T"y]]>"|E a|ED)"},
        {u"<a/><![CDATA[x]]><b/>", R"(SD|EP|S a|E a|SC|T"x"|EC|S b|E b|ED)"},
        {u"<a><!x></a>", R"(SD|EP|S a|F1:6 Invalid XML after "<!" on line 1 and pos 6!)"
                         R"(|X fatal Invalid XML after "<!" on line 1 and pos 6!)"},
        {u"<a>\n<!x></a>", R"(SD|EP|S a|F2:4 Invalid XML after "<!" on line 2 and pos 4!)"
                           R"(|X fatal Invalid XML after "<!" on line 2 and pos 4!)"},
        // Document types: only a space ends the name.
        {uR"(<!doctype root SYSTEM "root.dtd"><a/>)", "SD|D root|EP|S a|E a|ED"},
        {uR"(<!DOCTYPE root><a b="1"/>)", "SD|D root><a|EP|ED"},
        {u"<!DOCTYPE root>", "SD|D root|F1:15 end|X fatal Abort",
         "SD|D root>|F1:17 end|X fatal Abort"},
        {u"<!XOC\nTYPE\n\n  r ><a/>", "SD|D r|EP|S a|E a|ED"},
        {uR"(<!ENTITY x "y"><a/>)",
         "SD|R1:9 <!DOCTYPE expected, but <!DNTITY  found!|D x|EP|S a|E a|ED"},
        {u"<!DOCTYPE r [<!ELEMENT r ANY>]><r/>",
         "SD|D r|R1:22 <!DOCTYPE expected, but <!DLEMENT found!|D r|EP|S r|E r|ED"},
        {u"<![CDATA[x]]> <a/>",
         "SD|R1:9 <!DOCTYPE expected, but <!DCDATA[ found!|D x]]>|EP|S a|E a|ED"},
    });
}

TEST(Reader, endsWithTheInput) {
    expectSmallEvents({
        {u"", "X fatal eof"},
        {u"<", "SD|EP|ED"},
        {u"<a", "SD|EP|X fatal eof"},
        {u"<ab", "SD|EP|F1:3 name|X fatal name"},
        {u"<a>", "SD|EP|F1:3 name|X fatal name"},
        {u"<a/", "SD|EP|F1:3 name|X fatal name"},
        {u"<a ", "SD|EP|F1:3 name|X fatal name"},
        {u"<p:", "SD|EP|X fatal eof"},
        {u"<  ", "SD|EP|W1:2 space|X fatal eof"},
        {u"<a  ", "SD|EP|X fatal eof"},
        {u"<a b", "SD|EP|X fatal eof"},
        {u"<a bc", "SD|EP|W1:5 equal|F1:5 noequal|X fatal noequal"},
        {u"<a b c=", "SD|EP|W1:5 equal|F1:7 noequal|X fatal noequal"},
        {u"<a b=", "SD|EP|X fatal eof"},
        {u"<a b=1", "SD|EP|X fatal eof"},
        {u"<a b=12", "SD|EP|W1:6 quote|F1:7 noquote|X fatal noquote"},
        {u"<a b=12\"", "SD|EP|W1:6 quote|X fatal eof"},
        {u"<a b=\"", "SD|EP|X fatal eof"},
        {u"<a b=\"1", "SD|EP|F1:7 noquote|X fatal noquote"},
        {u"<a b=\"\"", "SD|EP|F1:7 noquote|X fatal noquote"},
        {u"<a b=\"12", "SD|EP|F1:8 novalue|X fatal novalue"},
        {u"<a b=\"1\"", "SD|EP|F1:8 novalue|X fatal novalue"},
        {u"<a b=\"1\">", "SD|EP|F1:9 unclosed|X fatal unclosed"},
        {u"<a b=\"1\"/", "SD|EP|F1:9 unclosed|X fatal unclosed"},
        {u"<a b=\"1\" ", "SD|EP|X fatal eof"},
        {u"<a b=\"1\"/c", R"(SD|EP|S a b="1"|E a|W1:10 gt|F1:10 end|X fatal end)"},
        {u"<a b=\"1\"/cd", R"(SD|EP|S a b="1"|E a|W1:10 gt|F1:11 end|X fatal end)"},
        {u"<a></", "SD|EP|S a|X fatal eof"},
        {u"<a></a", "SD|EP|S a|X fatal eof"},
        {u"<a></ab", "SD|EP|S a|E a|ED"},
        {u"<a></p:", R"(SD|EP|S a|W1:7 There is no NamespaceURI for the prefix "p"!|E p/|ED)"},
        {u"<a>\n", "SD|EP|S a|ED"},
        {u"<a>  ", "SD|EP|S a|T\" \"|ED"},
        {u"<a>xy", "SD|EP|S a|T\"x\"|ED"},
        {u"<a>x<", "SD|EP|S a|T\"x\"|ED"},
        {u"<a> <", "SD|EP|S a|ED"},
        {u"<?", "SD|X fatal eof"},
        {u"<?a", R"(SD|I ""|X fatal eof)"},
        {u"<?a?", R"(SD|I a""|X fatal eof)"},
        {u"<?a?b", R"(SD|I a""|W1:5 pi|F1:5 end|X fatal end)"},
        {u"<a/><!", "SD|EP|S a|E a|X fatal eof"},
        {u"<a/><!-", "SD|EP|S a|E a|X fatal eof"},
        {u"<a/><!--", "SD|EP|S a|E a|X fatal eof"},
        {u"<a/><!--a", R"(SD|EP|S a|E a|W1:9 cend|C""|F1:9 comment|X fatal comment)"},
        {u"<a/><!--abcd", R"(SD|EP|S a|E a|W1:12 cend|C"a"|F1:12 comment|X fatal comment)"},
        {u"<a/><!--abc-", R"(SD|EP|S a|E a|W1:12 cend|C"a"|F1:12 comment|X fatal comment)"},
        {u"<a/><!--abc--", R"(SD|EP|S a|E a|W1:13 cend|C"a"|F1:13 comment|X fatal comment)"},
        {u"<a><![", "SD|EP|S a|X fatal eof"},
        {u"<a><![CDATA", "SD|EP|S a|F1:11 cdata|X fatal cdata"},
        {u"<a><![CDATA[", "SD|EP|S a|F1:12 cdata|X fatal cdata"},
        {u"<a><![CDATA[x", "SD|EP|S a|F1:13 cdata|X fatal cdata"},
        {u"<a><![CDATA[x]", "SD|EP|S a|F1:14 cdata|X fatal cdata"},
        {u"<a><![CDATA[x]]>", "SD|EP|S a|F1:16 cdata|X fatal cdata"},
        {u"<!", "SD|X fatal eof"},
        {u"<!DOCTYPE", "SD|X fatal eof"},
        {u"<!DOCTYPE a", "SD|D |F1:11 end|X fatal Abort"},
    });
}

TEST(Reader, knowsLineAndColumn) {
    expectEvents(
        {
            // A line feed read behind a tag is column 1 of its line; one that a read skips is none.
            {u"\n<a>\r\n <b/>\n</a>\n", "2:1 SD|2:1 EP|2:3 S a|3:4 S b|3:4 E b|4:5 E a|4:6 ED"},
            {u"<a b=\"1\"\n  c=\"2\"/>", R"(1:1 SD|1:1 EP|2:8 S a b="1" c="2"|2:8 E a|2:9 ED)"},
            {u"<a>x\ny</a>", R"(1:1 SD|1:1 EP|1:3 S a|2:2 T"x\ny"|2:5 E a|2:5 ED)"},
            {u"<a>\t\t<b/>\r<c/></a>", "1:1 SD|1:1 EP|1:3 S a|1:7 S b|1:7 E b|1:12 S c|1:12 E c"
                                       "|1:17 E a|1:17 ED"},
            {u"<!DOCTYPE a >\n<?p d?>\n<!--c-->\n<a><![CDATA[\nx]]></a>",
             R"(1:1 SD|1:12 D a|2:6 I p"d"|3:8 C"c"|4:1 EP|4:3 S a|5:5 SC|5:5 T"\nx"|5:5 EC)"
             R"(|5:9 E a|5:9 ED)"},
            {uR"(<a xmlns:p="u"  b="1"/>)",
             R"(1:1 SD|1:1 EP|1:14 M p=u|1:22 S a xmlns:p/p="u" b="1"|1:22 E a|1:23 ED)"},
            {u"<a>\n\n x='\n'</a>", R"(1:1 SD|1:1 EP|1:3 S a|4:2 T"\n\n x='\n'"|4:5 E a|4:5 ED)"},
            {u"<\na x='1'\n y=\"2\"/>",
             R"(1:1 SD|1:1 EP|2:5 W2:5 quote|3:7 S a x="2"|3:7 E a|3:8 ED)"},
            {u"<中>😀\n</中>", "1:1 SD|1:1 EP|1:3 S 中|2:1 T\"😀\\n\"|2:4 E 中|2:4 ED"},
        },
        Positions::Events);
}

TEST(Reader, takesATextForWhatItIs) {
    // A mark is stepped over once; a second one, or one of the other order, is a character.
    for (const Case& row : {Case{u"\uFEFF<a/>", "1:1 SD|1:1 EP|1:3 S a|1:3 E a|1:4 ED"},
                            Case{u"\uFEFF\uFEFF<a/>", "1:2 SD|1:2 EP|1:4 S a|1:4 E a|1:5 ED"},
                            Case{u"\uFFFE<a/>", "1:2 SD|1:2 EP|1:4 S a|1:4 E a|1:5 ED"},
                            Case{u"\uBBEF\u3CBF<a/>", "1:3 SD|1:3 EP|1:5 S a|1:5 E a|1:6 ED"},
                            Case{u"no such file.xml", "1:16 SD|1:16 EP|1:16 ED"},
                            Case{u"/", "1:1 SD|1:1 EP|1:1 ED"}}) {
        TNuSAXXMLReader reader;
        const auto trace = host::makeRef<support::EventTrace>(Positions::Events);
        trace->attachTo(reader);
        trace->record([&] { reader.Parse(row.document); });
        EXPECT_EQ(trace->text(), row.events);
    }
    // The name of a file is the file.
    const auto trace = host::makeRef<support::EventTrace>();
    TNuSAXXMLReader reader;
    trace->attachTo(reader);
    const std::string path = NUXML_TEST_DATA "/small.xml";
    trace->record([&] { reader.Parse(host::utf8ToUtf16(path)); });
    trace->record([&] { reader.ParseFile(path); });
    EXPECT_EQ(trace->text(), R"(SD|EP|S a|T"é"|E a|ED|SD|EP|S a|T"é"|E a|ED)");
}

} // namespace
