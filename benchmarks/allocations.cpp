// Counts the allocations of whole parses: an element must not cost any, so their number may depend
// on the size of the input only through buffers that double.

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>

#include "peers/peer.h"

// The C library's own functions behind the ones that are replaced below.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

std::size_t allocations = 0;

} // namespace

// operator new and everything else that takes memory comes through here, in all libraries.
extern "C" {

void* malloc(std::size_t size) {
    ++allocations;
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    ++allocations;
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    ++allocations;
    return __libc_realloc(block, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    ++allocations;
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    ++allocations;
    *block = __libc_memalign(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}
}

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
    const std::size_t before = allocations;
    const bench::Tally tally = run();
    const std::size_t after = allocations;
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
