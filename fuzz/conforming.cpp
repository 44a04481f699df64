// Documents through the conforming stage: as a whole and in blocks of a few bytes it must give the
// same text or the same fault, whatever the options, and never anything but a fault.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/runtime/memoryStream.h"
#include "nuXmlParser.h"

namespace {

/// Gives a few bytes at a time.
class Trickle final : public host::TStream {
public:
    Trickle(std::string_view bytes, std::size_t step) : bytes_(bytes), step_(step) {}

    std::size_t Read(void* buffer, std::size_t count) override {
        const std::size_t got =
            bytes_.copy(static_cast<char*>(buffer), std::min(count, step_), place_);
        place_ += got;
        return got;
    }
    std::size_t Write(const void*, std::size_t) override { return 0; }
    std::int64_t Seek(std::int64_t, host::SeekOrigin) override {
        return static_cast<std::int64_t>(place_);
    }

private:
    std::string_view bytes_;
    std::size_t step_;
    std::size_t place_ = 0;
};

std::string drain(host::TStream& source, const TNuConformingOptions& options) {
    std::string text;
    try {
        TNuConformingStream stage(source, options);
        char block[512];
        while (const std::size_t got = stage.Read(block, sizeof block)) {
            text.append(block, got);
        }
        return text;
    } catch (const ENuXmlFault& fault) {
        return std::to_string(fault.Line()) + ':' + std::to_string(fault.Column()) + fault.what();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    TNuConformingOptions options;
    options.whiteSpace = static_cast<TNuConformingWhiteSpace>(data[0] % 3);
    options.keepLines = (data[0] & 4) != 0;
    options.namespaces = (data[0] & 8) != 0;
    options.amplificationFrom = 4096;
    const std::string_view document(reinterpret_cast<const char*>(data) + 2, size - 2);
    host::TMemoryViewStream whole(document);
    Trickle pieces(document, 1 + data[1] % 7);
    if (drain(whole, options) != drain(pieces, options)) {
        std::abort();
    }
    return 0;
}
