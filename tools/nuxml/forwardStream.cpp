#include "forwardStream.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "host/runtime/exception.h"
#include "host/runtime/unicode.h"

namespace tool {

namespace {

/// As long as not more than that was read, all of it is the start.
constexpr std::int64_t longestStart = 64 * 1024;

} // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

Descriptor::~Descriptor() {
    if (number_ > STDIN_FILENO) {
        ::close(number_);
    }
}

ForwardStream::ForwardStream(Descriptor descriptor, std::unique_ptr<host::TMemoryStream> start)
    : descriptor_(std::move(descriptor)), start_(std::move(start)) {
    start_->SetPosition(0);
}

std::size_t ForwardStream::Read(void* buffer, std::size_t count) {
    // 1. What is kept.
    std::size_t length = start_->Read(buffer, count);
    if (length == 0) {
        // 2. What is new; it is kept, too, or nothing is.
        ssize_t got = 0;
        do {
            got = ::read(descriptor_.number(), buffer, count);
        } while (got < 0 && errno == EINTR);
        if (got < 0) {
            throw host::EReadError(host::utf8ToUtf16(std::generic_category().message(errno)));
        }
        length = static_cast<std::size_t>(got);
        if (position_ + got <= longestStart) {
            start_->WriteBuffer(buffer, length);
        } else if (length > 0) {
            start_->Clear();
        }
    }
    position_ += static_cast<std::int64_t>(length);
    return length;
}

std::size_t ForwardStream::Write(const void* /*buffer*/, std::size_t /*count*/) { return 0; }

std::int64_t ForwardStream::Seek(std::int64_t offset, host::SeekOrigin origin) {
    const std::int64_t target = origin == host::SeekOrigin::Current ? position_ + offset : offset;
    const bool isKnown = origin != host::SeekOrigin::End &&
                         (target == position_ || (target >= 0 && target <= start_->GetSize()));
    if (!isKnown) {
        throw host::EStreamError(u"Stream seek error");
    }
    if (target != position_) {
        start_->SetPosition(target);
        position_ = target;
    }
    return position_;
}

} // namespace tool
