#include "nuXmlParser/conforming/byteSource.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/runtime/exception.h"

namespace nu {

bool ByteSource::readMore() {
    if (hasEnded_) {
        return false;
    }
    makeRoom();
    const std::size_t got = stream_->Read(block_.get() + filled_, blockSize_);
    if (got > blockSize_) {
        throw host::EReadError(u"Stream read error");
    }
    filled_ += got;
    hasEnded_ = got == 0;
    return !hasEnded_;
}

/// Moves what is ahead to the start of the block, and makes room for another one behind it.
void ByteSource::makeRoom() {
    const std::size_t kept = filled_ - used_;
    if (kept + blockSize_ > room_) {
        const std::size_t room = std::max(2 * room_, kept + blockSize_);
        auto grown = std::make_unique_for_overwrite<char[]>(room);
        std::copy_n(block_.get() + used_, kept, grown.get());
        block_ = std::move(grown);
        room_ = room;
    } else if (kept > 0) {
        std::memmove(block_.get(), block_.get() + used_, kept);
    }
    filled_ = kept;
    used_ = 0;
}

void ByteSource::skip(std::size_t count) noexcept {
    done_ += static_cast<std::int64_t>(count);
    if (isInMemory()) {
        memory_.remove_prefix(count);
    } else {
        used_ += count;
    }
}

} // namespace nu
