// Counts the allocations of whole parses: an element must not cost any, so their number may depend
// on the size of the input only through buffers that double.

#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>

#include "heap.h"
#include "peers/peer.h"

namespace {

std::string document(std::size_t elements) {
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?><corpus>";
    for (std::size_t index = 1; index < elements; ++index) {
        text += index % 2 == 0 ? R"(<i a="1" b="2">text</i>)" : R"(<p:i xmlns:p="u" p:a="1"/>)";
    }
    return text + "</corpus>";
}

std::size_t allocationsOf(const bench::Reader& reader, std::size_t elements) {
    const std::string text = document(elements);
    const bench::Run run = reader.prepare(text);
    const std::size_t before = bench::heap.allocations;
    const bench::Tally tally = run();
    const std::size_t after = bench::heap.allocations;
    if (tally.elements != elements) {
        std::fprintf(stderr, "%s sees %zu of %zu elements\n", reader.name.c_str(), tally.elements,
                     elements);
    }
    return after - before;
}

} // namespace

int main() {
    constexpr std::size_t few = 1'000;
    constexpr std::size_t many = 1'000'000;
    std::printf("Allocations of a parse    %zu elements    %zu elements\n", few, many);
    try {
        for (const bench::Reader& reader : bench::readers()) {
            const std::size_t forFew = allocationsOf(reader, few);
            const std::size_t forMany = allocationsOf(reader, many);
            std::printf("%-22s %16zu %19zu\n", reader.name.c_str(), forFew, forMany);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
