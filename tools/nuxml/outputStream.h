#pragma once

#include "host/runtime/exception.h"
#include "output.h"
#include "sinkStream.h"

namespace tool {

/// Output as a stream. It fails when nobody reads on: what is left to write
/// of a document can be without end.
class OutputStream final : public SinkStream {
public:
    explicit OutputStream(Output& output) noexcept : output_(output) {}

    std::size_t Write(const void* buffer, std::size_t count) override {
        if (!output_.isOpen()) {
            throw host::EWriteError(u"Stream write error");
        }
        output_.write({static_cast<const char*>(buffer), count});
        return count;
    }

private:
    Output& output_;
};

} // namespace tool
