#include "nuXmlParser/textMemory.h"

#include <algorithm>
#include <limits>
#include <new>
#include <typeinfo>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"

namespace nu {

namespace {

constexpr std::size_t firstReadCapacity = 1024 * 1024;

} // namespace

host::TCustomMemoryStream* asMemoryStream(host::TStream& stream) noexcept {
    // The one that bytes mostly come through is known without a search of its bases.
    return typeid(stream) == typeid(host::TMemoryViewStream)
               ? static_cast<host::TMemoryViewStream*>(&stream)
               : dynamic_cast<host::TCustomMemoryStream*>(&stream);
}

TextMemory::TextMemory(std::size_t capacity) : capacity_(capacity) {
    block_.reset(static_cast<std::byte*>(std::malloc(std::max<std::size_t>(capacity, 1))));
    if (!block_) {
        throw std::bad_alloc();
    }
}

TextMemory TextMemory::encoded(std::u16string_view units) {
    constexpr std::size_t bytesOfUnit = 3;
    if (units.size() > std::numeric_limits<std::size_t>::max() / bytesOfUnit) {
        throw std::bad_alloc();
    }
    TextMemory memory(units.size() * bytesOfUnit);
    memory.used_ = NuEncodeUtf8(units, reinterpret_cast<char*>(memory.data()));
    return memory;
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
            throw host::EReadError(host::messages::readError);
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
