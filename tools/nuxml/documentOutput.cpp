#include "documentOutput.h"

#include <filesystem>
#include <string>

#include "arguments.h"
#include "common/caseFolding.h"
#include "common/codePage.h"
#include "host/runtime/exception.h"
#include "host/runtime/fileReplacement.h"
#include "input.h"

namespace tool {

namespace {

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

/// Passes everything on but the "\r" of line ends.
class LineFeedStream final : public host::TStream {
public:
    explicit LineFeedStream(host::TStream& target) noexcept : target_(target) {}

    std::size_t Read(void* /*buffer*/, std::size_t /*count*/) override { return 0; }
    std::size_t Write(const void* buffer, std::size_t count) override {
        std::string_view rest(static_cast<const char*>(buffer), count);
        while (!rest.empty()) {
            if (isReturnPending_ && rest.front() != '\n') {
                target_.WriteBuffer("\r", 1);
            }
            const std::size_t length = rest.find('\r');
            isReturnPending_ = length != rest.npos;
            target_.WriteBuffer(rest.data(), isReturnPending_ ? length : rest.size());
            rest.remove_prefix(isReturnPending_ ? length + 1 : rest.size());
        }
        return count;
    }
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override {
        return target_.Seek(offset, origin);
    }

private:
    host::TStream& target_;
    bool isReturnPending_ = false;
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

void save(TNuDOMDocument& document, host::TStream& stream, DocumentForm form) {
    declareUtf8(document);
    // What a document without a declaration is written in.
    NuSetSystemCodePage(cNuCodePageUtf8);
    if (form.isFormatted && !form.endsLinesWithCR) {
        LineFeedStream lines(stream);
        document.SaveToStream(lines, true, false);
    } else {
        document.SaveToStream(stream, form.isFormatted, false);
    }
    if (form.endsWithLine) {
        const std::string_view lineEnd = form.endsLinesWithCR ? "\r\n" : "\n";
        stream.WriteBuffer(lineEnd.data(), lineEnd.size());
    }
}

} // namespace

std::string_view targetOf(std::string_view source, bool isInPlace,
                          std::optional<std::string_view> given) {
    if (isInPlace && given) {
        throw UsageError("-i and -o exclude each other");
    }
    if (isInPlace && source == standardInput) {
        throw UsageError("-i needs a file");
    }
    return isInPlace ? source : given.value_or(standardInput);
}

bool mayBeWritten(Console& console, const LoadedDocument& loaded, std::string_view source,
                  std::string_view target) {
    if (!loaded.hadDocumentType) {
        return true;
    }
    const bool isOnlyOne = source == target && source != standardInput;
    console.complain(std::string(displayName(source)) +
                     ": the document type declaration is not kept" +
                     (isOnlyOne ? "; the file stays as it is" : ""));
    return !isOnlyOne;
}

ExitCode writeDocument(Console& console, TNuDOMDocument& document, DocumentForm form,
                       std::string_view target) {
    if (target == standardInput) {
        OutputStream stream(console.output());
        try {
            save(document, stream, form);
        } catch (const host::EWriteError&) {
            return exitDone; // the output knows whether that is a fault
        }
        if (console.output().isTerminal() && !form.endsWithLine) {
            console.output().write('\n');
        }
        return exitDone;
    }
    try {
        host::FileReplacement file{std::filesystem::path(target)};
        save(document, file.stream(), form);
        file.commit();
    } catch (const host::EStreamError& error) {
        console.complain("cannot write " + std::string(target), error.Message());
        return exitInputOutput;
    }
    return exitDone;
}

} // namespace tool
