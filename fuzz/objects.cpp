// Objects out of any bytes: a text fills an object or says why not, makes objects of registered
// classes that fit only, and what it left in the object is written, read and written again as the
// same text.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "common/utf8.h"
#include "host/runtime/exception.h"
#include "host/runtime/memoryStream.h"
#include "nuObj2Xml.h"
#include "support/machine.h"

using fuzz::Machine;

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// Whether the text could be read as a whole.
bool read(Machine& machine, std::u16string_view text, TNuDeserializeOptions options) {
    try {
        TNuSerializer(machine).DeSerialize(text, options);
        return true;
    } catch (const host::Exception&) {
        return false;
    }
}

/// What a stream leaves in a machine, as its text, and the message of what it failed at.
struct Outcome {
    std::u16string object;
    std::u16string message;

    bool operator==(const Outcome&) const = default;
};

/// The same of a text. Blanks behind it keep it away from the end, near which nothing is read
/// straight from its bytes.
Outcome outcome(std::string bytes, std::string_view blank, TNuDeserializeOptions options) {
    for (int count = 0; count < 128; ++count) {
        bytes += blank;
    }
    host::TMemoryViewStream stream(bytes);
    Machine machine;
    std::u16string message;
    try {
        NuDeSerializeObject(machine, stream, options);
    } catch (const host::Exception& error) {
        message = error.Message();
    }
    return {TNuSerializer(machine).Serialize(u"M"), message};
}

/// UTF-8 is read straight from its bytes, UTF-16 by events; checked, in one pass and in two.
void requireSame(std::u16string_view text, TNuDeserializeOptions options) {
    if (text.starts_with(u'\0')) {
        return; // the mark of UTF-16 would be that of UTF-32
    }
    std::string units = "\xFF\xFE";
    for (const char16_t unit : text) {
        units += {static_cast<char>(unit), static_cast<char>(unit >> 8)};
    }
    const Outcome direct = outcome("\xEF\xBB\xBF" + NuToUtf8(text), " ", options);
    const bool isChecked = !options.has(dsUnchecked);
    if (isChecked && (text.find(u'\0') != text.npos || text.find(u"encoding") != text.npos)) {
        return; // NULs are passed on by one of them alone, and one would have another encoding
    }
    const Outcome told = outcome(units, std::string_view(" \0", 2), options);
    // Up to a fault one of them may have come farther.
    require(direct.message.empty() == told.message.empty());
    require(direct == told || (isChecked && !direct.message.empty()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    fuzz::registerMachineParts();
    const auto readOptions = TNuDeserializeOptions::fromBits(data[0] & 3U);
    const auto writeOptions = TNuNamespaceOptions::fromBits(data[1] & 127U);
    const std::u16string text = NuFromUtf8({reinterpret_cast<const char*>(data) + 2, size - 2});

    requireSame(text, readOptions | dsUnchecked);
    requireSame(text, readOptions);

    // What was read before something failed is as good an object as any.
    Machine machine;
    read(machine, text, readOptions);
    TNuSerializer writer(machine);
    writer.SetNamespaceOptions(writeOptions);
    const std::u16string written = writer.Serialize(u"M");
    Machine again;
    require(read(again, written, {}));
    TNuSerializer rewriter(again);
    rewriter.SetNamespaceOptions(writeOptions);
    require(rewriter.Serialize(u"M") == written);
    return 0;
}
