#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

namespace fuzz {

/// A text in a block of the heap that ends where the text does, so that AddressSanitizer sees who
/// reads on; or one with something else behind the text, which nobody may notice.
template <class Unit> class ExactBlock {
public:
    using View = std::basic_string_view<Unit>;

    explicit ExactBlock(View text, View behind = {})
        : size_(text.size()), units_(new Unit[text.size() + behind.size()]) {
        std::copy(behind.begin(), behind.end(), std::copy(text.begin(), text.end(), units_.get()));
    }

    [[nodiscard]] View text() const { return {units_.get(), size_}; }

private:
    std::size_t size_;
    std::unique_ptr<Unit[]> units_;
};

} // namespace fuzz
