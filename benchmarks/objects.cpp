// Objects to XML and back, ours beside the other libraries: 100,000 objects of eight members, and
// one string of 10 MB. All sides write UTF-8 into memory and read it from there into new objects.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <string>

#include "objects/side.h"

namespace {

void measureWriting(benchmark::State& state, bench::Subject& subject) {
    std::size_t size = 0;
    for ([[maybe_unused]] auto _ : state) {
        size = subject.write();
        benchmark::DoNotOptimize(size);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

void measureReading(benchmark::State& state, bench::Subject& subject) {
    const std::size_t size = subject.write();
    for ([[maybe_unused]] auto _ : state) {
        subject.read();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
    if (!subject.isSame()) {
        state.SkipWithError("reads something else than it wrote");
    }
}

void add(const char* input, const bench::ObjectLibrary& library, std::int64_t objects,
         std::unique_ptr<bench::Subject> made) {
    const std::shared_ptr<bench::Subject> subject = std::move(made);
    struct Work {
        const char* name;
        void (*measure)(benchmark::State&, bench::Subject&);
    };
    for (const Work work : {Work{"save", measureWriting}, Work{"restore", measureReading}}) {
        const std::string name = std::string(work.name) + '/' + input + '/' + library.name;
        benchmark::RegisterBenchmark(name.c_str(), [subject, objects,
                                                    work](benchmark::State& state) {
            try {
                work.measure(state, *subject);
                state.SetItemsProcessed(state.iterations() * objects);
            } catch (const std::exception& error) {
                state.SkipWithError(error.what());
            }
        })->Unit(benchmark::kMillisecond);
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 2;
    }
    constexpr std::size_t objects = 100'000;
    constexpr std::size_t textBytes = 10'000'000;
    const std::vector<bench::Record> records = bench::makeRecords(objects);
    const std::string text = bench::makeProse(textBytes);
    for (const bench::ObjectLibrary& library : bench::objectLibraries()) {
        add("objects", library, objects, library.ofRecords(records));
        add("text10MB", library, 1, library.ofText(text));
    }
    benchmark::RunSpecifiedBenchmarks();
}
