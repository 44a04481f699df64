#include <algorithm>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <malloc.h>

#include "nuXmlDOM.h"

// Sizes at which everything that costs more than its share, or goes as deep as the document, is
// seen at once: each case takes a blink when it is linear, and minutes when it is not.

namespace {

constexpr std::size_t many = 100'000;
constexpr std::size_t million = 1'000'000;

std::u16string text(std::size_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

std::u16string repeated(std::size_t count, std::u16string_view piece) {
    std::u16string result;
    result.reserve(count * piece.size());
    for (; count > 0; --count) {
        result += piece;
    }
    return result;
}

/// Runs on a thread, whose stack has the usual 8 MiB also where the main thread's has no limit.
void onThread(const std::function<void()>& run) { std::thread(run).join(); }

NuRef<TNuDOMDocument> withRoot() {
    NuRef<TNuDOMDocument> document = TNuDOMDocument::Create();
    document->CreateRootNode(u"r");
    return document;
}

TEST(TreeScale, goesAsDeepAsTheDocument) {
    onThread([] {
        const std::u16string inner =
            repeated(million - 1, u"<a>") + u"<a/>" + repeated(million - 1, u"</a>");
        const auto document = NuCreateDOMDocument(inner);
        ASSERT_EQ(document->get_xml(), inner);
        TNuDOMElement& root = *document->GetRootNode();
        root.set_innerxml(inner);
        EXPECT_EQ(document->get_xml(), u"<a>" + inner + u"</a>");

        // Down to another document and back, out of the tree, and gone.
        const auto other = withRoot();
        TNuDOMNode* deepest = root.FirstChild();
        other->GetRootNode()->appendChild(*deepest);
        EXPECT_EQ(deepest->get_ownerDocument(), other.get());
        while (deepest->hasChildNodes()) {
            deepest = deepest->FirstChild();
        }
        EXPECT_EQ(deepest->NodePath(false).size(), 2 + 2 * million);
        EXPECT_EQ(deepest->get_namespaceURI(), u"");
        EXPECT_THROW(deepest->appendChild(*other->GetRootNode()), ENuDomHierarchyRequest);
        root.appendChild(*other->GetRootNode()->FirstChild());
        const NuRef<TNuDOMNode> held(deepest);
        root.FirstChild()->_delete();
        EXPECT_EQ(document->get_xml(), u"<a/>");
        held->get_parentNode()->_delete();
    });
}

TEST(TreeScale, changesAnyPlaceAmongManySiblings) {
    const auto document = withRoot();
    TNuDOMElement& root = *document->GetRootNode();
    const TNuDOMNodeList& list = root.get_childNodes();
    for (std::size_t number = 0; number < many; ++number) {
        root.InsertElement(u"c", rdpFirst, nullptr);
    }
    EXPECT_EQ(list.Count(), many);
    // Siblings and positions.
    std::ptrdiff_t index = 0;
    for (const TNuDOMNode* node = root.FirstChild(); node != nullptr;
         node = node->get_nextSibling()) {
        ASSERT_EQ(static_cast<const TNuDOMElement*>(node)->get_index(), index++);
    }
    // Loops that look at the list and edit as they go.
    for (std::ptrdiff_t place = 0; place < static_cast<std::ptrdiff_t>(list.Count()); place += 2) {
        root.InsertComment(u"", rdpBefore, list.GetItem(place));
    }
    for (std::size_t number = 0; number < many; ++number) {
        root.appendChild(*list.GetItem(0));
        ASSERT_EQ(list.IndexOf(*root.LastChild()), static_cast<std::ptrdiff_t>(2 * many) - 1);
    }
    while (list.Count() != 0) {
        root.removeChild(*list.GetItem(0));
    }
    // From either end.
    root.set_innerxml(repeated(million, u"<c/>"));
    for (std::size_t number = 0; number < million; ++number) {
        (number % 2 == 0 ? root.FirstChild() : root.LastChild())->_delete();
    }
    EXPECT_EQ(list.Count(), 0U);
}

TEST(TreeScale, keepsManyAttributes) {
    std::u16string xml = u"<r";
    for (std::size_t number = 0; number < many; ++number) {
        xml += u" a" + text(number) + u"=\"" + text(number) + u"\"";
    }
    xml += u"/>";
    const auto loaded = NuCreateDOMDocument(xml);
    EXPECT_EQ(loaded->get_xml(), xml);

    const auto document = withRoot();
    TNuDOMElement& root = *document->GetRootNode();
    for (std::size_t number = 0; number < many; ++number) {
        root.setAttribute(u"a" + text(number), text(number));
    }
    EXPECT_EQ(document->get_xml(), xml);
    for (std::size_t number = 0; number < many; ++number) {
        root.setAttributeNS(u"", u"a" + text(number), u"");
        ASSERT_EQ(root.get_attributes().getNamedItem(u"a" + text(number)),
                  &*root.Attributes().begin());
        root.removeAttribute(u"a" + text(number));
    }
    EXPECT_EQ(document->get_xml(), u"<r/>");
    // The last ones first, and put back in front of the one that was taken out before.
    TNuDOMElement& full = *loaded->GetRootNode();
    NuRef<TNuDOMAttribute> former;
    for (std::size_t number = many; number-- > 1;) {
        const NuRef<TNuDOMAttribute> last(full.getAttributeNode(u"a" + text(number)));
        last->_linkToParent(&full, former == nullptr ? rdpLast : rdpBefore, former.get());
        former = last;
    }
    EXPECT_EQ(loaded->get_xml(), xml);
}

TEST(TreeScale, letsGoOfManyNodes) {
    const auto document = withRoot();
    TNuDOMElement& root = *document->GetRootNode();
    std::vector<NuRef<TNuDOMNode>> handles;
    // 1. That a snapshot refers to.
    const auto fill = [&] { root.set_innerxml(repeated(many, u"<c><d/></c>")); };
    fill();
    const auto snapshot = root.CreateNodeList(u"c");
    root.set_innerxml(u"");
    EXPECT_EQ(snapshot->Count(), many);
    EXPECT_EQ(snapshot->GetItem(many / 2), nullptr);
    // 2. That were held one by one, outside of the tree.
    fill();
    for (TNuDOMElement& child : root.ChildElements()) {
        handles.emplace_back(child.FirstChild());
    }
    root.set_innerxml(u"");
    handles.clear();
    EXPECT_EQ(document->createTextNode(u"t")->get_xml(), u"t");
    // 3. That were held together in what left the tree.
    fill();
    for (TNuDOMElement& child : root.ChildElements()) {
        handles.emplace_back(child.FirstChild());
    }
    root._delete();
    handles.clear();
    EXPECT_EQ(document->CreateRootNode(u"s").get_xml(), u"<s/>");
}

TEST(TreeScale, readsNamesOfManyNamespaces) {
    // One name in many namespaces, and many names in one whose name is long.
    std::u16string content;
    for (std::size_t number = 0; number < many; ++number) {
        content += u"<a xmlns=\"" + text(number) + u"\"/>";
    }
    content += u"<b xmlns:p=\"" + std::u16string(million, u'u') + u"\">";
    for (std::size_t number = 0; number < many; ++number) {
        content += u"<p:n" + text(number) + u"/>";
    }
    const auto document = NuCreateDOMDocument(u"<r>" + content + u"</b></r>");
    const TNuDOMElement& root = *document->GetRootNode();
    EXPECT_EQ(root.FirstChildElement()->get_nextSibling()->GetCreationNamespaceURI(), u"1");
    EXPECT_EQ(root.LastChild()->LastChild()->GetCreationNamespaceURI().size(), million);
}

/// What is held leaves what nobody holds, which goes with the last of it.
TEST(TreeScale, letsGoOfWhatIsLeft) {
    const auto document = withRoot();
    const auto list = TNuDOMNodeList::Create(nullptr, document.get(), false);
    // 1. Wrapper after wrapper around one node, also in one another.
    const auto core = document->createElement(u"core");
    NuRef<TNuDOMElement> wrapper;
    const auto inUse = [] { return mallinfo2().uordblks; };
    std::size_t used = 0;
    for (std::size_t number = 0; number < many; ++number) {
        wrapper = document->createElement(u"w");
        wrapper->appendChild(*core);
        used = number == many / 2 ? inUse() : used;
    }
    EXPECT_LE(inUse(), used + 1000);
    for (std::size_t number = 0; number < many; ++number) {
        NuRef<TNuDOMElement> outer = document->createElement(u"o");
        outer->appendChild(*wrapper);
        wrapper = outer;
    }
    list->Add(*wrapper);
    wrapper.reset();
    EXPECT_NE(list->GetItem(0), nullptr);
    document->GetRootNode()->appendChild(*core);
    EXPECT_EQ(list->GetItem(0), nullptr);
    // 2. One of many after the other, wide or deep, from the first or the last; dropped or moved.
    for (int kind = 0; kind < 8; ++kind) {
        auto top = document->createElement(u"top");
        std::vector<NuRef<TNuDOMNode>> held;
        TNuDOMElement* place = top.get();
        for (std::size_t number = 0; number < many; ++number) {
            held.emplace_back(&place->AddElement(u"h"));
            place->AddElement(u"unheld");
            place = kind % 2 != 0 ? &place->AddElement(u"deeper") : place;
        }
        if (kind / 2 % 2 != 0) {
            std::reverse(held.begin(), held.end());
        }
        list->Clear();
        list->Add(*top);
        top.reset();
        while (!held.empty()) {
            ASSERT_NE(list->GetItem(0), nullptr) << kind;
            if (kind < 4) {
                held.back()->_delete();
            }
            held.pop_back();
        }
        EXPECT_EQ(list->GetItem(0), nullptr) << kind;
    }
}

TEST(TreeScale, findsNamespacesFarBelowTheirDeclaration) {
    const std::u16string inner = repeated(many, u"<p:a>") +
                                 u"<p:b xmlns:p=\"w\"><p:a/></p:b><q:a/>" +
                                 repeated(many, u"</p:a>");
    const auto document = NuCreateDOMDocument(u"<r xmlns:p=\"u\">" + inner + u"</r>");
    EXPECT_EQ(document->getElementsByTagNameNS(u"u", u"a")->Count(), many);
    EXPECT_EQ(document->getElementsByTagNameNS(u"w", u"*")->Count(), 2U);
    EXPECT_EQ(document->getElementsByTagNameNS(u"", u"a")->Count(), 1U);
}

} // namespace
