// What writing and reading objects takes beside time: allocations for each object, and how far the
// memory of the process grows, ours beside the other libraries.

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>

#include "heap.h"
#include "objects/sides.h"

namespace {

using bench::Subject;

/// A line of /proc/self/status, in KiB.
long statusKiB(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ':')) {
            return std::atol(line.c_str() + name.size() + 1);
        }
    }
    return 0;
}

/// How far a process that does the work grows at most, in MiB. A process of its own, so that no
/// work finds the memory of another.
template <class Prepare, class Work> double growth(Prepare prepare, Work work) {
    int channel[2];
    if (pipe(channel) != 0) {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        prepare();
        std::ofstream("/proc/self/clear_refs") << "5"; // the peak begins anew
        const long before = statusKiB("VmRSS");
        work();
        const long grown = statusKiB("VmHWM") - before;
        const bool isTold = write(channel[1], &grown, sizeof grown) == sizeof grown;
        _exit(isTold ? 0 : 1);
    }
    close(channel[1]);
    long grown = 0;
    const bool isTold = read(channel[0], &grown, sizeof grown) == sizeof grown;
    close(channel[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!isTold) {
        throw std::runtime_error("the process that measures failed");
    }
    return static_cast<double>(grown) / 1024;
}

/// Allocations for each further object.
struct Allocations {
    double writing = 0;
    double reading = 0;
};

Allocations allocationsOf(const bench::ObjectLibrary& library) {
    constexpr std::size_t few = 10'000;
    constexpr std::size_t many = 30'000;
    const auto count = [&](std::size_t objects, auto work) {
        const auto subject = library.ofRecords(bench::makeRecords(objects));
        subject->write();
        subject->read();
        const std::size_t before = bench::heap.allocations;
        work(*subject);
        return static_cast<double>(bench::heap.allocations - before);
    };
    const auto each = [&](auto work) {
        return (count(many, work) - count(few, work)) / static_cast<double>(many - few);
    };
    return {each([](Subject& subject) { subject.write(); }),
            each([](Subject& subject) { subject.read(); })};
}

void report(const bench::ObjectLibrary& library) {
    const Allocations allocations = allocationsOf(library);
    std::printf("%-20s %8.2f %8.2f", library.name, allocations.writing, allocations.reading);
    const auto records = library.ofRecords(bench::makeRecords(100'000));
    const auto text = library.ofText(bench::makeProse(10'000'000));
    for (Subject* const subject : {records.get(), text.get()}) {
        std::printf(" %8.1f", growth([] {}, [&] { subject->write(); }));
        std::printf(" %8.1f", growth([&] { subject->write(); }, [&] { subject->read(); }));
    }
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

int main() {
    std::printf("%-20s %17s %17s %17s\n", "", "allocations", "MiB for 100,000", "MiB for one text");
    std::printf("%-20s %17s %17s %17s\n", "", "for each object", "objects", "of 10 MB");
    std::printf("%-20s %8s %8s %8s %8s %8s %8s\n", "", "write", "read", "write", "read", "write",
                "read");
    try {
        report(bench::nuxmlOneByOneSide);
        for (const bench::ObjectLibrary& library : bench::objectLibraries()) {
            report(library);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
