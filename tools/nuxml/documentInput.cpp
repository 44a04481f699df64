#include "documentInput.h"

#include <algorithm>
#include <optional>

#include "common/codePage.h"
#include "fault.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "nuXmlSax.h"

namespace tool {

namespace {

/// What a document is read from: tells how far the reading has come, and sees how the text stands
/// on its lines.
class SourceStream final : public host::TStream {
public:
    SourceStream(host::TStream& source, std::string_view name, Progress& progress)
        : source_(source), name_(name), progress_(progress) {}

    [[nodiscard]] SourceLayout layout() const { return layout_.layout(); }

    std::size_t Read(void* buffer, std::size_t count) override {
        const std::size_t length = source_.Read(buffer, count);
        // A reader looks at the start and goes back to it.
        const auto known = static_cast<std::size_t>(
            std::min(seen_ - position_, static_cast<std::int64_t>(length)));
        layout_.see({static_cast<const char*>(buffer) + known, length - known});
        position_ += static_cast<std::int64_t>(length);
        seen_ = std::max(seen_, position_);
        showReading(progress_, name_, position_);
        return length;
    }
    std::size_t Write(const void* /*buffer*/, std::size_t /*count*/) override { return 0; }
    std::int64_t Seek(std::int64_t offset, host::SeekOrigin origin) override {
        position_ = source_.Seek(offset, origin);
        return position_;
    }
    std::int64_t GetSize() override { return source_.GetSize(); }

private:
    host::TStream& source_;
    std::string_view name_;
    Progress& progress_;
    LayoutFinder layout_;
    std::int64_t position_ = 0;
    std::int64_t seen_ = 0; ///< up to where the text was read at least once
};

} // namespace

Input openDocument(std::string_view name, const ReadingOptions& options, Progress& progress) {
    // Text that does not say what it is is UTF-8, whatever the environment says. That holds for
    // text of any length unless somebody asks for pieces, whose reader takes undeclared UTF-8 for
    // 8-bit text: what is written in its place must not differ.
    return openInput(name, options.isLarge ? InputReading::InPieces : InputReading::Whole,
                     progress);
}

LoadedDocument loadDocument(Console& console, std::string_view name,
                            const ReadingOptions& options) {
    return loadDocument(console, openDocument(name, options, console.progress()), name, options);
}

LoadedDocument loadDocument(Console& console, const Input& input, std::string_view name,
                            const ReadingOptions& options) {
    const std::optional<TNuConformingOptions> conforming = options.conforming();
    NuSetSystemCodePage(cNuCodePageUtf8);
    SourceStream stream(*input.stream, name, console.progress());
    const std::string_view shown = displayName(name);
    LoadedDocument loaded{TNuDOMDocument::Create()};
    loaded.isRaw = options.isRaw;
    loaded.document->SetLimits(documentLimits);

    // 1. The tree is built from a reader that also tells about faults and their places.
    TNuSAXXMLReader reader;
    reader.SetLimits(inputLimits);
    reader.SetParserChoice(input.parserChoice);
    if (conforming) {
        reader.SetConforming(*conforming);
    }
    const auto builder =
        host::makeRef<TreeBuilder>(reader, *loaded.document, shown, console.progress());
    reader.setContentHandler(builder);
    reader.setLexicalHandler(builder);
    const auto complain = [&](host::ISAXParseError& error, Severity severity) {
        loaded.isComplainedAbout = true;
        complainAt(console, shown, {error.getLineNumber(), error.getColumnNumber()}, severity,
                   error.getMessage());
    };
    std::optional<Fatality> fatality;
    reader.OnWarning = [&](host::ISAXParseError& error) { complain(error, Severity::Warning); };
    reader.OnError = [&](host::ISAXParseError& error) { complain(error, Severity::Error); };
    reader.OnFatalError = [&](host::ISAXParseError& error) { fatality = fatalityOf(error); };

    // 2. What leaves the parse is a fault as well, a fatal one also where it returned normally.
    std::optional<std::u16string> exceptionMessage;
    try {
        reader.Parse(stream);
    } catch (const std::exception&) {
        exceptionMessage = host::currentExceptionMessage();
    }
    console.progress().clear();
    if (fatality) {
        loaded.exitCode = explain(console, shown, *fatality);
    } else if (exceptionMessage) {
        complainAt(console, shown, {}, Severity::Error, *exceptionMessage);
        loaded.exitCode = exitFault;
    } else if (&builder->tree().Current() != loaded.document.get()) {
        complainAt(console, shown, {}, Severity::Warning,
                   u"the document ends inside of \"" + builder->tree().Current().get_nodeName() +
                       u"\"");
        loaded.isComplainedAbout = true;
    }
    loaded.isComplainedAbout = loaded.isComplainedAbout || loaded.exitCode != exitDone;

    // 3. What was read of a faulty document is something only to whoever insists on it.
    if (loaded.exitCode == exitFault && options.isForced && loaded.document->GetRootNode()) {
        loaded.exitCode = exitDone;
    }
    if (loaded.exitCode != exitDone) {
        loaded.document.reset();
    }
    loaded.form = reader.SourceForm();
    loaded.order = builder->order();
    loaded.layout = stream.layout();
    return loaded;
}

} // namespace tool
