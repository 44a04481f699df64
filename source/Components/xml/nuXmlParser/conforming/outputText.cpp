#include "nuXmlParser/conforming/outputText.h"

#include <algorithm>
#include <new>

namespace nu {

void OutputText::grow(std::size_t count) {
    constexpr std::size_t leastCapacity = 4096;
    if (count > limit_ - size_) {
        throw OutputLimit();
    }
    const std::size_t capacity =
        std::min(std::max({leastCapacity, 2 * capacity_, size_ + count}), limit_);
    char* const grown = static_cast<char*>(std::realloc(bytes_.get(), capacity));
    if (grown == nullptr) {
        throw std::bad_alloc();
    }
    static_cast<void>(bytes_.release());
    bytes_.reset(grown);
    capacity_ = capacity;
}

} // namespace nu
