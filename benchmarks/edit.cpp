// Editing while a list shows what changes, and taking nodes out of many documents, beside a library
// whose loops go from node to node. Speeds count 10 bytes for each of the nodes.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#ifdef NUXML_HAS_PUGIXML
#include <pugixml.hpp>
#endif

#include "common/utf8.h"
#include "nuXmlDOM.h"

namespace {

constexpr std::size_t nodeCount = 100'000;
constexpr std::size_t documentCount = 2'000;

/// Makes a subject to work on, which the clock leaves out, and works on it.
template <class Side, void (*work)(Side&)> void measure(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        {
            Side side;
            state.ResumeTiming();
            work(side);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(nodeCount) * 10);
}

std::string wideText() {
    std::string text = "<r>";
    for (std::size_t index = 0; index < nodeCount; ++index) {
        text += "<x/>";
    }
    return text + "</r>";
}

// Ours: the list follows the tree.

struct Ours {
    NuRef<TNuDOMDocument> document = NuCreateDOMDocument(NuFromUtf8(wideText()));
    TNuDOMElement& root = *document->GetRootNode();
    TNuDOMNodeList& list = root.get_childNodes();
};

void emptyFromTheFront(Ours& ours) {
    while (ours.list.Count() != 0) {
        ours.root.removeChild(*ours.list.GetItem(0));
    }
}

void insertWhileWalking(Ours& ours) {
    for (std::size_t place = 0; place < ours.list.Count(); place += 2) {
        ours.root.InsertComment(u"", rdpBefore,
                                ours.list.GetItem(static_cast<std::ptrdiff_t>(place)));
    }
}

void turnRound(Ours& ours) {
    for (std::size_t count = ours.list.Count(); count != 0; --count) {
        ours.root.appendChild(*ours.list.GetItem(0));
    }
}

struct OurDocuments {
    NuRef<TNuDOMDocument> target = NuCreateDOMDocument(u"<r/>");
    std::vector<NuRef<TNuDOMDocument>> sources;

    OurDocuments() {
        for (std::size_t index = 0; index < documentCount; ++index) {
            sources.push_back(NuCreateDOMDocument(u"<x><y>text</y></x>"));
        }
    }
};

void takeFromEach(OurDocuments& ours) {
    for (const NuRef<TNuDOMDocument>& source : ours.sources) {
        ours.target->GetRootNode()->appendChild(*source->GetRootNode());
    }
}

#ifdef NUXML_HAS_PUGIXML

// The same where the next node is a pointer away, and where taking is copying.

struct Theirs {
    pugi::xml_document document;
    pugi::xml_node root;

    Theirs() {
        const std::string text = wideText();
        document.load_buffer(text.data(), text.size());
        root = document.document_element();
    }
};

void emptyFromTheFront(Theirs& theirs) {
    while (theirs.root.first_child()) {
        theirs.root.remove_child(theirs.root.first_child());
    }
}

void insertWhileWalking(Theirs& theirs) {
    for (pugi::xml_node node = theirs.root.first_child(); node; node = node.next_sibling()) {
        theirs.root.insert_child_before(pugi::node_comment, node);
    }
}

void turnRound(Theirs& theirs) {
    for (std::size_t count = nodeCount; count != 0; --count) {
        theirs.root.append_move(theirs.root.first_child());
    }
}

struct TheirDocuments {
    pugi::xml_document target;
    std::vector<pugi::xml_document> sources{documentCount};

    TheirDocuments() {
        target.append_child("r");
        for (pugi::xml_document& source : sources) {
            source.load_string("<x><y>text</y></x>");
        }
    }
};

void takeFromEach(TheirDocuments& theirs) {
    for (pugi::xml_document& source : theirs.sources) {
        theirs.target.document_element().append_copy(source.document_element());
        source.remove_child(source.document_element());
    }
}

#endif

void add(const char* name, void (*function)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMillisecond)->Iterations(3);
}

void addAll() {
    add("edit/empty-front/nuxml", measure<Ours, emptyFromTheFront>);
    add("edit/insert-walking/nuxml", measure<Ours, insertWhileWalking>);
    add("edit/turn-round/nuxml", measure<Ours, turnRound>);
    add("edit/take-from-documents/nuxml", measure<OurDocuments, takeFromEach>);
#ifdef NUXML_HAS_PUGIXML
    add("edit/empty-front/pugixml", measure<Theirs, emptyFromTheFront>);
    add("edit/insert-walking/pugixml", measure<Theirs, insertWhileWalking>);
    add("edit/turn-round/pugixml", measure<Theirs, turnRound>);
    add("edit/take-from-documents/pugixml", measure<TheirDocuments, takeFromEach>);
#endif
}

} // namespace

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 2;
    }
    addAll();
    benchmark::RunSpecifiedBenchmarks();
}
