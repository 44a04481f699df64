// Document trees of every prepared input, ours beside the other libraries: loading them, freeing
// them, writing them plain and formatted.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <string>

#include "corpus.h"
#include "trees/tree.h"

namespace bench {

namespace {

using Work = void (*)(benchmark::State&, const TreeLibrary&, const Input&);

void load(benchmark::State& state, const TreeLibrary& library, const Input& input) {
    for ([[maybe_unused]] auto _ : state) {
        std::unique_ptr<Tree> tree = library.load(input.text);
        benchmark::DoNotOptimize(tree);
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
}

void destroy(benchmark::State& state, const TreeLibrary& library, const Input& input) {
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<Tree> tree = library.load(input.text);
        state.ResumeTiming();
        tree.reset();
    }
}

template <bool formatted>
void write(benchmark::State& state, const TreeLibrary& library, const Input& input) {
    const std::unique_ptr<Tree> tree = library.load(input.text);
    for ([[maybe_unused]] auto _ : state) {
        std::size_t size = tree->write(formatted);
        benchmark::DoNotOptimize(size);
    }
}

void add(const char* name, Work work, const TreeLibrary& library, const Input& input,
         int iterations) {
    const std::string fullName = std::string(name) + '/' + input.name + '/' + library.name;
    auto* const added = benchmark::RegisterBenchmark(
        fullName.c_str(), [work, library, &input](benchmark::State& state) {
            try {
                work(state, library, input);
                state.SetBytesProcessed(state.iterations() *
                                        static_cast<std::int64_t>(input.text.size()));
            } catch (const std::exception& error) {
                state.SkipWithError(error.what());
            }
        });
    added->Unit(benchmark::kMillisecond);
    if (iterations > 0) {
        added->Iterations(iterations);
    }
}

void addAll(const TreeLibrary& library, const Input& input) {
    // What is freed has to be loaded before, which takes much longer.
    constexpr int fewIterations = 3;
    add("load", load, library, input, fewIterations);
    add("destroy", destroy, library, input, fewIterations);
    add("write", write<false>, library, input, 0);
    add("format", write<true>, library, input, 0);
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
            for (const bench::TreeLibrary& library : bench::treeLibraries()) {
                if (library.canLoad(input.name)) {
                    bench::addAll(library, input);
                }
            }
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
}
