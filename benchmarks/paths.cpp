// Selecting by path in documents of 100,000 and 1,000,000 elements, ours beside the other libraries
// that select by path. Every side has read its path before.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef NUXML_HAS_PUGIXML
#include <pugixml.hpp>
#endif
#ifdef NUXML_HAS_LIBXML2
#include <libxml/parser.h>
#include <libxml/xpath.h>
#endif

#include "common/utf8.h"
#include "nuXmlDOM.h"

namespace {

/// What is selected, from the document element.
struct Query {
    const char* name;
    std::string path;
    /// The same in XPath, where positions count for each parent, and "//" starts at the document.
    std::string xpath;
    std::size_t found;
};

/// Groups of a hundred, each `<x id="…"><y>…</y></x>`.
struct Subject {
    const char* name;
    std::size_t elements;
    std::string text;
    std::vector<Query> queries;
};

std::string documentOf(std::size_t records) {
    std::string text = "<r>";
    for (std::size_t index = 0; index < records; ++index) {
        const std::string number = std::to_string(index);
        text += index % 100 == 0 ? "<g>" : "";
        text += "<x id=\"n" + number + "\"><y>v" + number + "</y></x>";
        text += index % 100 == 99 ? "</g>" : "";
    }
    return text + "</r>";
}

Subject subjectOf(const char* name, std::size_t elements) {
    const std::size_t records = elements / 2;
    const std::string wanted = std::to_string(records * 3 / 4);
    return {name,
            elements,
            documentOf(records),
            {{"all", "//*", ".//*", elements + records / 100},
             {"name", "//x", "//x", records},
             {"steps", "g/x/y", "g/x/y", records},
             {"attribute", "//x[@id='n" + wanted + "']", "//x[@id='n" + wanted + "']", 1},
             {"child", "//x[y='v" + wanted + "']", "//x[y='v" + wanted + "']", 1},
             {"last", "//x[last()]", "(//x)[last()]", 1}}};
}

/// A library with a document loaded: gives the number of nodes that a query selects.
using Select = std::function<std::size_t()>;
using Prepare = std::function<Select(const Query& query)>;

struct Side {
    const char* name;
    Prepare (*load)(const std::string& text);
};

Prepare loadOurs(const std::string& text) {
    return [document = NuCreateDOMDocument(NuFromUtf8(text))](const Query& query) {
        return [document, path = TNuDOMPath(NuFromUtf8(query.path))] {
            return path.CreateNodeList(*document->get_documentElement())->Count();
        };
    };
}

#ifdef NUXML_HAS_PUGIXML
Prepare loadPugixml(const std::string& text) {
    const auto document = std::make_shared<pugi::xml_document>();
    document->load_buffer(text.data(), text.size());
    return [document](const Query& query) {
        const auto xpath = std::make_shared<pugi::xpath_query>(query.xpath.c_str());
        return [document, xpath] {
            return xpath->evaluate_node_set(document->document_element()).size();
        };
    };
}
#endif

#ifdef NUXML_HAS_LIBXML2
Prepare loadLibxml2(const std::string& text) {
    const std::shared_ptr<xmlDoc> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), "", nullptr, XML_PARSE_HUGE),
        xmlFreeDoc);
    return [document](const Query& query) {
        const std::shared_ptr<xmlXPathContext> context(xmlXPathNewContext(document.get()),
                                                       xmlXPathFreeContext);
        context->node = xmlDocGetRootElement(document.get());
        const std::shared_ptr<xmlXPathCompExpr> xpath(
            xmlXPathCompile(reinterpret_cast<const xmlChar*>(query.xpath.c_str())),
            xmlXPathFreeCompExpr);
        return [document, context, xpath] {
            xmlXPathObject* const result = xmlXPathCompiledEval(xpath.get(), context.get());
            const auto count = static_cast<std::size_t>(result->nodesetval->nodeNr);
            xmlXPathFreeObject(result);
            return count;
        };
    };
}
#endif

constexpr Side sides[] = {
    {"nuxml", loadOurs},
#ifdef NUXML_HAS_PUGIXML
    {"pugixml", loadPugixml},
#endif
#ifdef NUXML_HAS_LIBXML2
    {"libxml2", loadLibxml2},
#endif
};

void measure(benchmark::State& state, const Select& select, const Subject& subject,
             const Query& query) {
    for ([[maybe_unused]] auto _ : state) {
        if (select() != query.found) {
            state.SkipWithError("selects something else");
            return;
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(subject.text.size()));
}

void addAll(const Subject& subject) {
    for (const Side& side : sides) {
        const Prepare prepare = side.load(subject.text);
        for (const Query& query : subject.queries) {
            const std::string name =
                std::string("select/") + query.name + '-' + subject.name + '/' + side.name;
            benchmark::RegisterBenchmark(name.c_str(), [select = prepare(query), &subject,
                                                        &query](benchmark::State& state) {
                measure(state, select, subject, query);
            })->Unit(benchmark::kMillisecond);
        }
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 2;
    }
    const Subject subjects[] = {subjectOf("100k", 100'000), subjectOf("1M", 1'000'000)};
    for (const Subject& subject : subjects) {
        addAll(subject);
    }
    benchmark::RunSpecifiedBenchmarks();
}
