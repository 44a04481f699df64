// Streams that read short, throw or lie about their size: the reader tells what it tells of the
// same bytes in memory, as far as the stream gave them, and lets go of the stream whatever
// happened.
//
// The first eight bytes are how the stream behaves, the rest is what it holds.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

#include "host/runtime/memoryStream.h"
#include "nuXmlParser/largeStreamParser.h"
#include "support/record.h"
#include "tests/support/oddStream.h"

using fuzz::Events;
using fuzz::Record;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t lies[] = {0,       1,           1024,    1025,         0x1FFFFFF, 0x2000000,
                                 1 << 30, largest / 2, largest, -largest - 1, -1,        -1024};

TNuXmlLargeStreamParser* makeSource(host::TStream* stream,
                                    const host::Ref<host::IErrorHandler>& errorHandler,
                                    std::size_t blockLength) {
    try {
        return new TNuXmlLargeStreamParser(stream, true, errorHandler, blockLength);
    } catch (const host::Exception& failure) {
        throw ENuSaxFatalError(failure.Message());
    }
}

/// The events of a stream that is a large one, in blocks of the reader's own size or of another.
Events eventsOf(host::TStream* stream, std::size_t blockLength) {
    return Record::of([&](TNuSAXXMLReader& reader, const auto& errorHandler) {
        if (blockLength == 0) {
            reader.SetParserChoice(TNuSaxParserChoice::LargeStream);
            reader.Parse(stream, true);
            return;
        }
        // As the reader does with what is not its own.
        try {
            fuzz::scan(reader, makeSource(stream, errorHandler, blockLength));
        } catch (const host::EStreamError& failure) {
            throw ENuSaxFatalError(failure.Message());
        }
    });
}

bool isError(const std::u16string& event) { return event.front() == u'F' || event.front() == u'X'; }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t controls = 8;
    if (size < controls) {
        return 0;
    }
    const std::string bytes(reinterpret_cast<const char*>(data) + controls, size - controls);
    const std::size_t blockLength = data[0] < 64 ? 0 : 16 + data[0];

    // 1. In memory, whole.
    const Events expected = eventsOf(new host::TMemoryViewStream(bytes), blockLength);

    // 2. In pieces, which nobody may notice; and with a size that is not its own, which is looked
    // at
    //    only to choose how to read.
    auto* const stream = new support::OddStream(bytes);
    stream->readsAtMost = 1 + data[1];
    if (data[2] % 2 != 0) {
        stream->claimedSize = lies[data[3] % std::size(lies)];
    }
    const bool isSame = eventsOf(stream, blockLength) == expected;

    // 3. Up to a place where it breaks: what came before stays, then an error ends it.
    auto* const broken = new support::OddStream(bytes);
    broken->readsAtMost = 1 + data[1];
    broken->failsAt = (data[4] | data[5] << 8) % static_cast<int>(bytes.size() + 1);
    const Events part = eventsOf(broken, blockLength);
    const bool endsInError = std::any_of(part.begin(), part.end(), isError) ||
                             (!part.empty() && part.back().front() == u'Y');

    // 4. Of any size it may choose how to read: only how it ends is known.
    auto* const chosen = new support::OddStream(bytes);
    chosen->claimedSize = lies[data[6] % std::size(lies)];
    Record::of([&](TNuSAXXMLReader& reader, const auto&) { reader.Parse(chosen, true); });

    if (!isSame || !endsInError || support::OddStream::alive != 0) {
        std::abort();
    }
    return 0;
}
