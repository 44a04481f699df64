#pragma once

#include <cstdint>
#include <memory>

#include "host/runtime/memoryStream.h"

namespace tool {

/// A descriptor that is closed with its owner, unless it is standard input.
class Descriptor {
public:
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor();

    [[nodiscard]] int number() const noexcept { return number_; }

private:
    int number_;
};

/// What comes out of a descriptor, with nothing kept behind the place of reading but its start:
/// looking at that and going back is all that a reader of unknown bytes needs.
class ForwardStream final : public host::TStream {
public:
    /// \param start what was already read
    ForwardStream(Descriptor descriptor, std::unique_ptr<host::TMemoryStream> start);

    /// Throws host::EReadError with the system's reason.
    std::size_t Read(void* buffer, std::size_t count) override;
    std::size_t Write(const void* buffer, std::size_t count) override;
    /// Throws host::EStreamError for a place that is not known any more or not yet.
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override;

private:
    Descriptor descriptor_;
    /// Empty once it is known no more; its position is that of the stream as long as it is known.
    std::unique_ptr<host::TMemoryStream> start_;
    std::int64_t position_ = 0;
};

} // namespace tool
