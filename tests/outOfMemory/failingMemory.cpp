#include "outOfMemory/failingMemory.h"

#include <cstdlib>
#include <new>

namespace {

/// Allocations until one fails; negative while all succeed.
thread_local long allocationsLeft = -1;
/// Blocks that this thread has allocated and not freed.
thread_local long liveBlocks = 0;

bool fails() noexcept { return allocationsLeft >= 0 && allocationsLeft-- == 0; }

} // namespace

// Sanitizers have their own allocator, and look for leaks themselves.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// The libraries have to use these, too, although symbols are hidden where nothing else is said.
#pragma GCC visibility push(default)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

static void* counted(void* block) {
    liveBlocks += block != nullptr ? 1 : 0;
    return block;
}
void* malloc(std::size_t size) { return fails() ? nullptr : counted(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) {
    return fails() ? nullptr : counted(__libc_calloc(count, size));
}
void* realloc(void* block, std::size_t size) {
    if (block == nullptr) {
        return malloc(size);
    }
    return fails() ? nullptr : __libc_realloc(block, size);
}
void free(void* block) {
    liveBlocks -= block != nullptr ? 1 : 0;
    __libc_free(block);
}
}
#pragma GCC visibility pop
#endif

void* operator new(std::size_t size) {
    void* block = fails() ? nullptr : std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}

namespace failing {

long failingCount = -1;
bool wasReached = false;

void onCall(bool begins) {
    if (begins) {
        allocationsLeft = failingCount;
    } else {
        wasReached = wasReached || (failingCount >= 0 && allocationsLeft < 0);
        allocationsLeft = -1;
    }
}

long blocks() noexcept { return liveBlocks; }

} // namespace failing
