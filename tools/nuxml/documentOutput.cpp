#include "documentOutput.h"

#include <filesystem>
#include <string>

#include "common/caseFolding.h"
#include "common/codePage.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileReplacement.h"
#include "input.h"

namespace tool {

namespace {

/// Output as a stream that is only written to.
class OutputStream final : public host::TStream {
public:
    explicit OutputStream(Output& output) noexcept : output_(output) {}

    std::size_t Read(void* /*buffer*/, std::size_t /*count*/) override { return 0; }
    std::size_t Write(const void* buffer, std::size_t count) override {
        output_.write({static_cast<const char*>(buffer), count});
        return count;
    }
    std::int64_t Seek(std::int64_t /*offset*/, host::SeekOrigin /*origin*/) override {
        throw host::EStreamError(u"Standard output has no position");
    }

private:
    Output& output_;
};

/// Makes the XML declaration name the encoding that the document is written in.
void declareUtf8(TNuDOMDocument& document) {
    constexpr std::u16string_view target = u"xml";
    constexpr std::u16string_view name = u"UTF-8";
    constexpr auto none = std::u16string::npos;
    std::u16string data = document.GetProcessingInstruction(target);
    const std::size_t word = data.find(u"encoding");
    const std::size_t opening = word != none ? data.find_first_of(u"\"'", word) : none;
    const std::size_t closing = opening != none ? data.find(data[opening], opening + 1) : none;
    if (closing == none) {
        return; // without a name it is UTF-8
    }
    const std::size_t length = closing - opening - 1;
    if (!NuEqualFolded(std::u16string_view(data).substr(opening + 1, length), name)) {
        document.SetProcessingInstruction(target, data.replace(opening + 1, length, name));
    }
}

void save(TNuDOMDocument& document, host::TStream& stream, bool formatted) {
    declareUtf8(document);
    // What a document without a declaration is written in.
    NuSetSystemCodePage(cNuCodePageUtf8);
    document.SaveToStream(stream, formatted, false);
}

} // namespace

ExitCode writeDocument(Console& console, TNuDOMDocument& document, bool formatted,
                       std::string_view target) {
    if (target == standardInput) {
        OutputStream stream(console.output());
        save(document, stream, formatted);
        if (console.output().isTerminal()) {
            console.output().write('\n');
        }
        return exitDone;
    }
    try {
        host::FileReplacement file{std::filesystem::path(target)};
        save(document, file.stream(), formatted);
        file.commit();
    } catch (const host::EStreamError& error) {
        console.complain("cannot write " + std::string(target), error.Message());
        return exitInputOutput;
    }
    return exitDone;
}

} // namespace tool
