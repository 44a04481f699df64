#pragma once

#include <cstddef>
#include <cstdint>

#include "host/runtime/export.h"

namespace host {

/// Where an offset of TStream::Seek counts from.
enum class SeekOrigin { Beginning, Current, End };

/// A seekable stream of bytes. Sizes and positions are 64-bit byte counts.
///
/// Read and Write may transfer fewer bytes than asked; Read gives 0 only at the end. ReadBuffer and
/// WriteBuffer transfer all or throw.
class NUXML_API TStream {
public:
    TStream() = default;
    TStream(const TStream&) = delete;
    TStream& operator=(const TStream&) = delete;
    virtual ~TStream();

    /// Reads up to `count` bytes at the position and moves it; gives the number of bytes read.
    virtual std::size_t Read(void* buffer, std::size_t count) = 0;
    /// Writes up to `count` bytes at the position and moves it; gives the number of bytes written.
    virtual std::size_t Write(const void* buffer, std::size_t count) = 0;
    /// Moves the position and gives the new one, counted from the beginning.
    virtual std::int64_t Seek(std::int64_t offset, SeekOrigin origin) = 0;
    /// The size in bytes; found by seeking unless a stream knows better.
    virtual std::int64_t GetSize();
    /// Cuts or extends the stream. Throws EStreamError where a stream cannot.
    virtual void SetSize(std::int64_t size);
    /// Hands on everything written so far; streams without a buffer have nothing to do.
    virtual void Flush();

    /// Bytes from the beginning.
    [[nodiscard]] std::int64_t GetPosition() { return Seek(0, SeekOrigin::Current); }
    /// Moves to that byte; what lies behind the end depends on the stream.
    void SetPosition(std::int64_t position) { Seek(position, SeekOrigin::Beginning); }

    /// Reads exactly `count` bytes or throws EReadError "Stream read error".
    void ReadBuffer(void* buffer, std::size_t count);
    /// Writes exactly `count` bytes or throws EWriteError "Stream write error".
    void WriteBuffer(const void* buffer, std::size_t count);

    /// Copies `count` bytes from the source's position to this stream's position and gives their
    /// number. A count of 0 means the whole source from its start. Throws EReadError when the
    /// source ends before `count` bytes, EWriteError when this stream takes less.
    std::int64_t CopyFrom(TStream& source, std::int64_t count);
};

} // namespace host
