#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "host/runtime/unicode.h"
#include "nuXmlDOM.h"
#if !defined(__clang__) || __clang_major__ > 15 // clang 14 cannot read the views of libstdc++ 12
#define NUXML_TEST_VIEWS 1
#include <ranges>
#endif

// The tree as a C++ programmer meets it: UTF-8, values, ranges, constness, copies.

namespace {

using Elements = TNuDOMRange<TNuDOMElement>;
using Selected = TNuDOMSelection<TNuDOMElement>;
using ConstSelected = TNuDOMSelection<const TNuDOMElement>;
using Named = TNuDOMNamedRange<const TNuDOMElement>;

static_assert(std::ranges::forward_range<Elements> && std::ranges::borrowed_range<Elements>);
static_assert(std::ranges::view<Elements> && std::ranges::view<Named>);
static_assert(std::ranges::borrowed_range<Named>);
static_assert(std::ranges::forward_range<Selected> && !std::ranges::borrowed_range<Selected>);
static_assert(std::ranges::forward_range<const ConstSelected>);
static_assert(std::ranges::forward_range<TNuDOMNodeList>);
static_assert(std::ranges::forward_range<const TNuDOMElementList>);
static_assert(std::ranges::forward_range<TNuDOMAttrList>);
static_assert(std::is_nothrow_move_constructible_v<NuRef<TNuDOMElement>>);
static_assert(std::is_convertible_v<NuRef<TNuDOMElement>, NuRef<const TNuDOMNode>>);
static_assert(!std::is_convertible_v<NuRef<const TNuDOMNode>, NuRef<TNuDOMNode>>);

template <class Element>
concept Editable = requires(Element& element) {
    element.Set("@a", 1);
}
|| requires(Element& element) { (*element.ChildElements().begin()).Set("1"); }
|| requires(Element& element) { (*element.Attributes().begin()).Set("1"); }
|| requires(Element& element) { (*element.ChildNodes().begin()).Set("1"); }
|| requires(Element& element) { (*element.Select("a").begin()).Set("1"); }
|| requires(Element& element) { element.Find("a")->Set("1"); }
|| requires(Element& element) { element.At("a").Set("1"); }
|| requires(Element& element) { element.FirstChildElement()->Set("1"); }
|| requires(Element& element) { element.GetParentElement()->Set("1"); }
|| requires(Element& element) { element.getAttributeNode("a")->Set("1"); }
|| requires(Element& element) { element.FindNamespace(u"a", true)->Set("1"); }
|| requires(Element& element) { element.get_parentNode()->Set("1"); }
|| requires(Element& element) { element.get_firstChild()->Set("1"); }
|| requires(Element& element) { element.get_nextSibling()->Set("1"); };
static_assert(Editable<TNuDOMElement> && !Editable<const TNuDOMElement>);

constexpr const char* library = R"(<library open="true">
 <book id="a" year="1912" price="7.50"><title>Bäume 木 🌳</title><pages>-12</pages></book>
 <!-- rest -->
 <book id="b" Year="2001"><title>A &amp; B</title></book><film id="c"/>
</library>)";

/// What the call throws: "EConvertError: message", or what it gives.
std::string outcome(const std::function<std::string()>& call) {
    try {
        return call();
    } catch (const host::EConvertError& error) {
        return std::string("EConvertError: ") + error.what();
    } catch (const ENuDomException& error) {
        return std::string("ENuDomException: ") + error.what();
    }
}

std::string ids(auto&& elements) {
    std::string all;
    for (const TNuDOMElement& element : elements) {
        all += element.getAttribute("id");
    }
    return all;
}

TEST(Face, TakesTextInEitherEncoding) {
    const std::string longText(100, 'x');
    const auto same = [](const TNuText& text, std::u16string_view expected) {
        EXPECT_EQ(text.view(), expected);
    };
    same("ä木🌳", u"ä木🌳");
    same(u8"ä木🌳", u"ä木🌳");
    same(u"ä木🌳", u"ä木🌳");
    same(std::string("x\0y", 3), std::u16string_view(u"x\0y", 3));
    same(longText, std::u16string(100, u'x'));
    same(std::u16string_view(), u"");
    same("", u"");
    const std::u16string units = u"as it is";
    EXPECT_EQ(TNuText(units).view().data(), units.data());

    // Values, and names in one encoding with values in another.
    const auto document = NuParseDocument("<a/>");
    TNuDOMElement& a = document->At("a");
    a.setAttribute("t", u"木");
    a.setAttribute(u"u", "木");
    a.setAttribute(u"v", u"木");
    a.setAttribute("n", std::uint64_t{18446744073709551615u});
    a.setAttribute(u"z", 0);
    a.setAttribute("f", 0.1f);
    a.setAttribute("d", 1e300);
    a.setAttribute("b", false);
    a.AddElement("b").set_text(longText + "ä");
    a.AddText("<");
    EXPECT_EQ(a.Xml(), R"(<a t="木" u="木" v="木" n="18446744073709551615" z="0" f="0.1")"
                       R"( d="1E300" b="false"><b>)" +
                           longText + "ä</b>&lt;</a>");
    EXPECT_EQ(NuFromUtf8(a.Xml()), a.get_xml());
    std::ostringstream stream;
    stream << a.At("b");
    EXPECT_EQ(stream.str(), "<b>" + longText + "ä</b>");
}

std::string told(const std::string& text) { return text; }
std::string told(const NuXmlString& text) { return NuToUtf8(text); }
std::string told(std::size_t number) { return std::to_string(number); }
std::string told(const TNuDOMNode* node) {
    return node != nullptr ? NuToUtf8(node->get_nodeName()) : "none";
}
template <class Node> std::string told(const NuRef<Node>& node) { return told(node.get()); }

/// A document made, changed and asked by all that takes texts, in the encoding that `t` makes of
/// them. Gives the answers and what became of the document.
template <class Encoding> std::string story(Encoding t) {
    std::string all;
    const auto tell = [&](const auto&... answers) { ((all += told(answers) + ' '), ...); };
    const auto document = TNuDOMDocument::Create();
    TNuDOMDocument& d = *document;
    TNuDOMElement& r = d.CreateRootNode(t("r"), t("u:木"));
    const TNuDOMElement& c = r;
    // 1. Attributes and namespaces.
    r.setAttribute(t("xmlns"), t("u:木"));
    r.setAttribute(t("xmlns:ä"), t("u:ä"));
    r.setAttributeNS(t("u:ä"), t("ä:k"), t("木"));
    r.setAttribute(t("id"), t("名"));
    tell(r.getAttribute(t("ä:k")), r.getAttributeNS(t("u:ä"), t("k")), r.getAttributeNode(t("ä:k")),
         c.getAttributeNode(t("ä:k")), r.AttributeByName(t("ä:k")),
         r.AttributeByName(t("k"), t("u:ä"), {}), r.getAttributeNodeNS(t("u:ä"), t("k")),
         c.getAttributeNodeNS(t("u:ä"), t("none")), r.getAttributeNodeObj(t("ü"), soCreate),
         r.getAttributeNodeObj(t("n"), t("u:ä"), soCreate),
         r.AttribNodeByName(t("Ä:K"), soCaseInsensitive), r.FindNamespace(t("u:ä"), true),
         r.FindNamespace(t("u:ä"), t("ä"), true), r.HasAttribute(t("ü")),
         r.HasAttributeNS(t("u:ä"), t("none")), d.getElementById(t("名")));
    r.setAttribute(t("weg"), 1);
    r.setAttributeNS(t("u:ä"), t("ä:l"), t("2"));
    r.removeAttribute(t("weg"));
    r.removeAttributeNS(t("u:ä"), t("l"));
    tell(c.FindNamespace(u"u:ä", u"ä", false), r.get_attributes().getNamedItem(t("ü")),
         r.get_attributes().getNamedItemNS(t("u:ä"), t("k")),
         r.get_attributes().removeNamedItem(t("ü")),
         r.get_attributes().removeNamedItemNS(t("u:ä"), t("k")));
    // 2. Children.
    r.AddElement(t("c")).set_text(t("<3>"));
    r.AddElement(t("ä:b"), t("u:ä")).set_text(t("2"));
    r.InsertElement(t("a"), rdpFirst, nullptr).SetAsString(t("1"));
    r.InsertElement(t("ä:z"), t("u:ä"), rdpLast, nullptr).set_innerxml(t("<木/>"));
    r.AddComment(t("木")).set_data(t("木木"));
    r.InsertComment(t("ä"), rdpFirst, nullptr).set_nodeValue(t("ää"));
    r.AddCDATA(t("<木>"));
    r.InsertCDATA(t("<ä>"), rdpLast, nullptr).set_data(t("<ää>"));
    tell(r.GetChildElement(t("a")), r.GetChildElement(t("b"), t("u:ä"), {}),
         &r.GetChildElementEx(t("A")), r.GetValueEx(t("a")).AsString(),
         r.getElementsByTagName(t("木"))->Count(),
         r.getElementsByTagNameNS(t("u:木"), t("木"))->Count(),
         d.getElementsByTagName(t("a"))->Count(),
         d.getElementsByTagNameNS(t("u:ä"), t("z"))->Count());
    // 3. Paths.
    tell(r.CreateElementList(t("ä:z/木"))->Count(), r.SelectSingleElement(t("a")),
         d.CreateElementList(t("//木"))->Count(), d.SelectSingleElement(t("r/a")),
         r.CreateNodeList(t("@*"))->Count(), r.SelectSingleNode(t("@id")), c.Find(t("ä:b")),
         std::size_t(std::ranges::distance(c.Select(t("a")))),
         std::size_t(std::ranges::distance(c.SelectNodes(t("//#comment")))));
    const auto sorted = r.CreateElementList(u"*");
    sorted->Sort(t("."));
    tell(sorted->GetItem(0), r.RemoveElement(t("c")), r.RemoveElement(t("b"), t("u:ä")));
    // 4. Nodes made loose, instructions, names.
    r.appendChild(*d.createElement(t("ö")));
    tell(outcome([&] { return r.set_nodeName(t("öö")), std::string(); }));
    r.appendChild(*d.createElementNS(t("u:ä"), t("x")));
    r.get_lastChild()->set_prefix(t("ä"));
    r.setAttributeNode(*d.createAttribute(t("q")));
    r.setAttributeNode(*d.createAttributeNS(t("u:ä"), t("ä:q")));
    r.getAttributeNode(u"q")->set_value(t("木"));
    r.appendChild(*d.createTextNode(t("Text <")));
    r.appendChild(*d.createComment(t("ç")));
    r.appendChild(*d.createCDATASection(t("ç")));
    const auto instruction = d.createProcessingInstruction(t("pi"), t("ç"));
    r.appendChild(*instruction);
    instruction->set_data(t("çç"));
    d.SetProcessingInstruction(t("style"), t("ä"));
    d.AddProcessingInstruction(t("style"), t("é"));
    d.SetEncoding(t("UTF-8"));
    tell(d.GetProcessingInstruction(t("style")), d.Xml());
    // 5. Whole documents.
    const std::string file = testing::TempDir() + "nuxmlÄ.xml";
    TNuLoadReport report;
    d.save(t(file.c_str()));
    const auto loaded = [&](const auto& load) {
        d.Clear(); // a file or stream adds to what is there
        load();
        tell(d.Xml());
    };
    loaded([&] { d.load(t(file.c_str())); });
    loaded([&] { d.load(t(file.c_str()), report); });
    std::remove(file.c_str());
    loaded([&] { d.loadxml(t("<ä/>")); });
    loaded([&] { d.load(t("<ö/>")); });
    loaded([&] { d.loadxml(t("<ä/>"), TNuConformingOptions{}); });
    loaded([&] { d.load(t("<ü/>"), TNuConformingOptions{}); });
    loaded([&] { d.CreateRootNode(t("木")); });
    tell(NuCreateDOMDocument(t("<ä/>"))->Xml(), NuGetDOMDocument(t("<ä/>")) != nullptr,
         NuGetDOMDocument(t("<ä/>"), report) != nullptr,
         NuGetDOMDocument(t("<ä/>"), TNuConformingOptions{}) != nullptr);
    loaded([&] { d.loadxml(t("<ä><p:b/></ä>"), report); });
    std::ostringstream stream;
    stream << report << report.Faults().front();
    return all + stream.str();
}

// What is done in UTF-8 leaves the same document, and gives the same, as what is done in UTF-16.
TEST(Face, TakesUtf8WhereverItTakesUtf16) {
    const std::string narrow = story([](const char* text) { return std::string(text); });
    EXPECT_EQ(narrow, story([](const char* text) { return NuFromUtf8(text); }));
    EXPECT_NE(narrow.find("<ö/><ä:x/>Text &lt;<!--ç--><![CDATA[ç]]><?pi çç?></r>"), narrow.npos);
    EXPECT_NE(narrow.find("There is no NamespaceURI for the prefix"), narrow.npos);
    const auto document = TNuDOMDocument::Create();
    static_assert(std::is_same_v<decltype(std::as_const(*document).get_ownerDocument()),
                                 const TNuDOMDocument*>);
}

TEST(Face, RefusesMalformedUtf8AndChangesNothing) {
    const std::string cutShort = std::string(70, 'x') + "\xE6\x9C";
    const auto document = NuParseDocument("<a>old</a>");
    TNuDOMElement& a = document->At("a");
    const std::vector<std::function<void(const std::string&)>> calls = {
        [&](const std::string& text) { a.set_text(text); },
        [&](const std::string& text) { a.setAttribute("n", text); },
        [&](const std::string& text) { a.setAttribute(text, 1); },
        [&](const std::string& text) { a.AddElement(text); },
        [&](const std::string& text) { a.Set("x/y", text); },
        [&](const std::string& text) { static_cast<void>(a.Get<int>(text)); },
        [&](const std::string& text) { static_cast<void>(NuParseDocument("<a>" + text + "</a>")); },
    };
    for (const std::string& text : {std::string("\xFF"), std::string("\xED\xA0\x80"), cutShort}) {
        for (const auto& call : calls) {
            EXPECT_THROW(call(text), host::EConvertError);
        }
    }
    EXPECT_EQ(outcome([&] { return a.set_text("ab\xC0"), std::string(); }),
              "EConvertError: The text is not well-formed UTF-8 (at byte 2)");
    EXPECT_EQ(a.Xml(), "<a>old</a>");
}

TEST(Face, GetsAndSetsValues) {
    const auto document = NuParseDocument(library);
    const TNuDOMDocument& constant = *document;
    const TNuDOMElement& root = *constant.get_documentElement();
    const struct {
        std::function<std::string()> get;
        const char* expected;
    } rows[] = {
        {[&] { return std::to_string(root.Get<int>("book/@year", 0)); }, "1912"},
        {[&] { return std::to_string(root.Get("book/@pages", 7)); }, "7"},
        {[&] { return std::to_string(root.Get<double>("book/@price").value()); }, "7.500000"},
        {[&] { return std::to_string(root.Get<bool>("@open").value()); }, "1"},
        {[&] { return std::to_string(root.Get<int>("none").has_value()); }, "0"},
        {[&] { return std::to_string(constant.Get<std::int8_t>("library/book/pages", 0)); }, "-12"},
        {[&] { return std::to_string(root.Get<unsigned>("book[2]/@year", 0)); }, "2001"},
        {[&] { return root.Get("book[@id='b']/title", "?"); }, "A & B"},
        {[&] { return root.Get("film/title", "?"); }, "?"},
        {[&] { return NuToUtf8(root.Get("book/title", u"?")); }, "Bäume 木 🌳"},
        {[&] { return root.At("film").getAttribute("none"); }, ""},
        {[&] { return std::to_string(root.Get<unsigned>("book/pages", 0)); },
         "EConvertError: '-12' is not a valid integer value (/library/book/pages)"},
        {[&] { return std::to_string(root.Get<std::int8_t>("book/@year", 0)); },
         "EConvertError: '1912' is not a valid integer value (/library/book/@year)"},
        {[&] { return std::to_string(root.Get<bool>("book/@id", false)); },
         "EConvertError: 'a' is not a valid boolean value (/library/book/@id)"},
        {[&] { return root.At("film/x").Text(); },
         "ENuDomException: There is no node for the given path \"film/x\"."},
        {[&] { return root.Find("x", soCreate)->Text(); },
         "ENuDomException: A path cannot create nodes of a constant node."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(outcome(row.get), row.expected);
    }

    TNuDOMElement& changed = *document->get_documentElement();
    changed.Set("@open", false);
    changed.Set("book/@YEAR", 1913); // the attribute that a path finds, in any letter case
    changed.Set("book/pages", 12);
    changed.Set("film/review/@stars", 4.5);
    changed.Set("film/review", "gut & schön");
    changed.Set("film/at", host::TDateTime{1.5});
    EXPECT_EQ(changed.Find("film")->Xml(),
              R"(<film id="c"><review stars="4.5">gut &amp; schön</review>)"
              "<at>1899-12-31T12:00:00</at></film>");
    EXPECT_EQ(changed.At("book").getAttribute("year") + changed.At("book/pages").Text(), "191312");
    EXPECT_EQ(root.Get<host::TDateTime>("film/at"), host::TDateTime{1.5});
    EXPECT_THROW(changed.Set("//none/@a", 1), host::Exception);
    changed.At("film").Rename("movie");
    EXPECT_EQ(ids(changed.ChildElements("movie")) + ids(changed.ChildElements("film")), "c");
    EXPECT_THROW(changed.Rename(""), ENuDomSyntax);
    EXPECT_THROW(changed.Rename("a b"), ENuDomInvalidCharacter);
}

/// The paths that are followed as they stand give what the path language gives.
TEST(Face, FindsTheFirstAsSelectionsHaveIt) {
    const auto document =
        NuParseDocument("<r a='1'><x><y/></x><?x p?><x><z k='2'/></x><x K='3'><z k='4'/></x>"
                        "<q:x xmlns:q='u'/><é ü='5'/></r>");
    TNuDOMElement& root = *document->get_documentElement();
    for (const char* path :
         {"x",      "x/y",  "x/z", "x/z/@k", "x/@k",   "@A",    "@b", "x/none",
          "none/x", "q:x",  "@q",  "é/@ü",   "q:x/@q", "x/y/z", "*",  "x[2]",
          "//z",    "x/..", "./r", ".",      "x/",     "/r/x",  "r",  "x/z | @a"}) {
        std::vector<const TNuDOMNode*> all;
        std::string found = outcome([&] {
            for (TNuDOMNode& node : root.SelectNodes(path)) {
                all.push_back(&node);
            }
            return all.empty() ? std::string("-") : all.front()->Text() + all.front()->Name();
        });
        EXPECT_EQ(outcome([&] {
                      const auto text = root.Get<std::string>(path);
                      return text ? *text + all.front()->Name() : std::string("-");
                  }),
                  found)
            << path;
        const auto elements = root.Select(path);
        EXPECT_EQ(root.Find(path), elements.empty() ? nullptr : &*elements.begin()) << path;
        EXPECT_EQ(TNuDOMPath(path).Find(root), root.Find(path)) << path;
    }
}

TEST(Face, RangesWorkWithAlgorithms) {
    const auto document = NuParseDocument(library);
    TNuDOMElement& root = *document->get_documentElement();
    const auto isSecond = [](const TNuDOMElement& book) { return book.getAttribute("id") == "b"; };
    // The range is gone when the iterator is used: it is borrowed.
    EXPECT_EQ(std::ranges::find_if(root.ChildElements("book"), isSecond)->Get("title", ""),
              "A & B");
    EXPECT_EQ(ids(root.ChildElements("book")) + ids(root.ChildElements("none")), "ab");
    const auto list = root.CreateElementList("book");
    EXPECT_EQ(std::ranges::count_if(*list, [](auto* book) { return book->HasAttribute("price"); }),
              1);
#ifdef NUXML_TEST_VIEWS
    EXPECT_EQ(ids(root.ChildElements() | std::views::filter(isSecond)), "b");
    EXPECT_EQ(ids(root.Select("*") | std::views::drop(1) | std::views::take(1)), "b");
#endif
    // The selection lives as long as the loop, keeps the document, and passes what has gone.
    NuRef<TNuDOMDocument> other = NuParseDocument(library);
    auto all = other->Select("library/*");
    other->At("library").RemoveElement("book");
    other.reset();
    EXPECT_EQ(ids(all), "bc");
    all.Sort("@id");
    EXPECT_EQ(ids(all), "bc");
    for (TNuDOMElement& book : root.Select("book")) {
        root.RemoveElement(book);
    }
    EXPECT_EQ(ids(root.ChildElements()), "c");
}

TEST(Face, CopiesNodes) {
    constexpr std::string_view text =
        R"(<?p q?><!--c--><r b="&lt;1" c="木"><p:a xmlns:p="u">t&amp;<![CDATA[<]]></p:a><e/>)"
        "a text that needs memory of its own, \U0001F333 among it<i><i><i/></i></i><?x y?></r>";
    const auto document = NuParseDocument(text);
    const auto other = document->CreateCopy();
    EXPECT_EQ(other->Xml(), document->Xml());
    TNuDOMElement& root = *other->get_documentElement();
    const std::string whole = root.Xml();

    // Of every kind, into the own document and another one, where the names are new.
    const auto target = NuParseDocument("<t/>");
    TNuDOMElement& t = *target->get_documentElement();
    std::string expected;
    for (const TNuDOMNode& node : document->get_documentElement()->ChildNodes()) {
        expected += node.Xml();
        EXPECT_EQ(t.AddCopy(node).OwnerDocument(), target.operator->());
    }
    EXPECT_EQ(t.Xml(), "<t>" + expected + "</t>");
    t.AddCopy(*root.getAttributeNode("c"));
    EXPECT_EQ(t.getAttribute("c"), "木");
    TNuDOMElement& first = t.InsertCopy(root, rdpFirst, nullptr);
    EXPECT_EQ(first.Xml(), whole);
    first.Set("e/@n", 1);
    EXPECT_EQ(root.Xml(), whole);
    first.AddCopy(first); // below itself
    EXPECT_EQ(first.At("r/e").get_attributes().Count(), 1u);

    // What is declared around the original goes along where the copy needs it.
    const auto names = NuParseDocument("<a xmlns='d' xmlns:p='u' xmlns:q='v' xmlns:r='w'>"
                                       "<p:x q:y='1' xmlns:q='z'><e/></p:x></a>");
    const TNuDOMElement& x = names->At("a/p:x");
    const struct {
        const char* place;
        const char* expected;
    } places[] = {
        {"<t/>", "<t><p:x q:y=\"1\" xmlns:q=\"z\" xmlns=\"d\" xmlns:p=\"u\"><e/></p:x></t>"},
        {"<p:t xmlns:p='u' xmlns='d'/>",
         "<p:t xmlns:p=\"u\" xmlns=\"d\"><p:x q:y=\"1\" xmlns:q=\"z\"><e/></p:x></p:t>"},
        {"<p:t xmlns:p='o' xmlns='d'/>",
         R"(<p:t xmlns:p="o" xmlns="d"><p:x q:y="1" xmlns:q="z" xmlns:p="u"><e/></p:x></p:t>)"},
    };
    for (const auto& row : places) {
        const auto made = NuParseDocument(row.place);
        made->get_documentElement()->AddCopy(x);
        EXPECT_EQ(made->Xml(), row.expected);
    }
    TNuDOMElement& a = names->At("a");
    a.AddCopy(*NuParseDocument("<n/>")->get_documentElement());
    EXPECT_EQ(a.get_lastChild()->Xml(), "<n xmlns=\"\"/>");
    a.AddCopy(x);
    EXPECT_EQ(a.get_lastChild()->Xml(), x.Xml());

    // Outside of a tree, and where it cannot stand.
    NuRef<TNuDOMElement> loose = target->CreateCopy(root);
    EXPECT_EQ(loose->Xml(), whole);
    EXPECT_EQ(loose->get_parentNode(), nullptr);
    EXPECT_THROW(target->AddCopy(root), ENuDomHierarchyRequest);
    EXPECT_THROW(t.AddCopy(*document), ENuDomHierarchyRequest);
    EXPECT_THROW(root.getAttributeNode("c")->AddCopy(t), ENuDomHierarchyRequest);
    EXPECT_EQ(root.Xml(), whole);

    // Many levels, without a stack for them.
    constexpr int depth = 300'000;
    std::string deep;
    for (int level = 0; level < depth; ++level) {
        deep += "<d>";
    }
    for (int level = 0; level < depth; ++level) {
        deep += "</d>";
    }
    const auto chain = NuCreateDOMDocument(deep);
    EXPECT_EQ(chain->CreateCopy()->Xml().size(), chain->Xml().size());
}

/// Whoever writes UTF-8 needs no other literal, from the first node to the file.
TEST(Utf8, makesChangesFindsAndSaves) {
    const NuRef<TNuDOMDocument> made = TNuDOMDocument::Create();
    TNuDOMDocument& document = *made;
    // 1. The prolog and the document element.
    document.SetEncoding("UTF-8");
    document.AddProcessingInstruction("stil", "größe");
    document.SetProcessingInstruction("stil", "höhe");
    TNuDOMElement& root = document.CreateRootNode("ä:wald", "urn:ä");
    root.setAttributeNS("http://www.w3.org/2000/xmlns/", "xmlns:ä", "urn:ä");
    ASSERT_NE(root.FindNamespace("urn:ä", false), nullptr);
    EXPECT_EQ(root.FindNamespace("urn:ö", true), nullptr);
    // 2. Nodes of every kind, made apart or in their place.
    root.appendChild(*document.createElement("ahorn"));
    root.appendChild(*document.createElementNS("urn:ä", "ä:birke"));
    TNuDOMElement& ahorn = *root.GetChildElement("ahorn");
    ahorn.setAttributeNode(*document.createAttribute("höhe"));
    ahorn.setAttributeNode(*document.createAttributeNS("urn:ä", "ä:id"));
    ahorn.setAttribute("ä:id", "№ 1");
    ahorn.appendChild(*document.createTextNode("grün"));
    ahorn.appendChild(*document.createCDATASection("<ß>"));
    ahorn.AddCDATA("<ü>");
    root.appendChild(*document.createComment("é"));
    root.AddComment("è");
    root.appendChild(*document.createProcessingInstruction("pï", "ñ"));
    root.AddElement("eiche", "urn:ö").SetAsString("€ 5");
    root.InsertElement("weide", rdpFirst, nullptr).set_nodeValue("木");
    ASSERT_NE(root.GetChildElement("moos", soCreate), nullptr);
    root.GetChildElementEx("moos").set_innerxml("<flöte>🌳</flöte>");
    // 3. All of it found again.
    EXPECT_EQ(document.getElementById("№ 1"), &ahorn);
    EXPECT_EQ(document.getElementsByTagName("eiche")->Count(), 1U);
    EXPECT_EQ(root.getElementsByTagName("flöte")->Count(), 1U);
    EXPECT_EQ(document.getElementsByTagNameNS("urn:ä", "birke")->Count(), 1U);
    EXPECT_EQ(document.CreateElementList("ä:wald/*")->Count(), 5U);
    EXPECT_EQ(document.SelectSingleElement("ä:wald/ahorn"), &ahorn);
    EXPECT_EQ(root.SelectSingleElement("moos/flöte"), root.SelectSingleNode("moos/flöte"));
    ahorn.removeAttribute("höhe");
    // 4. Written, and read in each way.
    const std::string name = ::testing::TempDir() + "utf8-ä.xml";
    document.save(name);
    const std::string expected =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><?stil höhe?><ä:wald xmlns:ä=\"urn:ä\"><weide>木"
        "</weide><ahorn ä:id=\"№ 1\">grün<![CDATA[<ß>]]><![CDATA[<ü>]]></ahorn><ä:birke/><!--é-->"
        "<!--è--><?pï ñ?><eiche>€ 5</eiche><moos><flöte>🌳</flöte></moos></ä:wald>";
    const NuRef<TNuDOMDocument> read = TNuDOMDocument::Create();
    TNuLoadReport report;
    const std::function<void()> ways[] = {
        [&] { read->load(name); },
        [&] { read->load(name, report); },
        [&] { read->load(name, TNuConformingOptions()); },
        [&] { read->loadxml(expected); },
        [&] { read->loadxml(expected, report); },
        [&] { read->loadxml(expected, TNuConformingOptions()); },
    };
    for (const auto& way : ways) {
        read->Clear();
        way();
        EXPECT_EQ(host::utf16ToUtf8(read->get_xml()), expected);
    }
    std::remove(name.c_str());
}

} // namespace
