// The two character sources against each other and the large one against its transcription.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuXmlParser/largeStreamParser.h"
#include "nuXmlParser/smallStreamParser.h"
#include "support/record.h"
#include "tests/support/oddStream.h"
#include "tests/support/plainLargeSource.h"

using fuzz::Events;
using fuzz::Record;
using fuzz::scan;

namespace {

/// Scans what `make` makes; a source that cannot be made ends the parse, too.
template <class Make> void scanNew(TNuSAXXMLReader& reader, Make&& make) {
    try {
        scan(reader, make());
    } catch (const host::Exception& failure) {
        throw ENuSaxFatalError(failure.Message());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // 1. Any bytes: whatever the size of the blocks and of what the stream gives at once, the
    //    parser tells the same as unit by unit, and where.
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const Events plain = Record::of([&](auto& reader, const auto& errorHandler) {
        scanNew(reader, [&] {
            return new support::PlainLargeSource(new host::TMemoryViewStream(bytes), true,
                                                 errorHandler, 2 * size + 2048);
        });
    });
    const Events blocks = Record::of([&](auto& reader, const auto& errorHandler) {
        auto* const stream = new support::OddStream(bytes);
        stream->readsAtMost = 1 + size % 50;
        scanNew(reader, [&] {
            return new TNuXmlLargeStreamParser(stream, true, errorHandler, 16 + size % 70);
        });
    });
    if (blocks != plain) {
        std::abort();
    }

    // 2. Text without control characters: both sources tell the same up to the end of the input,
    //    which is no character of its own to the small one and can make a difference of a few
    //    events.
    std::u16string text = u'<' + host::utf8ToUtf16(bytes);
    std::replace_if(
        text.begin(), text.end(), [](char16_t unit) { return unit < u' '; }, u' ');
    const std::string encoded = "\xEF\xBB\xBF" + host::utf16ToUtf8(text);
    const auto eventsBy = [&](TNuSaxParserChoice choice) {
        return Record::of(
            [&](TNuSAXXMLReader& reader, const auto&) {
                reader.SetParserChoice(choice);
                reader.ParseBytes(encoded);
            },
            false);
    };
    Events small = eventsBy(TNuSaxParserChoice::SmallStream);
    const Events large = eventsBy(TNuSaxParserChoice::LargeStream);
    constexpr std::size_t eventsAtTheEnd = 5;
    small.resize(small.size() - std::min(small.size(), eventsAtTheEnd));
    if (small.size() > large.size() || !std::equal(small.begin(), small.end(), large.begin())) {
        std::abort();
    }
    return 0;
}
