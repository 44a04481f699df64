// Whole parses of every prepared input, ours beside the other libraries. Every handler sums the
// lengths of all names, values and text.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <map>
#include <string>

#include "corpus.h"
#include "peers/peer.h"

namespace bench {

namespace {

/// What everybody must have seen in one input, counted by the first reader that examines.
const Tally& expectedTally(const Input& input) {
    static std::map<std::string, Tally> known;
    const auto found = known.find(input.name);
    if (found != known.end()) {
        return found->second;
    }
    for (const Reader& reader : readers()) {
        // Ours is what is judged, so it is asked only if there is nobody else.
        if (reader.examine && !reader.name.starts_with(oursName)) {
            return known[input.name] = reader.examine(input.text);
        }
    }
    return known[input.name] = readers().front().examine(input.text);
}

/// Empty if the reader sees in the input what all others see.
std::string disagreement(const Reader& reader, const Input& input) {
    static std::map<std::string, std::string> known;
    const auto [entry, isNew] = known.try_emplace(reader.name + '/' + input.name);
    if (!isNew) {
        return entry->second;
    }
    const Tally& expected = expectedTally(input);
    Tally seen = reader.examine ? reader.examine(input.text) : reader.prepare(input.text)();
    if (!reader.examine) {
        // The plain parse shows comparable elements only.
        seen = {seen.elements, expected.attributes, expected.units};
    }
    if (seen != expected) {
        const auto text = [](const Tally& tally) {
            return std::to_string(tally.elements) + " elements, " +
                   std::to_string(tally.attributes) + " attributes, " +
                   std::to_string(tally.units) + " units of text";
        };
        entry->second = "sees " + text(seen) + " instead of " + text(expected);
        std::fprintf(stderr, "%s in %s: %s\n", reader.name.c_str(), input.name.c_str(),
                     entry->second.c_str());
    }
    return entry->second;
}

void read(benchmark::State& state, const Reader& reader, const Input& input) {
    try {
        const std::string difference = disagreement(reader, input);
        if (!difference.empty()) {
            state.SkipWithError(difference.c_str());
            return;
        }
        const Run run = reader.prepare(input.text);
        for ([[maybe_unused]] auto _ : state) {
            Tally tally = run();
            benchmark::DoNotOptimize(tally);
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(input.text.size()));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s in %s: %s\n", reader.name.c_str(), input.name.c_str(),
                     error.what());
        state.SkipWithError(error.what());
    }
}

} // namespace

} // namespace bench

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 2;
    }
    try {
        for (const bench::Input& input : bench::inputs()) {
            for (const bench::Reader& reader : bench::readers()) {
                const std::string name = "read/" + input.name + "/" + reader.name;
                benchmark::RegisterBenchmark(name.c_str(), [reader,
                                                            &input](benchmark::State& state) {
                    bench::read(state, reader, input);
                })->Unit(benchmark::kMillisecond);
            }
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
}
