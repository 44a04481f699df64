#pragma once

#include <cstddef>
#include <cstdint>

#include "host/com/unknown.h"
#include "host/runtime/stream.h"

namespace host {

/// A seekable stream of bytes as a counted interface that does not throw: what host::TStream is for
/// code that can let go of it at any time and reports failures as codes. Sizes and positions are
/// 64-bit byte counts. Out-parameters are 0 after a failure.
class NUXML_API IStream : public IUnknown {
public:
    using Base = IUnknown;
    static constexpr InterfaceId Id{0x4F0C7B92D1E84A63, 0xB57E20C9A8140001};

    /// Reads up to `count` bytes at the position and moves it; `read` 0 for a `count` above 0 is
    /// the end.
    virtual ResultCode Read(void* buffer, std::size_t count, std::size_t& read) noexcept = 0;
    /// Writes up to `count` bytes at the position and moves it.
    virtual ResultCode Write(const void* buffer, std::size_t count,
                             std::size_t& written) noexcept = 0;
    /// Moves the position and gives the new one, counted from the beginning.
    virtual ResultCode Seek(std::int64_t offset, SeekOrigin origin,
                            std::int64_t& position) noexcept = 0;
    /// The length of the whole stream in bytes, wherever the position is.
    virtual ResultCode GetSize(std::int64_t& size) noexcept = 0;
    /// Cuts or extends the stream.
    virtual ResultCode SetSize(std::int64_t size) noexcept = 0;
    /// Copies from this stream's position to that of `target`: `count` bytes, or fewer when this
    /// stream ends before. What was copied before a failure stays copied.
    virtual ResultCode CopyTo(IStream* target, std::int64_t count,
                              std::int64_t& copied) noexcept = 0;
    /// Hands everything written so far to what the stream writes to.
    virtual ResultCode Commit() noexcept = 0;
};

} // namespace host
