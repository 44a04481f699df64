// Replacing special characters by references and back, on real text, beside a plain copy.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "corpus.h"
#include "peers/peer.h"

namespace bench {

namespace {

constexpr std::size_t textSize = 4'000'000;

/// One text to convert; a call converts one piece of it.
struct Text {
    std::string name;
    Pieces pieces;
};

Pieces joined(const Pieces& pieces) {
    std::u16string whole;
    for (const std::u16string& piece : pieces) {
        whole += piece;
    }
    return {whole};
}

Pieces withoutSpecials(Pieces pieces) {
    for (std::u16string& piece : pieces) {
        std::erase_if(piece, [](char16_t unit) {
            return std::u16string_view(u"&<>\"'").find(unit) != std::u16string_view::npos;
        });
    }
    return pieces;
}

/// Real text as it stands in the documents, by runs (as a reader's handler would convert it) and
/// in one piece; and the same with nothing to change.
std::vector<Text> escapedTexts() {
    std::vector<Text> texts;
    for (const Input& input : inputs()) {
        if (input.name == "introspection" || input.name == "manual" || input.name == "locales") {
            const Pieces runs = textRuns(input.text, textSize);
            texts.push_back({input.name + "-runs", runs});
            texts.push_back({input.name + "-whole", joined(runs)});
            if (input.name == "manual") {
                texts.push_back({"unchanged-runs", withoutSpecials(runs)});
                texts.push_back({"unchanged-whole", joined(withoutSpecials(runs))});
            }
        }
    }
    return texts;
}

/// The five predefined references replaced; others stay, which is good enough to escape again.
std::vector<Text> plainTexts(std::vector<Text> texts) {
    static constexpr std::pair<std::u16string_view, char16_t> references[] = {
        {u"&lt;", u'<'}, {u"&gt;", u'>'}, {u"&quot;", u'"'}, {u"&apos;", u'\''}, {u"&amp;", u'&'}};
    for (Text& text : texts) {
        for (std::u16string& piece : text.pieces) {
            std::u16string plain;
            for (std::size_t index = 0; index < piece.size();) {
                const auto* const match = std::find_if(
                    std::begin(references), std::end(references), [&](const auto& reference) {
                        return piece.compare(index, reference.first.size(), reference.first) == 0;
                    });
                const bool isReference = match != std::end(references);
                plain.push_back(isReference ? match->second : piece[index]);
                index += isReference ? match->first.size() : 1;
            }
            piece = plain;
        }
    }
    return texts;
}

void convert(benchmark::State& state, const Prepare& prepare, const Pieces& pieces) {
    try {
        const Conversion conversion = prepare(pieces);
        for ([[maybe_unused]] auto _ : state) {
            std::size_t length = conversion();
            benchmark::DoNotOptimize(length);
        }
        std::size_t units = 0;
        for (const std::u16string& piece : pieces) {
            units += piece.size();
        }
        state.SetBytesProcessed(state.iterations() *
                                static_cast<std::int64_t>(units * sizeof(char16_t)));
    } catch (const std::exception& error) {
        state.SkipWithError(error.what());
    }
}

void registerAll(const std::string& work, const std::vector<Text>& texts,
                 Prepare Converter::*prepare) {
    for (const Text& text : texts) {
        for (const Converter& converter : converters()) {
            const std::string name = work + "/" + text.name + "/" + converter.name;
            benchmark::RegisterBenchmark(name.c_str(), [&text, prepareOne = converter.*prepare](
                                                           benchmark::State& state) {
                convert(state, prepareOne, text.pieces);
            })->Unit(benchmark::kMillisecond);
        }
    }
}

Conversion copyEach(const Pieces& pieces) {
    return [&pieces] {
        std::size_t length = 0;
        for (const std::u16string& piece : pieces) {
            std::u16string copy = piece;
            benchmark::DoNotOptimize(copy.data());
            length += copy.size();
        }
        return length;
    };
}

const bool copyRegistered = addConverter({"copy", copyEach, copyEach});

} // namespace

} // namespace bench

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 2;
    }
    try {
        static const std::vector<bench::Text> escaped = bench::escapedTexts();
        static const std::vector<bench::Text> plain = bench::plainTexts(escaped);
        bench::registerAll("escape", plain, &bench::Converter::prepareEscape);
        bench::registerAll("unescape", escaped, &bench::Converter::prepareUnescape);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
}
