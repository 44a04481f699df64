#include "nuXmlParser/conforming/byteSource.h"

#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"

namespace nu {

bool ByteSource::readMore() {
    if (hasEnded_) {
        return false;
    }
    const std::string_view kept = ahead();
    block_.keep(kept, kept.size() + blockSize_);
    used_ = 0;
    filled_ = kept.size();
    const std::size_t got = stream_->Read(block_.data() + filled_, blockSize_);
    if (got > blockSize_) {
        throw host::EReadError(host::messages::readError);
    }
    filled_ += got;
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
