// Document trees of every prepared input, ours beside the other libraries: loading them, in memory
// that was used before and in that of a process that never loaded one, freeing them, writing them
// plain and formatted.

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "corpus.h"
#include "trees/tree.h"

namespace bench {

namespace {

using Work = void (*)(benchmark::State&, const TreeLibrary&, const Input&);

using Trees = std::vector<std::unique_ptr<Tree>>;

/// How often the work on an input is done before the clock is stopped: a small document takes less
/// time than that.
std::size_t batchOf(const Input& input) {
    constexpr std::size_t enough = 200'000;
    return std::max<std::size_t>(1, enough / input.text.size());
}

void loadInto(Trees& trees, const TreeLibrary& library, const Input& input) {
    for (std::size_t left = batchOf(input); left > 0; --left) {
        trees.push_back(library.load(input.text));
    }
}

/// The C library puts off tidying up after what was freed until somebody asks for a large block,
/// and it may be another library's turn by then.
void settleHeap() {
    constexpr std::size_t large = 100'000;
    void* block = std::malloc(large);
    benchmark::DoNotOptimize(block);
    std::free(block);
}

void countBytes(benchmark::State& state, const Input& input, std::size_t documents) {
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(documents * input.text.size()));
}

void load(benchmark::State& state, const TreeLibrary& library, const Input& input) {
    Trees trees;
    trees.reserve(batchOf(input));
    settleHeap();
    for ([[maybe_unused]] auto _ : state) {
        loadInto(trees, library, input);
        state.PauseTiming();
        trees.clear();
        settleHeap();
        state.ResumeTiming();
    }
    countBytes(state, input, batchOf(input));
}

void destroy(benchmark::State& state, const TreeLibrary& library, const Input& input) {
    Trees trees;
    trees.reserve(batchOf(input));
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        loadInto(trees, library, input);
        settleHeap();
        state.ResumeTiming();
        trees.clear();
    }
    countBytes(state, input, batchOf(input));
}

double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// What `work` takes in a process of its own.
template <class Work> double secondsInChild(Work&& work) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        const double start = processorSeconds();
        double taken = std::numeric_limits<double>::quiet_NaN();
        try {
            work();
            taken = processorSeconds() - start;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
        }
        _exit(write(ends[1], &taken, sizeof taken) == sizeof taken ? 0 : 1);
    }
    close(ends[1]);
    double taken = 0;
    const bool isTold = child > 0 && read(ends[0], &taken, sizeof taken) == sizeof taken;
    close(ends[0]);
    if (child > 0) {
        waitpid(child, nullptr, 0);
    }
    if (!isTold || !(taken >= 0)) {
        throw std::runtime_error("the process that loads has failed");
    }
    return taken;
}

/// The first load of a process: all memory is fresh.
void loadFirst(benchmark::State& state, const TreeLibrary& library, const Input& input) {
    // What this process has freed would be used again by the next one.
    malloc_trim(0);
    for ([[maybe_unused]] auto _ : state) {
        state.SetIterationTime(secondsInChild([&] {
            // The tree stays: its process ends.
            benchmark::DoNotOptimize(library.load(input.text).release());
        }));
    }
    countBytes(state, input, 1);
}

template <bool formatted>
void save(benchmark::State& state, const TreeLibrary& library, const Input& input) {
    const std::unique_ptr<Tree> tree = library.load(input.text);
    for ([[maybe_unused]] auto _ : state) {
        std::size_t size = tree->write(formatted);
        benchmark::DoNotOptimize(size);
    }
    countBytes(state, input, 1);
}

void add(const char* name, Work work, const TreeLibrary& library, const Input& input,
         int iterations) {
    const std::string fullName = std::string(name) + '/' + input.name + '/' + library.name;
    auto* const added = benchmark::RegisterBenchmark(
        fullName.c_str(), [work, library, &input](benchmark::State& state) {
            try {
                work(state, library, input);
            } catch (const std::exception& error) {
                state.SkipWithError(error.what());
            }
        });
    added->Unit(benchmark::kMillisecond);
    if (iterations > 0) {
        added->Iterations(iterations);
    }
    if (work == loadFirst) {
        added->UseManualTime();
    }
}

void addAll(const TreeLibrary& library, const Input& input) {
    // What is freed has to be loaded before, which takes much longer.
    constexpr int fewIterations = 3;
    add("load", load, library, input, fewIterations);
    add("loadFirst", loadFirst, library, input, fewIterations);
    add("destroy", destroy, library, input, fewIterations);
    add("write", save<false>, library, input, 0);
    add("format", save<true>, library, input, 0);
}

} // namespace

} // namespace bench

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 2;
    }
    // Memory stays with the process, so that a load finds what the one before has used.
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_MMAP_THRESHOLD, std::numeric_limits<int>::max());
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
