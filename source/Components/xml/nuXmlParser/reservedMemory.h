#pragma once

#include <cstddef>

namespace nu {

/// A range of addresses that costs memory only where it is written, and holds zeros until then. So
/// it can be as large as what might come, and what stands in it never moves.
class ReservedMemory {
public:
    ReservedMemory() = default;
    ReservedMemory(const ReservedMemory&) = delete;
    ReservedMemory& operator=(const ReservedMemory&) = delete;
    ~ReservedMemory() { release(); }

    /// Gives back what was reserved before. Throws std::bad_alloc.
    void reserve(std::size_t size);
    void release() noexcept;
    [[nodiscard]] std::byte* data() const noexcept { return start_; }

private:
    std::byte* start_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace nu
