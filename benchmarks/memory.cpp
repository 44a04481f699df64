// Bytes of live heap that a document tree takes for each of its nodes, with names and texts: ours
// beside the other libraries.

#include <malloc.h>

#include <cerrno>
#include <cstdio>
#include <exception>

#include "corpus.h"
#include "trees/tree.h"

// The C library's own functions behind the ones that are replaced below.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

std::size_t liveBytes = 0;

void* taken(void* block) {
    liveBytes += block != nullptr ? malloc_usable_size(block) : 0;
    return block;
}

} // namespace

// operator new and everything else that takes memory comes through here, in all libraries.
extern "C" {

void* malloc(std::size_t size) { return taken(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) { return taken(__libc_calloc(count, size)); }

void* realloc(void* block, std::size_t size) {
    liveBytes -= block != nullptr ? malloc_usable_size(block) : 0;
    return taken(__libc_realloc(block, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return taken(__libc_memalign(alignment, size));
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    *block = taken(__libc_memalign(alignment, size));
    return *block == nullptr ? ENOMEM : 0;
}

void free(void* block) {
    liveBytes -= block != nullptr ? malloc_usable_size(block) : 0;
    __libc_free(block);
}
}

int main() {
    try {
        const std::vector<bench::TreeLibrary> libraries = bench::treeLibraries();
        std::printf("%-16s", "bytes a node");
        for (const bench::TreeLibrary& library : libraries) {
            std::printf("%10s", library.name.c_str());
        }
        std::printf("\n");
        for (const bench::Input& input : bench::inputs()) {
            std::printf("%-16s", input.name.c_str());
            for (const bench::TreeLibrary& library : libraries) {
                if (!library.canLoad(input.name)) {
                    std::printf("%10s", "-");
                    continue;
                }
                // What a library keeps for good is there after the first tree.
                library.load("<a/>");
                const std::size_t before = liveBytes;
                const auto tree = library.load(input.text);
                const std::size_t bytes = liveBytes - before;
                std::printf("%10.1f",
                            static_cast<double>(bytes) / static_cast<double>(tree->nodeCount()));
                std::fflush(stdout);
            }
            std::printf("\n");
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
