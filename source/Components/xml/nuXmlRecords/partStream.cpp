#include "nuXmlRecords/partStream.h"

#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"

namespace nu {

std::size_t PartStream::Read(void* buffer, std::size_t count) {
    auto* const target = static_cast<char*>(buffer);
    const auto headLength = static_cast<std::int64_t>(start_.head.size());
    std::size_t got = 0;
    if (position_ < headLength) {
        got = start_.head.copy(target, count, static_cast<std::size_t>(position_));
    } else {
        got = file_.Read(target, count);
        if (finder_ != nullptr && got <= count) {
            finder_->look({target, got}, start_.position + position_ - headLength);
        }
    }
    position_ += static_cast<std::int64_t>(got);
    return got;
}

std::size_t PartStream::Write(const void* /*buffer*/, std::size_t /*count*/) {
    throw host::EStreamError(host::messages::notWritable);
}

std::int64_t PartStream::Seek(std::int64_t offset, host::SeekOrigin origin) {
    if (origin != host::SeekOrigin::Current || offset != 0) {
        throw host::EStreamError(host::messages::seekError);
    }
    return position_;
}

} // namespace nu
