#include "nuXmlParser/conforming/byteSource.h"

#include "host/runtime/exception.h"

namespace nu {

bool ByteSource::readMore() {
    if (hasEnded_) {
        return false;
    }
    block_.erase(block_.begin(), block_.begin() + static_cast<std::ptrdiff_t>(used_));
    used_ = 0;
    const std::size_t kept = block_.size();
    block_.resize(kept + blockSize_);
    std::size_t got = 0;
    try {
        got = stream_->Read(block_.data() + kept, blockSize_);
    } catch (...) {
        block_.resize(kept);
        throw;
    }
    if (got > blockSize_) {
        block_.resize(kept);
        throw host::EReadError(u"Stream read error");
    }
    block_.resize(kept + got);
    hasEnded_ = got == 0;
    return !hasEnded_;
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
