#include "heap.h"

#include <malloc.h>

#include <cerrno>

// The C library's own functions behind the ones that are replaced below.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

bench::Heap bench::heap;

namespace {

void* taken(void* block) {
    ++bench::heap.allocations;
    bench::heap.liveBytes += block != nullptr ? malloc_usable_size(block) : 0;
    return block;
}

} // namespace

extern "C" {

void* malloc(std::size_t size) { return taken(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) { return taken(__libc_calloc(count, size)); }

void* realloc(void* block, std::size_t size) {
    bench::heap.liveBytes -= block != nullptr ? malloc_usable_size(block) : 0;
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
    bench::heap.liveBytes -= block != nullptr ? malloc_usable_size(block) : 0;
    __libc_free(block);
}
}
