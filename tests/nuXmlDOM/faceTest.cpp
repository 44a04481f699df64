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

// What is done in UTF-8 leaves the same document, and gives the same, as what is done in UTF-16.
TEST(Face, TakesUtf8WhereverItTakesUtf16) {
    constexpr auto xml = u"<r xmlns='u:木' xmlns:ä='u:ä' ä:k='木'><a>1</a><ä:b/></r>";
    using Root = TNuDOMElement;
    const auto had = [](const auto* node) {
        return std::string(node != nullptr ? "there" : "none");
    };
    const auto wide = [](const NuXmlString& text) { return NuToUtf8(text); };
    const struct {
        std::function<std::string(Root&)> narrow, wide;
    } rows[] = {
        {[&](Root& r) { return r.getAttributeNS("u:ä", "k"); },
         [&](Root& r) { return wide(r.getAttributeNS(u"u:ä", u"k")); }},
        {[&](Root& r) { return r.AttributeByName("k", "u:ä", {}); },
         [&](Root& r) { return wide(r.AttributeByName(u"k", u"u:ä", {})); }},
        {[&](Root& r) { return had(r.getAttributeNodeNS("u:ä", "k")); },
         [&](Root& r) { return had(r.getAttributeNodeNS(u"u:ä", u"k")); }},
        {[&](Root& r) { return had(std::as_const(r).getAttributeNodeNS("u:ä", "none")); },
         [&](Root& r) { return had(std::as_const(r).getAttributeNodeNS(u"u:ä", u"none")); }},
        {[&](Root& r) { return had(r.getAttributeNodeObj("ü", soCreate)); },
         [&](Root& r) { return had(r.getAttributeNodeObj(u"ü", soCreate)); }},
        {[&](Root& r) { return had(r.getAttributeNodeObj("n", "u:ä", soCreate)); },
         [&](Root& r) { return had(r.getAttributeNodeObj(u"n", u"u:ä", soCreate)); }},
        {[&](Root& r) { return had(r.AttribNodeByName("Ä:K", soCaseInsensitive)); },
         [&](Root& r) { return had(r.AttribNodeByName(u"Ä:K", soCaseInsensitive)); }},
        {[&](Root& r) { return had(r.FindNamespace("u:ä", "ä", true)); },
         [&](Root& r) { return had(r.FindNamespace(u"u:ä", u"ä", true)); }},
        {[&](Root& r) { return std::to_string(r.HasAttributeNS("u:ä", "k")); },
         [&](Root& r) { return std::to_string(r.HasAttributeNS(u"u:ä", u"k")); }},
        {[&](Root& r) { return r.removeAttributeNS("u:ä", "k"), ""; },
         [&](Root& r) { return r.removeAttributeNS(u"u:ä", u"k"), ""; }},
        {[&](Root& r) { return r.InsertElement("ö", "u:ö", rdpFirst, nullptr).Name(); },
         [&](Root& r) { return r.InsertElement(u"ö", u"u:ö", rdpFirst, nullptr).Name(); }},
        {[&](Root& r) { return r.InsertComment("木", rdpFirst, nullptr).Text(); },
         [&](Root& r) { return r.InsertComment(u"木", rdpFirst, nullptr).Text(); }},
        {[&](Root& r) { return r.InsertCDATA("<木>", rdpLast, nullptr).Text(); },
         [&](Root& r) { return r.InsertCDATA(u"<木>", rdpLast, nullptr).Text(); }},
        {[&](Root& r) { return had(r.GetChildElement("b", "u:ä", {})); },
         [&](Root& r) { return had(r.GetChildElement(u"b", u"u:ä", {})); }},
        {[&](Root& r) { return wide(r.GetValueEx("a").AsString()); },
         [&](Root& r) { return wide(r.GetValueEx(u"a").AsString()); }},
        {[&](Root& r) { return had(r.RemoveElement("b", "u:ä").get()); },
         [&](Root& r) { return had(r.RemoveElement(u"b", u"u:ä").get()); }},
        {[&](Root& r) { return std::to_string(r.getElementsByTagNameNS("u:木", "a")->Count()); },
         [&](Root& r) { return std::to_string(r.getElementsByTagNameNS(u"u:木", u"a")->Count()); }},
        {[&](Root& r) { return r.set_prefix("ä"), ""; },
         [&](Root& r) { return r.set_prefix(u"ä"), ""; }},
        {[&](Root& r) { return had(r.get_attributes().getNamedItemNS("u:ä", "k")); },
         [&](Root& r) { return had(r.get_attributes().getNamedItemNS(u"u:ä", u"k")); }},
        {[&](Root& r) { return had(r.get_attributes().removeNamedItem("ä:k").get()); },
         [&](Root& r) { return had(r.get_attributes().removeNamedItem(u"ä:k").get()); }},
        {[&](Root& r) { return had(r.get_attributes().removeNamedItemNS("u:ä", "k").get()); },
         [&](Root& r) { return had(r.get_attributes().removeNamedItemNS(u"u:ä", u"k").get()); }},
        {[&](Root& r) { return r.get_ownerDocument()->createElementNS("u:ä", "ä:x")->Name(); },
         [&](Root& r) { return r.get_ownerDocument()->createElementNS(u"u:ä", u"ä:x")->Name(); }},
        {[&](Root& r) { return r.get_ownerDocument()->createAttributeNS("u:ä", "ä:x")->Name(); },
         [&](Root& r) { return r.get_ownerDocument()->createAttributeNS(u"u:ä", u"ä:x")->Name(); }},
    };
    for (std::size_t row = 0; row < std::size(rows); ++row) {
        SCOPED_TRACE(row);
        const auto narrow = NuParseDocument(xml);
        const auto other = NuParseDocument(xml);
        EXPECT_EQ(rows[row].narrow(*narrow->GetRootNode()), rows[row].wide(*other->GetRootNode()));
        EXPECT_EQ(narrow->Xml(), other->Xml());
    }
    EXPECT_TRUE(NuGetDOMDocument("<ä/>"));
    const auto document = TNuDOMDocument::Create();
    EXPECT_TRUE(document->load("<ä/>"));
    EXPECT_EQ(document->Xml(), "<ä/>");
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
