#include "host/com/streamAdapter.h"

#include <algorithm>
#include <utility>

#include "host/com/boundary.h"
#include "host/com/implements.h"
#include "host/runtime/exception.h"
#include "host/runtime/streamMessages.h"

namespace host {

namespace {

constexpr std::int64_t copyBlockSize = 64 * 1024;

/// Writes what `source` has, at most `count` bytes, to `target` and gives the number of bytes.
std::int64_t copyUpTo(TStream& source, TStream& target, std::int64_t count) {
    const auto blockSize =
        static_cast<std::size_t>(std::clamp<std::int64_t>(count, 0, copyBlockSize));
    const auto block = std::make_unique_for_overwrite<std::byte[]>(blockSize);
    std::int64_t copied = 0;
    while (copied < count) {
        const auto piece =
            static_cast<std::size_t>(std::min<std::int64_t>(count - copied, copyBlockSize));
        const std::size_t got = source.Read(block.get(), piece);
        if (got == 0) {
            break;
        }
        if (got > piece) {
            throw EReadError(messages::readError);
        }
        target.WriteBuffer(block.get(), got);
        copied += static_cast<std::int64_t>(got);
    }
    return copied;
}

class StreamInterface final : public Implements<IStream> {
public:
    StreamInterface(TStream& stream, std::unique_ptr<TStream> owned) noexcept
        : stream_(stream), owned_(std::move(owned)) {}

    ResultCode Read(void* buffer, std::size_t count, std::size_t& read) noexcept override {
        return guardCall(read, [&] { return stream_.Read(buffer, count); });
    }
    ResultCode Write(const void* buffer, std::size_t count,
                     std::size_t& written) noexcept override {
        return guardCall(written, [&] { return stream_.Write(buffer, count); });
    }
    ResultCode Seek(std::int64_t offset, SeekOrigin origin,
                    std::int64_t& position) noexcept override {
        return guardCall(position, [&] { return stream_.Seek(offset, origin); });
    }
    ResultCode GetSize(std::int64_t& size) noexcept override {
        return guardCall(size, [&] { return stream_.GetSize(); });
    }
    ResultCode SetSize(std::int64_t size) noexcept override {
        return guardCall([&] { stream_.SetSize(size); });
    }
    ResultCode CopyTo(IStream* target, std::int64_t count, std::int64_t& copied) noexcept override {
        return guardCall(copied, [&] {
            TInterfaceStream targetStream{Ref<IStream>(target)};
            return copyUpTo(stream_, targetStream, count);
        });
    }
    ResultCode Commit() noexcept override {
        return guardCall([&] { stream_.Flush(); });
    }

private:
    TStream& stream_;
    std::unique_ptr<TStream> owned_;
};

/// Makes one call and throws when it fails. An interface that publishes nothing must not be
/// credited with the error information of an earlier failure.
template <class Call> void checkCall(Call&& call) {
    SetErrorInfo(nullptr);
    checkResult(std::forward<Call>(call)());
}

} // namespace

Ref<IStream> makeStreamInterface(TStream& stream) {
    return makeRef<StreamInterface>(stream, nullptr);
}

Ref<IStream> makeStreamInterface(std::unique_ptr<TStream> stream) {
    if (stream == nullptr) {
        throw EInvalidPointer(u"There is no stream");
    }
    TStream& place = *stream;
    return makeRef<StreamInterface>(place, std::move(stream));
}

TInterfaceStream::TInterfaceStream(Ref<IStream> stream) : stream_(std::move(stream)) {
    if (!stream_) {
        throw EInvalidPointer(u"There is no stream interface");
    }
}

TInterfaceStream::~TInterfaceStream() = default;

std::size_t TInterfaceStream::Read(void* buffer, std::size_t count) {
    std::size_t got = 0;
    checkCall([&] { return stream_->Read(buffer, count, got); });
    if (got > count) {
        throw EReadError(messages::readError);
    }
    return got;
}

std::size_t TInterfaceStream::Write(const void* buffer, std::size_t count) {
    std::size_t taken = 0;
    checkCall([&] { return stream_->Write(buffer, count, taken); });
    if (taken > count) {
        throw EWriteError(messages::writeError);
    }
    return taken;
}

std::int64_t TInterfaceStream::Seek(std::int64_t offset, SeekOrigin origin) {
    std::int64_t position = 0;
    checkCall([&] { return stream_->Seek(offset, origin, position); });
    return position;
}

std::int64_t TInterfaceStream::GetSize() {
    std::int64_t size = 0;
    checkCall([&] { return stream_->GetSize(size); });
    return size;
}

void TInterfaceStream::SetSize(std::int64_t size) {
    checkCall([&] { return stream_->SetSize(size); });
}

void TInterfaceStream::Flush() {
    checkCall([&] { return stream_->Commit(); });
}

} // namespace host
