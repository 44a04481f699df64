#include "documentInput.h"

#include <optional>

#include "common/codePage.h"
#include "fault.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "nuXmlSax.h"

namespace tool {

LoadedDocument loadDocument(Console& console, std::string_view name) {
    // Text that does not say what it is is UTF-8, whatever the environment says.
    NuSetSystemCodePage(cNuCodePageUtf8);
    const auto stream = openInput(name, console.progress());
    const std::string_view shown = displayName(name);
    LoadedDocument loaded{TNuDOMDocument::Create()};
    loaded.layout = layoutOf(*stream);

    // 1. The tree is built from a reader that also tells about faults and their places.
    TNuSAXXMLReader reader;
    const auto handler = host::makeRef<TNuSaxToDomHandler>(reader, *loaded.document);
    reader.setContentHandler(handler);
    reader.OnComment = [&](auto& text) { handler->comment(text.WideView()); };
    reader.OnStartCDATA = [&] { handler->startCDATA(); };
    reader.OnEndCDATA = [&] { handler->endCDATA(); };
    reader.OnStartDTD = [&](auto&, auto&, auto&) { loaded.hadDocumentType = true; };
    const auto complain = [&](host::ISAXParseError& error) {
        complainAt(console, shown, {error.getLineNumber(), error.getColumnNumber()},
                   error.getMessage());
    };
    std::optional<Fatality> fatality;
    reader.OnWarning = complain;
    reader.OnError = complain;
    reader.OnFatalError = [&](host::ISAXParseError& error) { fatality = fatalityOf(error); };

    // 2. What leaves the parse is a fault as well, a fatal one also where it returned normally.
    std::optional<std::u16string> exceptionMessage;
    try {
        reader.Parse(*stream);
    } catch (const std::exception&) {
        exceptionMessage = host::currentExceptionMessage();
    }
    if (fatality) {
        loaded.exitCode = explain(console, shown, *fatality);
    } else if (exceptionMessage) {
        console.complain(shown, *exceptionMessage);
        loaded.exitCode = exitFault;
    }
    if (loaded.exitCode != exitDone) {
        loaded.document.reset();
    }
    return loaded;
}

} // namespace tool
