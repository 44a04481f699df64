// Paths on a small document: the library selects, changes and refuses what the rules say word for
// word.
//
// The first byte is the options and the call, the second the context, the rest the path: ASCII as
// it is, other bytes are the words of paths, so that random bytes make paths that lead somewhere.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <typeinfo>

#include "nuXmlDOM/path/path.h"
#include "support/slowPaths.h"

namespace {

constexpr std::u16string_view document =
    uR"(<?top t?><root><!--c--><a id="1"><b>x</b></a>)"
    uR"(<a id="02" k="a/b"><B>3</B><b>Y</b></a>t<c xmlns:p="u")"
    uR"( p:id="7"><a id="3"/><p:a ID="x"><b/><b>12</b></p:a>)"
    uR"(<?b pi?><![CDATA[x]]></c><b id="-5">&lt;&#65;</b></root>)";

constexpr std::u16string_view words[] = {
    u"//",           u"..",        u"/",       u"@id",  u"a",     u"b",
    u"node()",       u"text()",    u" | ",     u"[@id", u"='x']", u"=2]",
    u">=1]",         u"[b",        u"[1]",     u"[2]",  u"[a]",   u"[last()]",
    u"root",         u"[.='x'",    u"[.<4",    u"p:a",  u"@",     u"[first()]",
    u"string()",     u"c",         u"[b='x']", u"*",    u"/a",    u"//b",
    u"[@k=\"a/b\"]", u"[@id='1']", u"[@k]",    u"]",    u"[",     u"/.",
    u"&slash;",      u"xmlns",     u"B",       u"#text"};

struct Outcome {
    std::vector<std::size_t> places;
    std::u16string error;
    NuXmlString xml;

    bool operator==(const Outcome& other) const {
        return places == other.places && error == other.error && xml == other.xml;
    }
};

/// Every node of a document, parents first.
SlowPaths::Nodes nodesOf(TNuDOMDocument& owner) {
    SlowPaths::Nodes nodes{&owner, owner.GetRootNode()};
    for (std::size_t index = 1; index < nodes.size(); ++index) {
        if (nodes[index]->get_nodeType() == host::ELEMENT_NODE) {
            auto& element = static_cast<TNuDOMElement&>(*nodes[index]);
            for (TNuDOMAttribute& attribute : element.Attributes()) {
                nodes.push_back(&attribute);
            }
            for (TNuDOMNode& child : element.ChildNodes()) {
                nodes.push_back(&child);
            }
        }
    }
    return nodes;
}

/// The context that a byte chooses: the document or one of its elements.
TNuDOMNode& contextOf(TNuDOMDocument& owner, std::uint8_t choice) {
    SlowPaths::Nodes nodes = nodesOf(owner);
    const auto isOther = [](const TNuDOMNode* node) {
        return node->get_nodeType() != host::ELEMENT_NODE &&
               node->get_nodeType() != host::DOCUMENT_NODE;
    };
    nodes.erase(std::remove_if(nodes.begin(), nodes.end(), isOther), nodes.end());
    return *nodes[choice % nodes.size()];
}

/// What `select` gives for the chosen context of a fresh document: places instead of nodes, so that
/// outcomes in several documents can be compared.
template <class Select> Outcome outcomeOf(std::uint8_t choice, Select&& select) {
    const NuRef<TNuDOMDocument> owner = NuCreateDOMDocument(document);
    Outcome outcome;
    SlowPaths::Nodes found;
    try {
        found = select(contextOf(*owner, choice));
    } catch (const host::EAssertionFailed&) {
        outcome.error = u"assertion"; // the text tells the place
    } catch (const host::Exception& error) {
        const std::string name = typeid(error).name();
        outcome.error.assign(name.begin(), name.end());
        outcome.error += u": " + error.Message();
    }
    const SlowPaths::Nodes all = nodesOf(*owner);
    for (const TNuDOMNode* node : found) {
        outcome.places.push_back(
            static_cast<std::size_t>(std::find(all.begin(), all.end(), node) - all.begin()));
    }
    outcome.xml = owner->get_xml();
    return outcome;
}

SlowPaths::Nodes oneOrNone(TNuDOMNode* node) {
    return node != nullptr ? SlowPaths::Nodes{node} : SlowPaths::Nodes();
}

SlowPaths::Nodes selectOurs(TNuDOMNode& context, const TNuDOMPath& path, unsigned call) {
    switch (call) {
    case 0: {
        const auto list = path.CreateNodeList(context);
        return {list->begin(), list->end()};
    }
    case 1: {
        const auto list = path.CreateElementList(context);
        const TNuDOMNodeList& nodes = *list;
        return {nodes.begin(), nodes.end()};
    }
    case 2:
        return oneOrNone(path.SelectSingleNode(context));
    default:
        return oneOrNone(path.SelectSingleElement(context));
    }
}

std::u16string pathOf(const std::uint8_t* data, std::size_t size) {
    std::u16string path;
    for (std::size_t index = 0; index < size; ++index) {
        if (data[index] < 0x80) {
            path += static_cast<char16_t>(data[index]);
        } else {
            path += words[data[index] % std::size(words)];
        }
    }
    return path;
}

void print(const char* side, const Outcome& outcome) {
    std::fprintf(stderr, "%s:", side);
    for (const std::size_t place : outcome.places) {
        std::fprintf(stderr, " %zu", place);
    }
    std::fprintf(stderr, " %s\n%s\n", host::Exception(outcome.error).what(),
                 host::Exception(outcome.xml).what());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr TNuDOMSelectOption all[] = {soCreate, soRaise, soCaseInsensitive, soIgnoreNamespace};
    if (size < 2) {
        return 0;
    }
    TNuDOMSelectOptions options;
    for (const TNuDOMSelectOption option : all) {
        options = (data[0] & option) != 0 ? options | option : options;
    }
    const unsigned call = data[0] >> 4 & 3U;
    const std::uint8_t choice = data[1];
    const std::u16string path = pathOf(data + 2, size - 2);
    // Brackets in brackets have a limit, which has its own test.
    if (std::count(path.begin(), path.end(), u'[') > 200) {
        return 0;
    }

    SlowPaths rules(options);
    Outcome expected;
    try {
        expected = outcomeOf(choice, [&](TNuDOMNode& context) {
            const bool elementsOnly = call % 2 == 1;
            return call < 2 ? rules.select(context, path, elementsOnly)
                            : oneOrNone(rules.single(context, path, elementsOnly));
        });
    } catch (const SlowPaths::TooMuch&) {
        return 0;
    }
    const Outcome actual = outcomeOf(choice, [&](TNuDOMNode& context) {
        return selectOurs(context, TNuDOMPath(path, options), call);
    });
    if (!(actual == expected)) {
        std::fprintf(stderr, "%s, options %u, call %u, context %u\n", host::Exception(path).what(),
                     options.bits(), call, choice);
        print("expected", expected);
        print("actual", actual);
        std::abort();
    }
    return 0;
}
