#pragma once

#include <cstddef>
#include <cstdint>

#include "host/runtime/stream.h"

namespace tool {

/// A stream that is only written to, and always looks empty.
class SinkStream : public host::TStream {
public:
    std::size_t Read(void* /*buffer*/, std::size_t /*count*/) final { return 0; }
    std::int64_t Seek(std::int64_t /*offset*/, host::SeekOrigin /*origin*/) final { return 0; }
    std::int64_t GetSize() final { return 0; }
};

} // namespace tool
