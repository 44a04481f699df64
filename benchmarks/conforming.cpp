// The conforming stage over documents of one shape each: those in which it has nothing to change,
// and those in which it changes every tag.
//
//   conform  reader and stage, beside the reader by itself, which gets what the stage made of the
//            document, and expat
//   check    the stage alone, told to keep nothing, beside expat without handlers
//   rewrite  the stage alone as a stream, beside a copy of its output

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime/memoryStream.h"
#include "nuXmlParser.h"
#include "peers/peer.h"

namespace bench {

namespace {

constexpr std::size_t documentSize = 4'000'000;

/// Numbers that look drawn and are the same in every run.
class Draw {
public:
    std::size_t operator()(std::size_t below) noexcept {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::size_t>(state_ >> 33) % below;
    }

private:
    std::uint64_t state_ = 20;
};

std::vector<std::string> drawWords(std::size_t count) {
    static constexpr std::string_view syllables[] = {"ba", "cor", "di",  "fen", "gu", "ha",
                                                     "ke", "lim", "mo",  "nar", "o",  "pis",
                                                     "ra", "su",  "tel", "vi",  "wo", "za"};
    Draw draw;
    std::vector<std::string> words(count);
    for (std::string& word : words) {
        for (std::size_t left = 1 + draw(4); left > 0; --left) {
            word += syllables[draw(std::size(syllables))];
        }
    }
    return words;
}

const std::string& word(Draw& draw) {
    static const std::vector<std::string> words = drawWords(600);
    return words[draw(words.size())];
}

struct Shape {
    const char* name;
    const char* start; ///< up to the start tag of the root element
    std::function<std::string(Draw& draw)> piece;
};

std::string record(Draw& draw) {
    return "  <item id=\"" + std::to_string(draw(100'000)) +
           "\" kind=\"book\">\n    <title>Caf\xC3\xA9 &amp; tea, " + word(draw) +
           "</title>\n    <price currency=\"EUR\">" + std::to_string(draw(1000)) +
           "</price>\n    <stock/>\n  </item>\n";
}

std::string prose(Draw& draw) {
    std::string text = "<p>";
    for (std::size_t left = 80 + draw(320); left > 0; --left) {
        text += word(draw) + ' ';
    }
    return text + "<em>" + word(draw) + "</em>.</p>\n";
}

std::string deep(Draw& draw) {
    std::string start;
    std::string end;
    for (std::size_t left = 120; left > 0; --left) {
        const std::string& name = word(draw);
        start += '<' + name + '>';
        end = "</" + name + '>' + end;
    }
    return start + 'x' + end + '\n';
}

std::string wide(Draw& draw) {
    std::string tag = "<row";
    for (std::size_t number = 0; number < 40; ++number) {
        tag += " a" + std::to_string(number) + '-' + std::to_string(draw(6)) + "=\"" + word(draw) +
               '"';
    }
    return tag + "/>\n";
}

std::string prefixed(Draw& draw) {
    const std::string& name = word(draw);
    return "<s:envelope xmlns:s=\"http://example.org/envelope\"><s:head><m:id "
           "xmlns:m=\"http://example.org/message\">" +
           std::to_string(draw(100'000)) +
           "</m:id></s:head><s:body><d:set xmlns:d=\"http://example.org/data\"><d:" + name +
           " d:type=\"string\" s:style=\"literal\">" + word(draw) + "</d:" + name +
           "></d:set></s:body></s:envelope>\n";
}

std::string drawing(Draw& draw) {
    return "<svg:path d=\"M " + std::to_string(draw(1000)) + ' ' + std::to_string(draw(1000)) +
           "\" ink:label=\"" + word(draw) + "\" style=\"fill:none\"/>\n";
}

std::string declared(Draw& draw) {
    return "<item id=\"n" + std::to_string(draw(100'000)) + "\" kind=\"book\" lang=\"en\">" +
           word(draw) + "</item>\n";
}

std::string brokenTag(Draw& draw) {
    return "<rect\n    x=\"" + std::to_string(draw(1000)) + "\"\n    y=\"" +
           std::to_string(draw(1000)) + "\"\n    id=\"" + word(draw) + "\" />\n";
}

std::string apostrophes(Draw& draw) {
    return "<item id='" + std::to_string(draw(100'000)) + "' kind='book'><title>" + word(draw) +
           "</title></item>\n";
}

std::string carriageReturns(Draw& draw) {
    std::string text;
    for (const char c : record(draw)) {
        text += c == '\n' ? "\r\n" : std::string(1, c);
    }
    return text;
}

const std::vector<Shape> unchanged = {
    {"records", "<corpus>\n", record},
    {"prose", "<corpus>\n", prose},
    {"dense", "<corpus>\n", [](Draw&) { return std::string("<i a=\"1\" b=\"2\"/>"); }},
    {"deep", "<corpus>\n", deep},
    {"wide", "<corpus>\n", wide},
    {"prefixed", "<corpus>\n", prefixed},
    {"drawing",
     "<corpus xmlns:svg=\"http://example.org/svg\" xmlns:ink=\"http://example.org/i\">\n", drawing},
    {"declared",
     "<!DOCTYPE corpus [<!ATTLIST item id ID #REQUIRED kind CDATA #IMPLIED lang NMTOKEN 'en'>]>\n"
     "<corpus>\n",
     declared},
};
const std::vector<Shape> changed = {
    {"defaults", "<!DOCTYPE corpus [<!ATTLIST item unit CDATA 'piece'>]>\n<corpus>\n", declared},
    {"brokenTags", "<corpus>\n", brokenTag},
    {"apostrophes", "<corpus>\n", apostrophes},
    {"spacedEnds", "<corpus>\n",
     [](Draw& draw) { return "<item ><title >" + word(draw) + "</title ></item >\n"; }},
    {"crlf", "<corpus>\n", carriageReturns},
};

std::string documentOf(const Shape& shape) {
    Draw draw;
    std::string text = shape.start;
    while (text.size() < documentSize) {
        text += shape.piece(draw);
    }
    return text + "</corpus>\n";
}

TNuConformingOptions asForReader() {
    TNuConformingOptions options;
    options.whiteSpace = cwReader;
    return options;
}

/// What the stage makes of a document.
std::string rewritten(std::string_view document) {
    host::TMemoryViewStream source(document);
    TNuConformingStream stage(source, asForReader());
    std::string text;
    std::string block(64 * 1024, '\0');
    while (const std::size_t got = stage.Read(block.data(), block.size())) {
        text.append(block, 0, got);
    }
    return text;
}

std::size_t check(std::string_view document) {
    host::TMemoryViewStream source(document);
    return static_cast<std::size_t>(NuCheckXML(source).lineEnd);
}

void add(const std::string& name, std::size_t size, std::function<std::size_t()> work) {
    benchmark::RegisterBenchmark(name.c_str(), [size,
                                                work = std::move(work)](benchmark::State& state) {
        try {
            for ([[maybe_unused]] auto _ : state) {
                std::size_t result = work();
                benchmark::DoNotOptimize(result);
            }
            state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
        } catch (const std::exception& error) {
            state.SkipWithError(error.what());
        }
    })->Unit(benchmark::kMillisecond);
}

void addReaders(const std::string& subject, const std::string& document,
                const std::string& forReader) {
    for (const Reader& reader : readers()) {
        const bool isStage = reader.name == std::string(oursName) + "+stage";
        const bool isAlone = reader.name == oursName;
        if (isStage || isAlone || reader.name == "expat") {
            const std::string side = isStage ? oursName : isAlone ? "nuxml+alone" : reader.name;
            add("conform/" + subject + '/' + side, document.size(),
                [run = reader.prepare(isAlone ? forReader : document)] { return run().units; });
        }
    }
}

void addShape(const Shape& shape, bool isChanged) {
    // Documents live as long as the program.
    static std::vector<std::unique_ptr<std::string>> texts;
    const std::string& document =
        *texts.emplace_back(std::make_unique<std::string>(documentOf(shape)));
    const std::string& output =
        *texts.emplace_back(std::make_unique<std::string>(rewritten(document)));
    const std::string subject = (isChanged ? "changed:" : "") + std::string(shape.name);
    addReaders(subject, document, output);
    add("check/" + subject + "/nuxml", document.size(), [&document] { return check(document); });
    for (const Reader& reader : readers()) {
        if (reader.name == "expat" && reader.check) {
            add("check/" + subject + "/expat", document.size(),
                [&document, run = reader.check] { return run(document); });
        }
    }
    add("rewrite/" + subject + "/nuxml", document.size(),
        [&document] { return rewritten(document).size(); });
    add("rewrite/" + subject + "/copy", document.size(),
        [&output] { return std::string(output).size(); });
}

} // namespace

} // namespace bench

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 2;
    }
    try {
        for (const bench::Shape& shape : bench::unchanged) {
            bench::addShape(shape, false);
        }
        for (const bench::Shape& shape : bench::changed) {
            bench::addShape(shape, true);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
}
