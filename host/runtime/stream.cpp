#include "host/runtime/stream.h"

#include <algorithm>
#include <memory>

#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"

namespace host {

namespace {
constexpr std::int64_t copyBlockSize = 64 * 1024;
}

TStream::~TStream() = default;

std::int64_t TStream::GetSize() {
    const std::int64_t position = Seek(0, SeekOrigin::Current);
    const std::int64_t size = Seek(0, SeekOrigin::End);
    Seek(position, SeekOrigin::Beginning);
    return size;
}

void TStream::SetSize(std::int64_t /*size*/) { throw EStreamError(messages::sizeFixed); }

void TStream::Flush() {}

void TStream::ReadBuffer(void* buffer, std::size_t count) {
    auto* target = static_cast<std::byte*>(buffer);
    while (count > 0) {
        const std::size_t got = Read(target, count);
        if (got == 0 || got > count) {
            throw EReadError(messages::readError);
        }
        target += got;
        count -= got;
    }
}

void TStream::WriteBuffer(const void* buffer, std::size_t count) {
    const auto* source = static_cast<const std::byte*>(buffer);
    while (count > 0) {
        const std::size_t taken = Write(source, count);
        if (taken == 0 || taken > count) {
            throw EWriteError(messages::writeError);
        }
        source += taken;
        count -= taken;
    }
}

std::int64_t TStream::CopyFrom(TStream& source, std::int64_t count) {
    if (count == 0) {
        source.SetPosition(0);
        count = source.GetSize();
    }
    const auto blockSize =
        static_cast<std::size_t>(std::clamp<std::int64_t>(count, 0, copyBlockSize));
    const auto block = std::make_unique_for_overwrite<std::byte[]>(blockSize);
    for (std::int64_t left = count; left > 0;) {
        const auto piece = static_cast<std::size_t>(std::min<std::int64_t>(left, copyBlockSize));
        source.ReadBuffer(block.get(), piece);
        WriteBuffer(block.get(), piece);
        left -= static_cast<std::int64_t>(piece);
    }
    return count;
}

} // namespace host
