// Records of a document in one pass and by parts: what all parts deliver is what one pass does, or
// one of them meets a fault; with an index only where the pass does.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/runtime/exception.h"
#include "host/runtime/memoryStream.h"
#include "nuXmlRecords.h"

namespace {

/// Nothing where there is a fault.
using Outcome = std::optional<std::string>;

Outcome joined(int count, const std::function<void(int number, std::string& text)>& read) {
    std::string text;
    try {
        for (int number = 0; number < count; ++number) {
            read(number, text);
        }
    } catch (const host::Exception&) {
        return std::nullopt;
    }
    return text;
}

void readAll(nu::RecordReader& records, std::string& text) {
    while (records.Next()) {
        text += std::to_string(records.Position());
        text += records.Xml();
        records.AppendJson(text);
    }
}

std::optional<nu::RecordIndex> indexOf(host::TStream& file, std::int64_t spacing) {
    try {
        return nu::RecordIndex::Build(file, 0, spacing);
    } catch (const host::Exception&) {
        return std::nullopt;
    }
}

bool isUtf8(host::TStream& file) {
    file.SetPosition(0);
    nu::RecordReader records(file, u"none");
    static_cast<void>(records.Next());
    const std::string& name = records.Form().encoding;
    return name == "UTF-8" || name == "utf-8";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) {
        return 0;
    }
    constexpr const char16_t* paths[] = {u"a/r", u"r", u"a/b/r", u"a/*"};
    const char16_t* const path = paths[data[0] % 4];
    const int count = 1 + data[1] % 9;
    host::TMemoryViewStream file({reinterpret_cast<const char*>(data) + 3, size - 3});

    const Outcome expected = joined(1, [&](int, std::string& text) {
        file.SetPosition(0);
        nu::RecordReader records(file, path);
        readAll(records, text);
    });
    const std::optional<nu::RecordIndex> index = indexOf(file, 1 + data[2]);
    const Outcome exact = !index ? std::nullopt : joined(count, [&](int number, std::string& text) {
        nu::RecordReader part(file, path, *index, nu::shareOf(file.GetSize(), number, count));
        readAll(part, text);
    });
    const Outcome plain = joined(count, [&](int number, std::string& text) {
        nu::RecordReader part(file, path, nu::shareOf(file.GetSize(), number, count));
        readAll(part, text);
    });
    if ((exact && exact != expected) || (plain && plain != expected) ||
        (expected && !exact && isUtf8(file))) {
        std::abort();
    }
    return 0;
}
