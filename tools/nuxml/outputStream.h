#pragma once

#include "host/runtime/exception.h"
#include "host/runtime/stream.h"
#include "output.h"

namespace tool {

/// Output as a stream that is only written to. It fails when nobody reads on: what is left to write
/// of a document can be without end.
class OutputStream final : public host::TStream {
public:
    explicit OutputStream(Output& output) noexcept : output_(output) {}

    std::size_t Read(void* /*buffer*/, std::size_t /*count*/) override { return 0; }
    std::size_t Write(const void* buffer, std::size_t count) override {
        if (!output_.isOpen()) {
            throw host::EWriteError(u"Stream write error");
        }
        output_.write({static_cast<const char*>(buffer), count});
        return count;
    }
    std::int64_t Seek(std::int64_t /*offset*/, host::SeekOrigin /*origin*/) override {
        throw host::EStreamError(u"Standard output has no position");
    }

private:
    Output& output_;
};

} // namespace tool
