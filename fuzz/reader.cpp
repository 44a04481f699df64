// The reader over any bytes as a stream, and over the same as text in three ways that must agree.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "common/codePage.h"
#include "common/stringStream.h"
#include "host/runtime/memoryStream.h"
#include "host/runtime/unicode.h"
#include "nuXmlParser/smallStreamParser.h"
#include "support/record.h"
#include "tests/support/plainSource.h"

using fuzz::Events;
using fuzz::Record;
using fuzz::scan;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // 1. The bytes themselves, in memory that ends where they end.
    NuSetSystemCodePage(size % 2 == 0 ? cNuCodePageUtf8 : 1252);
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    Record::of([&](TNuSAXXMLReader& reader, const auto&) { reader.ParseBytes(bytes); });

    // 2. The text, unit by unit, in one piece, and in a window that moves.
    const std::u16string text = u'<' + host::utf8ToUtf16(bytes);
    const Events plain = Record::of([&](auto& reader, const auto& errorHandler) {
        scan(reader, new support::PlainSource(text, errorHandler));
    });
    const Events whole =
        Record::of([&](TNuSAXXMLReader& reader, const auto&) { reader.Parse(text); });
    const std::string encoded = "\xEF\xBB\xBF" + host::utf16ToUtf8(text);
    const Events moving = Record::of([&](auto& reader, const auto& errorHandler) {
        scan(reader, new TNuXmlSmallStreamParser(new host::TMemoryViewStream(encoded), true,
                                                 errorHandler, 16 + size % 64));
    });
    if (whole != plain || moving != plain) {
        std::abort();
    }
    return 0;
}
