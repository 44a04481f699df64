#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "common/stringStream.h"
#include "host/com/streamAdapter.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileStream.h"
#include "nuXmlDOM.h"
#include "nuXmlParser/parserErrors.h"
#include "support/randomText.h"

namespace {

/// The class and the text of what `action` throws; "" when it throws nothing.
template <class Failure> std::u16string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure.Message();
    }
    return {};
}

NuRef<TNuDOMDocument> loaded(std::u16string_view xml) { return NuCreateDOMDocument(xml); }

TEST(Node, isNamedOnceUpToWhatIsRefused) {
    const struct {
        std::u16string_view name, prefix, local, left;
        bool isRefused = false;
    } table[] = {
        {u"item", u"", u"item", u"item"},   {u"p:item", u"p", u"item", u"p:item"},
        {u"a:b:c", u"a", u"b:c", u"a:b:c"}, {u":x", u"", u"x", u":x"},
        {u"x:", u"x", u"", u"x:"},          {u"1<\u013A", u"", u"1<\u013A", u"1<\u013A"},
        {u"ab c", u"", u"ab", u"ab", true}, {u"p:a b", u"p", u"a", u"p:a", true},
        {u" a", u"", u"", u"", true},
    };
    const auto document = loaded(u"<r/>");
    for (const auto& row : table) {
        TNuDOMNode& node = *TNuDOMElement::Class.create(document.get());
        EXPECT_EQ(failureOf<ENuDomInvalidCharacter>([&] { node.set_nodeName(row.name); }),
                  row.isRefused ? u"Invalid XML Name" : u"");
        EXPECT_EQ(node.get_nodeName(), row.left);
        EXPECT_EQ(node.get_prefix(), row.prefix);
        EXPECT_EQ(node.get_localName(), row.local);
        EXPECT_EQ(failureOf<ENuDomNoModificationAllowed>([&] { node.set_nodeName(u""); }),
                  u"Modifying a NodeName is not allowed.");
    }
    EXPECT_EQ(failureOf<ENuDomSyntax>([&] { (void)document->createElement(u""); }),
              u"An empty NodeName is not allowed.");
    EXPECT_EQ(
        failureOf<host::EAssertionFailed>([] { TNuDOMText::Class.create(nullptr); }).substr(0, 29),
        u"A owner document is required!");

    TNuDOMElement& root = *document->GetRootNode();
    const struct {
        std::u16string prefix, name;
    } prefixes[] = {{u"p", u"p:r"}, {u"", u"r"}, {u"a b", u":r"}, {u"a:b", u":r"}};
    for (const auto& row : prefixes) {
        EXPECT_EQ(failureOf<ENuDomInvalidCharacter>([&] { root.set_prefix(row.prefix); }),
                  row.prefix.size() > 1 ? u"Invalid XML Name" : u"");
        EXPECT_EQ(root.get_nodeName(), row.name);
    }
}

/// Attributes have no link backwards; where many stand, they are looked up.
TEST(Element, keepsItsAttributesInOrder) {
    for (std::uint64_t seed = 0; seed < support::randomInputs(20); ++seed) {
        support::Random random(seed);
        const auto document = loaded(u"<a/>");
        TNuDOMElement& element = *document->GetRootNode();
        std::vector<NuRef<TNuDOMAttribute>> model;
        const std::size_t usual = 10 + random(200);
        for (int step = 0; step < 1000; ++step) {
            const std::size_t place = random(model.size() + 1);
            const auto at = model.begin() + static_cast<std::ptrdiff_t>(place);
            if (random(2 * usual) < model.size() && at != model.end()) {
                (*at)->_linkToParent(nullptr, rdpLast, nullptr);
                model.erase(at);
            } else {
                NuXmlString name(u"n");
                name += static_cast<NuXmlChar>(0x4E00 + step);
                const auto made = document->createAttribute(name);
                if (at == model.end()) {
                    made->_linkToParent(&element, rdpLast, nullptr);
                } else if (random(2) == 0) {
                    made->_linkToParent(&element, rdpBefore, at->get());
                } else if (at != model.begin()) {
                    made->_linkToParent(&element, rdpAfter, at[-1].get());
                } else {
                    made->_linkToParent(&element, rdpFirst, nullptr);
                }
                model.insert(at, made);
            }
            if (random(20) == 0 && !model.empty()) {
                (void)element.getAttributeNode(u"unknown"); // makes the index of many
            }
        }
        std::size_t index = 0;
        for (const TNuDOMAttribute& attribute : element.Attributes()) {
            ASSERT_LT(index, model.size()) << seed;
            ASSERT_EQ(&attribute, model[index++].get()) << seed;
        }
        ASSERT_EQ(index, model.size()) << seed;
    }
}

TEST(Node, knowsItsPath) {
    const auto document = loaded(u"<doc><p:item k=\"1\" xmlns=\"u\">t</p:item></doc>");
    TNuDOMElement& item = *document->GetRootNode()->FirstChildElement();
    EXPECT_EQ(document->NodePath(false), u"");
    EXPECT_EQ(item.NodePath(false), u"/doc/p:item");
    EXPECT_EQ(item.NodePath(true), u"/doc/item");
    EXPECT_EQ(item.FirstChild()->NodePath(false), u"/doc/p:item/#text");
    EXPECT_EQ(item.FirstChild()->NodePath(true), u"/doc/item/");
    EXPECT_EQ(item.getAttributeNode(u"k")->NodePath(false), u"/doc/p:item/k");
    EXPECT_EQ(item.getAttributeNode(u"xmlns")->NodePath(true), u"/doc/item/");
    const auto taken = document->GetRootNode()->RemoveElement(item);
    EXPECT_EQ(taken->FirstChild()->NodePath(false), u"p:item/#text");
}

TEST(Node, refusesWhatItsKindDoesNotProvide) {
    const auto document = loaded(u"<r k=\"1\">t<!--c--><?p d?></r>");
    TNuDOMElement& root = *document->GetRootNode();
    TNuDOMNode& leaf = *root.FirstChild();
    const std::function<void()> table[] = {
        [&] { root.replaceChild(leaf, leaf); },
        [&] { document->cloneNode(true); },
        [&] { leaf.normalize(); },
        [&] { (void)leaf.get_nextSibling(); },
        [&] { (void)leaf.get_childNodes(); },
        [&] { (void)leaf.get_firstChild(); },
        [&] { (void)leaf.get_attributes(); },
        [&] { leaf.set_text(u"x"); },
        [&] { document->set_nodeValue(u""); },
        [&] { document->createDocumentFragment(); },
        [&] { leaf.appendChild(leaf); },
        [&] { document->importNode(root, true); },
    };
    for (const auto& action : table) {
        EXPECT_EQ(failureOf<ENuDomNotSupported>(action), u"Not supported");
    }
    EXPECT_FALSE(leaf.hasChildNodes());
    EXPECT_TRUE(leaf.supports(u"XML", u"2.0"));
    EXPECT_FALSE(leaf.supports(u"xml", u""));
    EXPECT_FALSE(leaf.supports(u"core", u"2.0"));
}

TEST(Node, isOutsideWithTheRefusingParentAfterAFailedLink) {
    // Every refusal, the new node being <n/> unless the row says otherwise.
    const struct {
        std::function<void(TNuDOMDocument&, TNuDOMElement&, TNuDOMElement&)> link;
        std::u16string_view message, left = u"<r k=\"1\">t<e/></r>";
        bool standsInside = false;
    } table[] = {
        {[](auto&, auto& r, auto& n) { n._linkToParent(r.FirstChild(), rdpLast, nullptr); },
         u"Nodes of class TNuDOMText can't be parents of TNuDOMElement nodes."},
        {[](auto& d, auto&, auto& n) { d.appendChild(n); }, u"A document can only have 1 rootnode"},
        {[](auto& d, auto&, auto&) {
             d._CreateNode(TNuDOMDocument::Class, u"d", u"", nullptr, rdpLast, nullptr);
         },
         u"Not supported"},
        {[](auto& d, auto&, auto&) {
             d._CreateCharacterData(TNuDOMDocument::Class, u"d", nullptr, rdpLast, nullptr);
         },
         u"Not supported"},
        {[](auto& d, auto& r, auto&) { r.insertBefore(d, nullptr); },
         u"A reference child is required for this operation."},
        {[](auto& d, auto& r, auto&) { d.insertBefore(*r.FirstChild(), nullptr); },
         u"Nodes of class TNuDOMDocument can't be parents of TNuDOMText nodes.",
         u"<r k=\"1\"><e/></r>"},
        {[](auto&, auto& r, auto& n) { r.insertBefore(n, nullptr); },
         u"A reference child is required for this operation."},
        {[](auto&, auto& r, auto& n) { n.appendChild(r); },
         u"Nodes of class TNuDOMElement can't be parents of TNuDOMElement nodes.",
         u"<r k=\"1\">t<e/></r>", true},
        {[](auto&, auto& r, auto&) { r._linkToParent(r.getAttributeNode(u"k"), rdpLast, nullptr); },
         u"Nodes of class TNuDOMAttribute can't be parents of TNuDOMElement nodes."},
        {[](auto& d, auto& r, auto&) { r.appendChild(d); },
         u"Nodes of class TNuDOMElement can't be parents of TNuDOMDocument nodes."},
        {[](auto& d, auto& r, auto&) { d.appendChild(*r.FirstChild()); },
         u"Nodes of class TNuDOMDocument can't be parents of TNuDOMText nodes.",
         u"<r k=\"1\"><e/></r>"},
    };
    for (const auto& row : table) {
        const auto document = loaded(u"<r k=\"1\">t<e/></r>");
        TNuDOMElement& root = *document->GetRootNode();
        const auto made = document->createElement(u"n");
        if (row.standsInside) {
            root.appendChild(*made);
        }
        EXPECT_EQ(failureOf<ENuDomException>([&] { row.link(*document, root, *made); }),
                  row.message);
        if (row.standsInside) {
            root.removeChild(*made);
        }
        EXPECT_EQ(document->get_xml(), row.left);
        // It can still go anywhere.
        root.appendChild(*made);
        EXPECT_EQ(root.LastChild(), made.get());
    }
    // Two nodes that are refused by each other lead nowhere.
    const auto document = loaded(u"<r/>");
    const auto a = document->createElement(u"a");
    const auto b = document->createElement(u"b");
    EXPECT_THROW(a->insertBefore(*b, nullptr), ENuDomException);
    EXPECT_EQ(b->get_parentNode(), a.get());
    b->appendChild(*a);
    EXPECT_EQ(a->NodePath(false), u"b/a");
    EXPECT_EQ(a->get_namespaceURI(), u"");
}

TEST(Element, findsByNameAsTheOptionsSay) {
    const auto document = loaded(
        u"<r xmlns:p=\"u\" xmlns=\"d\" Id=\"1\" p:x=\"2\" q:x=\"3\" x=\"4\"><p:c/><C/><c/></r>");
    TNuDOMElement& root = *document->GetRootNode();
    const struct {
        std::u16string_view name;
        TNuDOMSelectOptions options;
        std::u16string_view attribute, child;
    } table[] = {
        {u"x", {}, u"x", u""},
        {u"ID", {}, u"", u""},
        {u"ID", soCaseInsensitive, u"Id", u""},
        {u"z:x", soIgnoreNamespace, u"p:x", u""},
        {u"z:C", soIgnoreNamespace, u"", u"C"},
        {u"z:c", soIgnoreNamespace, u"", u"p:c"},
        {u"c", soCaseInsensitive, u"", u"C"},
        {u"xmlns", {}, u"xmlns", u""},
        {u"xmlns", soIgnoreNamespace, u"", u""},
        {u"P:X", {soCaseInsensitive, soIgnoreNamespace}, u"p:x", u""},
    };
    const auto nameOf = [](const TNuDOMNode* node) {
        return node != nullptr ? node->get_nodeName() : NuXmlString();
    };
    for (const auto& row : table) {
        EXPECT_EQ(nameOf(root.getAttributeNodeObj(row.name, row.options)), row.attribute);
        EXPECT_EQ(nameOf(root.GetChildElement(row.name, row.options)), row.child);
    }
    // By namespace: an unprefixed attribute takes the default one, a declaration none.
    EXPECT_EQ(root.getAttributeNS(u"d", u"x"), u"4");
    EXPECT_EQ(root.getAttributeNS(u"", u"p"), u"u");
    EXPECT_EQ(nameOf(root.GetChildElement(u"c", u"u", {})), u"p:c");
    EXPECT_EQ(nameOf(root.FindNamespace(u"d", u"", false)), u"xmlns");
    EXPECT_EQ(root.FirstChildElement()->FindNamespace(u"u", false), nullptr);
    EXPECT_EQ(nameOf(root.FirstChildElement()->FindNamespace(u"u", true)), u"xmlns:p");
    // What is not there.
    EXPECT_EQ(failureOf<ENuDomNotFound>([&] { root.getAttributeNodeObj(u"Z:z", soRaise); }),
              u"There is no attribute \"Z:z\"");
    EXPECT_EQ(failureOf<ENuDomException>([&] { root.GetChildElement(u"z", soRaise); }),
              u"There is no childelement \"z\".");
    EXPECT_EQ(failureOf<ENuDomException>([&] { root.GetChildElement(u"z", u"u", soRaise); }),
              u"There is no childelement \"z\" with the namespaceURI \"u\".");
    EXPECT_THROW(root.GetChildElement(u"c", soCreate | soRaise), host::EAssertionFailed);
    EXPECT_EQ(nameOf(root.GetChildElement(u"Q:n", soCreate | soIgnoreNamespace)), u"Q:n");
    EXPECT_EQ(root.LastChild()->get_nodeName(), u"Q:n");
    root.setAttributeNS(u"u", u"p:x", u"5");
    root.setAttributeNS(u"no", u"q:x", u"6");
    EXPECT_EQ(root.getAttribute(u"p:x") + root.getAttribute(u"q:x"), u"56");
}

TEST(Element, listsItsChildElementsInAnOrderOfTheirOwn) {
    const auto document = loaded(u"<r><a/>t<b/></r>");
    TNuDOMElement& root = *document->GetRootNode();
    TNuDOMElementList& list = root.get_childElements();
    const auto names = [&] {
        std::u16string all;
        for (TNuDOMNode* node : list) {
            all += node->get_nodeName();
        }
        return all;
    };
    TNuDOMNode* text = root.FirstChild()->get_nextSibling();
    EXPECT_EQ(names(), u"ab");
    TNuDOMElement& c = root.InsertElement(u"c", rdpAfter, text);
    EXPECT_EQ(root.get_xml(), u"<r><a/>t<c/><b/></r>");
    EXPECT_EQ(names(), u"cab");
    EXPECT_EQ(c.get_index(), 0);
    EXPECT_EQ(root.FirstChildElement(), &c);
    EXPECT_THROW(root.InsertElement(u"d", rdpBefore, text), host::EListError);
    root.AddComment(u"");
    root.InsertElement(u"e", rdpAfter, root.LastChild());
    EXPECT_EQ(names(), u"ecab");
    root.InsertElement(u"f", rdpAfter, &c);
    EXPECT_EQ(names(), u"ecfab");
    root.AddElement(u"g");
    root.RemoveElement(u"a");
    EXPECT_EQ(names(), u"ecfbg");
}

TEST(Document, keepsItsRules) {
    const auto document = TNuDOMDocument::Create();
    document->SetProcessingInstruction(u"style", u"s");
    document->AddProcessingInstruction(u"xml", u"v");
    document->SetProcessingInstruction(u"last", u"1");
    document->SetProcessingInstruction(u"last", u"2");
    document->CreateRootNode(u"p:r", u"uri");
    EXPECT_EQ(document->get_xml(), u"<?xml v?><?style s?><?last 2?><p:r/>");
    EXPECT_EQ(document->GetProcessingInstruction(u"last"), u"2");
    EXPECT_EQ(document->GetProcessingInstruction(u"Last"), u"");
    EXPECT_EQ(document->GetRootNode()->GetCreationNamespaceURI(), u"uri");
    EXPECT_EQ(document->GetRootNode()->get_namespaceURI(), u"");
    EXPECT_EQ(document->GetRootNode()->get_previousSibling()->get_nodeName(), u"last");
    EXPECT_EQ(document->GetRootNode()->get_index(), 0);
    EXPECT_THROW((void)document->GetRootNode()->GetParentElement(), host::EInvalidCast);
    EXPECT_THROW(document->CreateRootNode(u"s"), ENuDomHierarchyRequest);
    EXPECT_EQ(failureOf<ENuDomNoModificationAllowed>(
                  [&] { document->set_documentElement(*document->createElement(u"x")); }),
              u"It is not possible to replace an existing rootnode by another.");
    document->insertBefore(*document->createComment(u"c"), document->GetRootNode());
    EXPECT_EQ(document->get_childNodes().Count(), 5U);
    EXPECT_EQ(document->get_childNodes().GetItem(3)->get_nodeName(), u"#comment");
    {
        const NuRef<TNuDOMNode> held(document->FirstChild());
        EXPECT_THROW(document->Clear(), host::EInvalidPointer);
        EXPECT_EQ(document->get_xml(), u"<?xml v?>");
        EXPECT_THROW(document->Destroy(), host::EInvalidPointer);
    }
    EXPECT_TRUE(document->loadxml(u""));
    EXPECT_FALSE(document->hasChildNodes());
    EXPECT_THROW(document->LoadFromFile("/no/such/file"), host::EReadError);
}

TEST(Load, buildsWhatTheReaderTells) {
    const struct {
        std::u16string_view xml, written;
    } table[] = {
        {u"<a x=\"&amp;&#65;'\"/>", u"<a x=\"&amp;A&apos;\"/>"},
        {u"<!--c--><?xml v?><a/><?p q?>", u"<?xml v?><!--c--><?p q?><a/>"},
        {u"<a><![CDATA[x]]><![CDATA[]]></a>", u"<a><![CDATA[x]]></a>"},
        {u"<a k=\"1\" j=\"2\" k=\"3\"><b k=\"4\"/></a>", u"<a k=\"3\" j=\"2\"><b k=\"4\"/></a>"},
        {u"<a>&eacute;&foo;</a>", u"<a>&eacute;&foo;</a>"},
        {u"no markup", u""},
    };
    const auto document = TNuDOMDocument::Create();
    for (const auto& row : table) {
        document->loadxml(row.xml);
        EXPECT_EQ(document->get_xml(), row.written);
        // The same into places where other nodes stood before.
        document->loadxml(row.xml);
        EXPECT_EQ(document->get_xml(), row.written);
    }
}

/// What a value holds is noted 64 characters at a time, so it has to be right wherever it stands.
TEST(Load, replacesReferencesInValuesAnywhere) {
    const NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    for (std::size_t length = 0; length < 150; ++length) {
        const NuXmlString padding(length, u'p');
        document->loadxml(u"<a b=\"" + padding + u"\" c=\"&#65;\" d=\"<\" e=\">" + padding +
                          u"'\" f=\"&amp;\"/>");
        ASSERT_EQ(document->get_xml(), u"<a b=\"" + padding + u"\" c=\"A\" d=\"&lt;\" e=\"&gt;" +
                                           padding + u"&apos;\" f=\"&amp;\"/>");
    }
}

TEST(Load, endsWithWhatTheTreeDidNotTake) {
    const auto document = loaded(u"<a/>");
    TNuStringStream second(u"<?p q?><b/>");
    EXPECT_EQ(failureOf<ENuDomHierarchyRequest>([&] { document->LoadFromStream(second); }),
              u"A document can only have 1 rootnode");
    EXPECT_EQ(document->get_xml(), u"<?p q?><a/>");
    EXPECT_FALSE(document->IsLoading());
    EXPECT_THROW((void)loaded(u"<a/><![CDATA[x]]><!--c-->"), host::EInvalidCast);
    EXPECT_THROW((void)loaded(u"<a><!--ab--cd--></a>"), ENuDomInvalidCharacter);
    const auto half = TNuDOMDocument::Create();
    EXPECT_THROW(half->loadxml(u"<a b=\"1\" c=\"&#;\"/>"), host::Exception);
    EXPECT_EQ(half->get_xml(), u"<a b=\"1\"/>");

    TNuDOMElement& root = *document->GetRootNode();
    const struct {
        std::u16string_view xml, written;
    } table[] = {
        {u"a<b/>c", u"<a k=\"1\">a<b/>c</a>"},
        {u"text", u"<a k=\"1\">text</a>"},
        {u"", u"<a k=\"1\"/>"},
        {u"<b x=\"1\"/>", u"<a k=\"1\"><b x=\"1\"/></a>"},
        {u"<b x=\"2\"/>", u"<a k=\"1\"><b x=\"2\"/></a>"},
    };
    root.setAttribute(u"k", u"1");
    for (const auto& row : table) {
        root.set_innerxml(row.xml);
        EXPECT_EQ(root.get_xml(), row.written);
    }
}

TEST(Lists, areSnapshotsOrFollowTheTree) {
    const auto document = loaded(u"<r><a/><b/></r>");
    TNuDOMElement& root = *document->GetRootNode();
    const auto list = TNuDOMNodeList::Create(&root, document.get(), false);
    TNuDOMNode& a = *root.FirstChild();
    EXPECT_EQ(list->Add(a), 0);
    EXPECT_EQ(list->Add(*a.get_nextSibling()), 1);
    EXPECT_EQ(list->Add(a), 0);
    EXPECT_EQ(list->Insert(2, a), 0);
    EXPECT_THROW((void)list->GetItem(2), host::EListError);
    root.RemoveElement(u"a");
    EXPECT_EQ(list->GetItem(0), nullptr);
    // One that owns its items stays with them, although nobody holds either.
    TNuDOMNodeList* owner = TNuDOMNodeList::Create(&root, document.get(), true).get();
    EXPECT_EQ(owner->Add(*TNuDOMText::Class.create(document.get())), 0);
    { const NuRef<TNuDOMNodeList> held(owner); }
    root.AddElement(u"c");
    EXPECT_EQ(owner->GetItem(0)->get_nodeName(), u"#text");
    owner->Clear();
    EXPECT_EQ(owner->Count(), 0U);
    root._delete();
    EXPECT_EQ(list->Node(), nullptr);
    EXPECT_EQ(list->Last(), nullptr);

    document->loadxml(u"<r k=\"1\"/>");
    TNuDOMAttrList& map = document->GetRootNode()->get_attributes();
    EXPECT_EQ(map.getNamedItem(u"K"), nullptr);
    EXPECT_EQ(failureOf<ENuDomNotSupported>([&] { map.setNamedItem(*map.GetItem(0)); }),
              u"Not implemented");
    EXPECT_EQ(map.removeNamedItem(u"k")->get_nodeValue(), u"1");
    EXPECT_EQ(map.Count(), 0U);
    EXPECT_THROW((void)TNuDOMNodeList::Create(nullptr, nullptr, false), host::EAssertionFailed);
}

TEST(Lists, followEditsNearAndFar) {
    for (std::uint64_t seed = 0; seed < support::randomInputs(20); ++seed) {
        support::Random random(seed);
        const auto document = loaded(u"<a/>");
        TNuDOMElement& root = *document->GetRootNode();
        std::vector<TNuDOMNode*> model;
        std::size_t place = 0;
        for (int step = 0; step < 1000; ++step) {
            place = std::min(random(4) == 0 ? random(model.size() + 1) : place, model.size());
            const auto at = model.begin() + static_cast<std::ptrdiff_t>(place);
            if (at != model.end() && random(100) < model.size()) {
                (*at)->_delete();
                model.erase(at);
            } else {
                TNuDOMNode* next = at != model.end() ? *at : nullptr;
                const TNuDOMPosition position = next != nullptr ? rdpBefore : rdpLast;
                const bool isElement =
                    random(2) == 0 &&
                    (next == nullptr || next->get_nodeType() == host::ELEMENT_NODE);
                model.insert(at, isElement ? static_cast<TNuDOMNode*>(
                                                 &root.InsertElement(u"e", position, next))
                                           : &root.InsertComment(u"", position, next));
            }
            if (!model.empty()) {
                const std::size_t index = random(model.size());
                TNuDOMNode* node = model[index];
                ASSERT_EQ(root.get_childNodes().IndexOf(*node), static_cast<std::ptrdiff_t>(index))
                    << seed;
                static_cast<void>(root.get_childElements().IndexOf(*node));
            }
        }
        const std::vector<TNuDOMNode*> nodes(root.get_childNodes().begin(),
                                             root.get_childNodes().end());
        EXPECT_EQ(nodes, model) << seed;
        std::erase_if(model,
                      [](TNuDOMNode* node) { return node->get_nodeType() != host::ELEMENT_NODE; });
        const std::vector<TNuDOMNode*> elements(root.get_childElements().begin(),
                                                root.get_childElements().end());
        EXPECT_EQ(elements, model) << seed;
    }
}

TEST(Lifetime, endsWithTheLastReferenceInAnyOrder) {
    // Whatever is held last keeps the rest: letting go in every order must neither leak nor free
    // too early, which only a sanitizer sees; the text shows that everything is still there.
    for (const bool takesOut : {false, true}) {
        std::vector<std::size_t> order{0, 1, 2, 3, 4, 5};
        do {
            auto document = loaded(u"<r><a k=\"1\"><b/></a></r>");
            TNuDOMElement& a = *document->GetRootNode()->FirstChildElement();
            NuRef<TNuDOMObject> held[] = {NuRef<TNuDOMNode>(&a),
                                          NuRef<TNuDOMNode>(a.FirstChild()),
                                          NuRef<TNuDOMNode>(a.getAttributeNode(u"k")),
                                          NuRef<TNuDOMNodeList>(&a.get_childNodes()),
                                          NuRef<TNuDOMNodeList>(&document->get_childNodes()),
                                          document->CreateNodeList(u"//b")};
            document.reset();
            if (takesOut) {
                a._delete();
            }
            for (const std::size_t index : order) {
                (void)held[index]->OwnerDocument()->createElement(u"x");
                held[index].reset();
            }
        } while (std::next_permutation(order.begin(), order.end()));
    }
}

TEST(Lifetime, movesWithTheNodesToAnotherDocument) {
    for (const bool isFormerFirst : {true, false}) {
        auto former = loaded(u"<r xmlns:longPrefix=\"u\"><longPrefix:a k=\"v\">text that is "
                             u"long</longPrefix:a></r>");
        auto latter = loaded(u"<s/>");
        NuRef<TNuDOMNode> text(former->GetRootNode()->FirstChild()->FirstChild());
        latter->GetRootNode()->appendChild(*text->get_parentNode());
        EXPECT_EQ(text->get_ownerDocument(), latter.get());
        EXPECT_EQ(former->GetRootNode()->hasChildNodes(), false);
        (isFormerFirst ? former : latter).reset();
        EXPECT_EQ(text->get_parentNode()->get_xml(),
                  u"<longPrefix:a k=\"v\">text that is long</longPrefix:a>");
        EXPECT_EQ(text->get_parentNode()->get_namespaceURI(), u"");
    }
}

TEST(Lifetime, keepsWhatIsBeingEmptied) {
    // Only a child holds the element, and leaves it in the middle of the work.
    const auto document = loaded(u"<r/>");
    auto made = document->createElement(u"e");
    TNuDOMElement& element = *made;
    element.AddElement(u"a");
    const NuRef<TNuDOMNode> child(&element.AddElement(u"b"));
    made.reset();
    const auto list = TNuDOMNodeList::Create(nullptr, document.get(), false);
    list->Add(element);
    EXPECT_EQ(list->GetItem(0), &element);
    element.set_innerxml(u"<c/>");
    EXPECT_EQ(list->GetItem(0), nullptr);
    EXPECT_EQ(child->get_parentNode(), nullptr);
}

// Nodes stand in the memory of their document: nobody may destroy one, in whatever way.
template <class... Classes>
constexpr bool areTheirDocuments = (!std::is_destructible_v<Classes> && ...);
static_assert(areTheirDocuments<TNuDOMObject, TNuDOMNode, TNuDOMDocument, TNuDOMElement,
                                TNuDOMAttribute, TNuDOMCharacterData, TNuDOMText, TNuDOMCDATA,
                                TNuDOMComment, TNuDOMProcessingInstruction, TNuDOMNodeList,
                                TNuDOMElementList, TNuDOMAttrList, TNuDOMImplementation>);

TEST(Lifetime, takesReferencesFromManyThreads) {
    auto document = loaded(u"<r><a/><b/></r>");
    std::vector<NuRef<TNuDOMNode>> nodes{document->GetRootNode()->FirstChild(),
                                         document->createElement(u"x"),
                                         document->createTextNode(u"t")};
    const NuRef<TNuDOMNodeList> list(&document->GetRootNode()->get_childNodes());
    std::atomic<bool> isDone = false;
    const auto touch = [&isDone](std::vector<NuRef<TNuDOMNode>> held,
                                 NuRef<TNuDOMNodeList> itsList) {
        while (!isDone) {
            for (const auto& node : held) {
                const NuRef<TNuDOMNode> copy(node);
            }
            const NuRef<TNuDOMNodeList> copy(itsList);
        }
    };
    std::thread first(touch, nodes, list);
    std::thread second(touch, std::move(nodes), list);
    for (int count = 0; count < 2000; ++count) {
        TNuDOMElement& root = *document->GetRootNode();
        root.AddElement(u"c").setAttribute(u"k", u"v");
        root.LastChild()->_delete();
    }
    EXPECT_EQ(document->get_xml(), u"<r><a/><b/></r>");
    document.reset();
    isDone = true;
    first.join();
    second.join();
}

} // namespace
