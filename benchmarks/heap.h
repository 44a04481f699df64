#pragma once

#include <cstddef>

namespace bench {

/// What the whole program, with all libraries, has taken from the heap so far: programs that link
/// heap.cpp come through there with operator new and everything else that takes memory.
struct Heap {
    std::size_t allocations = 0;
    std::size_t liveBytes = 0;
};
extern Heap heap;

} // namespace bench
