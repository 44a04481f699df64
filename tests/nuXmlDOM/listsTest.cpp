#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/runtime/exception.h"
#include "nuXmlDOM.h"
#include "support/randomText.h"

namespace {

using Nodes = std::vector<TNuDOMNode*>;

std::ptrdiff_t indexIn(const Nodes& nodes, const TNuDOMNode* node) {
    const auto place = std::find(nodes.begin(), nodes.end(), node);
    return place != nodes.end() ? place - nodes.begin() : -1;
}

Nodes nodesOf(const TNuDOMNodeList& list) { return {list.begin(), list.end()}; }

/// The lists of one element (or the list of a document) and a snapshot, next to plain vectors that
/// are to hold the same.
class ListModel {
public:
    ListModel(std::uint64_t seed, bool isDocument)
        : random_(seed), kinds_(seed % 3 == 0 ? 1 : 4), document_(TNuDOMDocument::Create()),
          isDocument_(isDocument) {
        TNuDOMNode& owner =
            isDocument ? static_cast<TNuDOMNode&>(*document_) : document_->CreateRootNode(u"r");
        lists_[children] = &owner.get_childNodes();
        if (auto* element = document_->GetRootNode()) {
            lists_[elements] = &element->get_childElements();
            lists_[attributes] = &element->get_attributes();
        }
        snapshot_ = TNuDOMNodeList::Create(&owner, document_.get(), false);
        lists_[loose] = snapshot_.get();
    }

    void step() {
        const std::size_t kind = isDocument_ ? random_(2) * loose : random_(4);
        TNuDOMNodeList& list = *lists_[kind];
        Nodes& nodes = nodes_[kind];
        switch (random_(20)) {
        case 0:
            clear(list, nodes, kind == loose);
            break;
        case 1:
            sort(list, nodes);
            break;
        case 2:
        case 3:
        case 4:
        case 5:
            remove(list, nodes, kind == loose);
            break;
        default:
            insert(list, nodes, kind);
        }
        for (std::size_t other = 0; other < 4; ++other) {
            if (lists_[other] != nullptr) {
                ASSERT_EQ(nodesOf(*lists_[other]), nodes_[other]) << other;
            }
        }
        if (!nodes.empty() && nodes.back() != nullptr) {
            const std::size_t index = random_(nodes.size());
            ASSERT_EQ(list.Last(), nodes.back());
            ASSERT_EQ(list.IndexOf(*nodes.back()), indexIn(nodes, nodes.back()));
            ASSERT_EQ(list.GetItem(static_cast<std::ptrdiff_t>(index)), nodes[index]);
        }
        ASSERT_THROW((void)list.GetItem(static_cast<std::ptrdiff_t>(nodes.size())),
                     host::EListError);
    }

private:
    enum Kind : std::uint8_t { children, elements, attributes, loose };

    NuRef<TNuDOMNode> make() {
        const std::u16string value(1, static_cast<char16_t>(u'0' + random_(10)));
        const std::size_t kind = random_(kinds_);
        if (kind == 1 && !isDocument_) {
            auto attribute = document_->createAttribute(u"a" + value);
            attribute->set_nodeValue(value);
            return attribute;
        }
        if (kind == 2) {
            return document_->createComment(value);
        }
        auto element = document_->createElement(u"e");
        element->setAttribute(u"v", value);
        return element;
    }
    bool isElement(const TNuDOMNode& node) const {
        return node.get_nodeType() == host::ELEMENT_NODE;
    }
    bool isIn(Kind kind, const TNuDOMNode& node) const {
        const bool isAttribute = node.get_nodeType() == host::ATTRIBUTE_NODE;
        return kind == attributes ? isAttribute
                                  : !isAttribute && (kind == children || isElement(node));
    }
    void insert(TNuDOMNodeList& list, Nodes& nodes, std::size_t kind) {
        // 1. A new node, or one that stands somewhere already.
        const Nodes& some = nodes_[random_(3)];
        TNuDOMNode* known = some.empty() || random_(4) != 0 ? nullptr : some[random_(some.size())];
        const NuRef<TNuDOMNode> node = known != nullptr ? NuRef<TNuDOMNode>(known) : make();
        const auto size = static_cast<std::ptrdiff_t>(nodes.size());
        const std::ptrdiff_t former = indexIn(nodes, node.get());
        const bool isAdded = random_(2) == 0;
        const std::ptrdiff_t index =
            isAdded ? size : static_cast<std::ptrdiff_t>(random_(nodes.size() + 2));
        // 2. What is to come of it.
        bool isDone = former >= 0;
        if (!isDone && index <= size) {
            isDone = place(*node, nodes, index, kind);
        }
        // 3. The same in the list.
        try {
            const std::ptrdiff_t given = isAdded ? list.Add(*node) : list.Insert(index, *node);
            ASSERT_TRUE(isDone);
            ASSERT_EQ(given, indexIn(nodes, node.get()));
        } catch (const host::Exception&) {
            ASSERT_FALSE(isDone);
        }
        // 4. What stands nowhere goes with the handle.
        if (indexIn(nodes_[children], node.get()) < 0 &&
            indexIn(nodes_[attributes], node.get()) < 0) {
            goAway(node.get());
        }
    }
    bool place(TNuDOMNode& node, Nodes& nodes, std::ptrdiff_t index, std::size_t kind) {
        if (kind == loose) {
            nodes.insert(nodes.begin() + index, &node);
            return true;
        }
        const auto reference = index < static_cast<std::ptrdiff_t>(nodes.size())
                                   ? nodes[static_cast<std::size_t>(index)]
                                   : nullptr;
        leave(node);
        const bool isRoot = isDocument_ && isElement(node);
        if (isRoot && document_->GetRootNode() != nullptr && document_->GetRootNode() != &node) {
            return false;
        }
        std::ptrdiff_t places[3];
        for (const Kind one : {children, elements, attributes}) {
            places[one] = reference == nullptr || isRoot
                              ? static_cast<std::ptrdiff_t>(nodes_[one].size())
                              : indexIn(nodes_[one], reference);
            if (isDocument_ && reference == nullptr && !isRoot && !nodes_[one].empty() &&
                isElement(*nodes_[one].back())) {
                --places[one];
            }
            if (isIn(one, node) && places[one] < 0) {
                return false;
            }
        }
        for (const Kind one : {children, elements, attributes}) {
            if (isIn(one, node)) {
                nodes_[one].insert(nodes_[one].begin() + places[one], &node);
            }
        }
        return true;
    }
    void leave(const TNuDOMNode& node) {
        for (const Kind kind : {children, elements, attributes}) {
            std::erase(nodes_[kind], &node);
        }
    }
    void goAway(TNuDOMNode* node) {
        leave(*node);
        std::replace(nodes_[loose].begin(), nodes_[loose].end(), node,
                     static_cast<TNuDOMNode*>(nullptr));
    }
    void remove(TNuDOMNodeList& list, Nodes& nodes, bool isLoose) {
        const NuRef<TNuDOMNode> node(nodes.empty() ? nullptr : nodes[random_(nodes.size())]);
        if (node == nullptr) {
            return;
        }
        const std::ptrdiff_t index = indexIn(nodes, node.get());
        if (isLoose) {
            nodes.erase(nodes.begin() + index);
        } else {
            goAway(node.get()); // with the handle
        }
        ASSERT_EQ(list.Remove(*node), index);
    }
    void clear(TNuDOMNodeList& list, Nodes& nodes, bool isLoose) {
        if (isLoose) {
            list.Clear();
            nodes.clear();
            return;
        }
        NuRef<TNuDOMNode> held(nodes.empty() || random_(2) == 0 ? nullptr
                                                                : nodes[random_(nodes.size())]);
        while (!nodes.empty() && nodes.back() != held.get()) {
            goAway(nodes.back());
        }
        if (nodes.empty()) {
            list.Clear();
        } else {
            ASSERT_THROW(list.Clear(), host::EInvalidPointer);
        }
    }
    void sort(TNuDOMNodeList& list, Nodes& nodes) {
        const auto isKnown = [&](const TNuDOMNode* node) {
            return node == nullptr || isElement(*node);
        };
        // Paths begin at elements only.
        if (nodes.size() > 1 && !std::all_of(nodes.begin(), nodes.end(), isKnown)) {
            ASSERT_THROW(list.Sort("@v"), ENuDomNotSupported);
            return;
        }
        list.Sort("@v");
        const auto key = [](const TNuDOMNode* node) {
            return node != nullptr ? static_cast<const TNuDOMElement*>(node)->getAttribute(u"v")
                                   : NuXmlString();
        };
        std::stable_sort(nodes.begin(), nodes.end(),
                         [&](const TNuDOMNode* left, const TNuDOMNode* right) {
                             return key(left) < key(right);
                         });
    }

    support::Random random_;
    /// Some documents hold elements only, or no list could be sorted.
    std::size_t kinds_;
    NuRef<TNuDOMDocument> document_;
    bool isDocument_;
    NuRef<TNuDOMNodeList> snapshot_;
    TNuDOMNodeList* lists_[4]{};
    Nodes nodes_[4];
};

TEST(Lists, changeTheTreeThatTheyShow) {
    for (std::uint64_t seed = 0; seed < support::randomInputs(100); ++seed) {
        ListModel model(seed, seed % 4 == 0);
        for (int step = 0; step < 100; ++step) {
            ASSERT_NO_FATAL_FAILURE(model.step()) << seed << ", step " << step;
            if (::testing::Test::HasFatalFailure()) {
                return;
            }
        }
    }
}

// More than are compared one by one: by name, by namespace and from a list that stands for itself,
// against going over them, while they come and go.
TEST(Lists, findAmongManyAttributes) {
    support::Random random(3);
    const auto document = TNuDOMDocument::Create();
    TNuDOMElement& root = document->CreateRootNode(u"r");
    const char16_t* const prefixes[] = {u"", u"p:", u"q:"};
    root.setAttribute(u"xmlns:p", u"u");
    root.setAttribute(u"xmlns:q", u"v");
    const auto name = [&] {
        const std::size_t number = random(60);
        return prefixes[random(3)] + std::u16string(1, static_cast<char16_t>(u'A' + number));
    };
    for (int step = 0; step < 4000; ++step) {
        const std::u16string changed = name();
        random(3) == 0 ? root.removeAttribute(changed) : root.setAttribute(changed, 1);
        const auto snapshot = TNuDOMAttrList::Create(&root, document.get(), false);
        for (TNuDOMAttribute& attribute : root.Attributes()) {
            snapshot->Add(attribute);
        }
        const std::u16string sought = name();
        const std::u16string local = sought.substr(sought.find(u':') + 1);
        const char16_t* const uri = sought.size() == 1 ? u"" : sought[0] == u'p' ? u"u" : u"v";
        TNuDOMAttribute* byName = nullptr;
        TNuDOMAttribute* byUri = nullptr;
        for (TNuDOMAttribute& attribute : root.Attributes()) {
            byName = attribute.get_nodeName() == sought ? &attribute : byName;
            // A declaration of the prefix has its name, and no namespace.
            const bool isFirst = byUri == nullptr && attribute.get_localName() == local;
            byUri = isFirst && attribute.get_namespaceURI() == uri ? &attribute : byUri;
        }
        ASSERT_EQ(root.getAttributeNode(sought), byName);
        ASSERT_EQ(root.getAttributeNodeNS(uri, local), byUri);
        ASSERT_EQ(snapshot->getNamedItem(sought), byName);
        ASSERT_EQ(snapshot->getNamedItemNS(uri, local), byUri);
    }
}

TEST(Lists, tellPlacesInAnyOrder) {
    support::Random random(4);
    const auto document = TNuDOMDocument::Create();
    TNuDOMElement& root = document->CreateRootNode(u"r");
    Nodes nodes;
    for (int step = 0; step < 20000; ++step) {
        const std::size_t place = random(nodes.size() + 1);
        if (nodes.size() < 300 || random(40) == 0) {
            TNuDOMNode* reference = place < nodes.size() ? nodes[place] : nullptr;
            nodes.insert(
                nodes.begin() + static_cast<std::ptrdiff_t>(place),
                &root.InsertElement(u"e", reference != nullptr ? rdpBefore : rdpLast, reference));
        } else if (place < nodes.size() && random(40) == 0) {
            nodes[place]->_delete();
            nodes.erase(nodes.begin() + static_cast<std::ptrdiff_t>(place));
        } else if (place < nodes.size()) {
            ASSERT_EQ(root.get_childNodes().IndexOf(*nodes[place]),
                      static_cast<std::ptrdiff_t>(place));
        }
    }
    ASSERT_EQ(nodesOf(root.get_childNodes()), nodes);
}

} // namespace
