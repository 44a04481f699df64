#include "nuXmlParser/textMemory.h"

#include <sys/mman.h>

#include <algorithm>
#include <limits>
#include <new>

#include "host/runtime/exception.h"

namespace nu {

namespace {

constexpr std::size_t largePage = 2 * 1024 * 1024;
constexpr std::size_t firstReadCapacity = 1024 * 1024;

} // namespace

TextMemory::TextMemory(std::size_t capacity) : capacity_(capacity) {
    void* block = nullptr;
    if (capacity < 2 * largePage) {
        block = std::malloc(std::max<std::size_t>(capacity, 1));
    } else if (capacity <= std::numeric_limits<std::size_t>::max() / 2) {
        const std::size_t pages = (capacity + largePage - 1) / largePage * largePage;
        block = std::aligned_alloc(largePage, pages);
        if (block != nullptr) {
            // Only advice: without large pages everything works, slower.
            static_cast<void>(::madvise(block, pages, MADV_HUGEPAGE));
        }
    }
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    block_.reset(static_cast<std::byte*>(block));
}

TextMemory TextMemory::read(host::TStream& stream, std::size_t size) {
    TextMemory memory(std::min(size, firstReadCapacity));
    while (memory.used_ < size) {
        if (memory.used_ == memory.capacity_) {
            memory.growTo(std::min(size, 2 * memory.capacity_));
        }
        const std::size_t room = memory.capacity_ - memory.used_;
        const std::size_t got = stream.Read(memory.data() + memory.used_, room);
        if (got == 0 || got > room) {
            throw host::EReadError(u"Stream read error");
        }
        memory.used_ += got;
    }
    return memory;
}

void TextMemory::growTo(std::size_t capacity) {
    void* grown = std::realloc(block_.get(), capacity);
    if (grown == nullptr) {
        throw std::bad_alloc();
    }
    static_cast<void>(block_.release());
    block_.reset(static_cast<std::byte*>(grown));
    capacity_ = capacity;
}

} // namespace nu
