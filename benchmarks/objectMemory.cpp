// What writing and reading objects takes beside time: allocations for each object, and how far the
// memory of the process grows, ours beside the other libraries; and ours alone where there are many
// objects, long texts and deep nesting.

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>

#include "heap.h"
#include "host/runtime/memoryStream.h"
#include "nuObj2Xml.h"
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

// Ours alone

class TEntry : public host::Published<TEntry> {
public:
    std::int32_t Number = 0;
    std::u16string Text;
    std::unique_ptr<TEntry> Inner;

    static constexpr auto published =
        host::publish<TEntry>(u"TEntry", host::prop<&TEntry::Number>(), host::prop<&TEntry::Text>(),
                              host::prop<&TEntry::Inner>());
};

/// A document that is made while it is read: so many times the same piece.
class Repeated final : public host::TStream {
public:
    Repeated(std::string_view start, std::string_view piece, std::size_t count,
             std::string_view end)
        : start_(start), piece_(piece), end_(end),
          behindPieces_(start.size() + count * piece.size()) {}

    std::size_t Read(void* buffer, std::size_t count) override {
        auto* const target = static_cast<char*>(buffer);
        std::size_t got = 0;
        while (got < count && position_ < size()) {
            const std::size_t length = here().copy(target + got, count - got);
            got += length;
            position_ += length;
        }
        return got;
    }
    std::size_t Write(const void* /*buffer*/, std::size_t count) override { return count; }
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override {
        const std::size_t from = origin == host::SeekOrigin::Beginning ? 0
                                 : origin == host::SeekOrigin::Current ? position_
                                                                       : size();
        position_ = from + static_cast<std::size_t>(offset);
        return static_cast<std::int64_t>(position_);
    }

private:
    [[nodiscard]] std::size_t size() const { return behindPieces_ + end_.size(); }
    [[nodiscard]] std::string_view here() const {
        if (position_ < start_.size()) {
            return start_.substr(position_);
        }
        return position_ < behindPieces_
                   ? piece_.substr((position_ - start_.size()) % piece_.size())
                   : end_.substr(position_ - behindPieces_);
    }

    std::string_view start_;
    std::string_view piece_;
    std::string_view end_;
    std::size_t behindPieces_;
    std::size_t position_ = 0;
};

void show(const char* work, double grown) { std::printf("%-44s %8.1f\n", work, grown); }

void reportStreams() {
    constexpr std::size_t objects = 2'000'000;
    constexpr std::string_view object =
        "<Entry type=\"TEntry\"><Number type=\"int\">7</Number><Text>a text</Text></Entry>";
    show("2,000,000 objects, written", growth([] {},
                                              [] {
                                                  Repeated target({}, {}, 0, {});
                                                  nu::ObjectWriter writer(target, u"list");
                                                  TEntry entry;
                                                  entry.Text = u"a text";
                                                  for (std::size_t count = 0; count < objects;
                                                       ++count) {
                                                      writer.Write(entry);
                                                  }
                                                  writer.Close();
                                              }));
    show("2,000,000 objects, read",
         growth([] {},
                [] {
                    Repeated source("<list>", object, objects, "</list>");
                    std::size_t count = 0;
                    nu::ReadObjects<TEntry>(source, u"list/Entry",
                                            [&count](std::unique_ptr<TEntry>) { ++count; });
                    if (count != objects) {
                        throw std::runtime_error("reads another number of objects");
                    }
                }));
}

/// The text itself has 191 MiB in memory.
void reportLongText() {
    constexpr std::size_t length = 100'000'000;
    TEntry entry;
    show("a text of 100,000,000 characters, written",
         growth([&entry] { entry.Text.assign(length, u'x'); },
                [&entry] {
                    Repeated target({}, {}, 0, {});
                    nu::ObjectWriter writer(target, u"list");
                    writer.Write(entry);
                    writer.Close();
                }));
    const auto read = [](host::TStream& source) {
        TEntry entry;
        NuDeSerializeObject(entry, source);
        if (entry.Text.size() != length) {
            throw std::runtime_error("reads another text");
        }
    };
    const std::string_view start = "<Entry><Text>";
    const std::string_view end = "</Text></Entry>";
    show("the same, read from memory", [&] {
        const std::string xml = std::string(start).append(length, 'x').append(end);
        return growth([] {},
                      [&] {
                          host::TMemoryViewStream source(xml);
                          read(source);
                      });
    }());
    show("the same, read from any other stream", growth([] {},
                                                        [&] {
                                                            Repeated source(start, "xxxxxxxxxx",
                                                                            length / 10, end);
                                                            read(source);
                                                        }));
}

/// Ends in an error, not in a stack that is too deep.
void reportNesting() {
    constexpr std::size_t depth = 100'000;
    const auto refuses = [](auto work) {
        try {
            work();
        } catch (const host::Exception&) {
            return;
        }
        throw std::runtime_error("takes objects of any depth");
    };
    show("100,000 nested objects, refused in writing",
         growth([] {},
                [&] {
                    TEntry outermost;
                    TEntry* innermost = &outermost;
                    for (std::size_t count = 0; count < depth; ++count) {
                        innermost = (innermost->Inner = std::make_unique<TEntry>()).get();
                    }
                    refuses([&] { static_cast<void>(NuSerializeObject2Xml(outermost)); });
                    // From the outermost on, so that no destructor calls the next one.
                    while (outermost.Inner) {
                        outermost.Inner = std::move(outermost.Inner->Inner);
                    }
                }));
    show("the same, refused in reading",
         growth([] {},
                [&] {
                    Repeated source("<Entry>", "<Inner>", depth, "");
                    TEntry entry;
                    refuses([&] { NuDeSerializeObject(entry, source); });
                }));
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
        std::printf("\n%-44s %8s\n", "nuxml", "MiB");
        reportStreams();
        reportLongText();
        reportNesting();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
