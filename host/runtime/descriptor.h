#pragma once

#include <unistd.h>

#include <utility>

namespace host {

/// A number of the system for something open, closed with it. Whether closing fails matters only
/// for what was written, which TFileStream::Close tells.
class Descriptor {
public:
    explicit Descriptor(int number = -1) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (isOpen()) {
            ::close(number_);
        }
    }

    /// Whether there is a descriptor in it.
    [[nodiscard]] bool isOpen() const noexcept { return number_ >= 0; }
    /// The descriptor, -1 without one. It stays here.
    [[nodiscard]] int number() const noexcept { return number_; }
    /// Hands it to the caller.
    [[nodiscard]] int release() noexcept { return std::exchange(number_, -1); }

private:
    int number_;
};

} // namespace host
