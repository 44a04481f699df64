#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>

namespace nu {

/// More is to be kept than somebody allows.
struct OutputLimit {};

/// What the stage has to hand on: bytes that grow at the end and are taken from the front.
class OutputText {
public:
    /// Nothing that comes is kept: for who only wants to know whether there is a fault.
    void discard() noexcept { isDiscarding_ = true; }
    /// What comes from now on is kept again.
    void keep() noexcept { isDiscarding_ = false; }
    /// More bytes than that are not kept: OutputLimit is thrown.
    void setLimit(std::size_t limit) noexcept { limit_ = limit; }
    [[nodiscard]] bool isDiscarding() const noexcept { return isDiscarding_; }

    void append(const char* from, const char* to) {
        if (from != to && !isDiscarding_) {
            const auto count = static_cast<std::size_t>(to - from);
            if (capacity_ - size_ < count) {
                grow(count);
            }
            copy(bytes_.get() + size_, from, count);
            size_ += count;
        }
    }
    void append(std::string_view text) { append(text.data(), text.data() + text.size()); }
    void append(char c) { append(&c, &c + 1); }
    void append(std::size_t count, char c) {
        for (; count > 0; --count) {
            append(c);
        }
    }
    /// Room for what is surely to come.
    void reserve(std::size_t count) {
        if (capacity_ - size_ < count) {
            grow(count);
        }
    }

    /// What is there and not taken.
    [[nodiscard]] std::string_view text() const noexcept {
        return {bytes_.get() + taken_, size_ - taken_};
    }
    void take(std::size_t count) noexcept {
        taken_ += count;
        if (taken_ == size_) {
            taken_ = size_ = 0;
        }
    }

private:
    struct Freer {
        void operator()(char* bytes) const noexcept { std::free(bytes); }
    };

    /// What goes out between two changes is often but a few bytes.
    static void copy(char* target, const char* from, std::size_t count) noexcept {
        const auto copyEnds = [&]<class Word>(Word first, Word last) {
            std::memcpy(&first, from, sizeof first);
            std::memcpy(&last, from + count - sizeof last, sizeof last);
            std::memcpy(target, &first, sizeof first);
            std::memcpy(target + count - sizeof last, &last, sizeof last);
        };
        if (count > 2 * sizeof(std::uint64_t)) {
            std::memcpy(target, from, count);
        } else if (count >= sizeof(std::uint64_t)) {
            copyEnds(std::uint64_t{}, std::uint64_t{});
        } else if (count >= sizeof(std::uint32_t)) {
            copyEnds(std::uint32_t{}, std::uint32_t{});
        } else {
            for (std::size_t index = 0; index < count; ++index) {
                target[index] = from[index];
            }
        }
    }
    void grow(std::size_t count);

    std::unique_ptr<char, Freer> bytes_;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
    std::size_t taken_ = 0;
    std::size_t limit_ = std::numeric_limits<std::size_t>::max();
    bool isDiscarding_ = false;
};

} // namespace nu
