#include "nuXmlParser/reservedMemory.h"

#include <sys/mman.h>

#include <new>

namespace nu {

void ReservedMemory::reserve(std::size_t size) {
    release();
    void* const start = ::mmap(nullptr, size, PROT_READ | PROT_WRITE,
                               MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (start == MAP_FAILED) {
        throw std::bad_alloc();
    }
    start_ = static_cast<std::byte*>(start);
    size_ = size;
}

void ReservedMemory::release() noexcept {
    if (start_ != nullptr) {
        ::munmap(start_, size_);
    }
    start_ = nullptr;
    size_ = 0;
}

} // namespace nu
