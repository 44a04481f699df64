#include "convertCommand.h"

#include <optional>
#include <string>

#include "arguments.h"
#include "documentInput.h"
#include "documentOutput.h"
#include "fault.h"
#include "host/runtime/exception.h"
#include "host/runtime/unicode.h"
#include "input.h"
#include "jsonReader.h"
#include "jsonTree.h"
#include "nodeJson.h"
#include "pathText.h"
#include "xmlName.h"

namespace tool {

namespace {

struct Options {
    bool isCompact = false;
    std::optional<std::u16string> root;
    JsonForm json;
    ReadingOptions reading;
    std::string_view source = standardInput;
};

/// Whether a text begins as JSON does. What it is read from goes back to its start.
bool beginsAsJson(host::TStream& stream) {
    char block[64];
    std::string_view start(block, stream.Read(block, sizeof block));
    stream.SetPosition(0);
    start.remove_prefix(start.starts_with("\xEF\xBB\xBF") ? 3 : 0);
    const std::size_t first = start.find_first_not_of(" \t\r\n");
    return first != start.npos && (start[first] == '{' || start[first] == '[');
}

std::string contentOf(host::TStream& stream) {
    std::string content(static_cast<std::size_t>(stream.GetSize()), '\0');
    stream.ReadBuffer(content.data(), content.size());
    return content;
}

ExitCode writeXml(Console& console, const Input& input, const Options& options) {
    const std::string_view shown = displayName(options.source);
    LoadedDocument loaded;
    try {
        const JsonTree tree = treeOfJson(contentOf(*input.stream), options.root);
        loaded.document = tree.document;
        loaded.order.beforeRoot = tree.beforeRoot;
    } catch (const JsonFault& fault) {
        complainAt(console, shown, fault.place(), Severity::Error, host::utf8ToUtf16(fault.what()));
        return exitFault;
    } catch (const host::EStreamError& error) {
        console.complain("cannot read " + std::string(shown), error.Message());
        return exitInputOutput;
    }
    return writeDocument(console, loaded, {!options.isCompact, !options.isCompact},
                         {options.source, standardInput});
}

ExitCode writeJson(Console& console, const Input& input, const Options& options) {
    const LoadedDocument loaded = loadDocument(console, input, options.source, options.reading);
    if (!loaded.document) {
        return loaded.exitCode;
    }
    try {
        JsonWriter(console.output(), options.json)
            .writeDocument(*loaded.document, loaded.order.beforeRoot);
        console.output().write('\n');
    } catch (const host::Exception& error) {
        complainAt(console, displayName(options.source), {}, Severity::Error, error.Message());
        return exitFault;
    }
    return exitDone;
}

Options readOptions(Arguments arguments) {
    Options options;
    std::optional<std::string_view> root;
    const auto operands = parseArguments(arguments,
                                         {{"--compact", options.isCompact},
                                          {"--numbers", options.json.hasNumbers},
                                          {"--comments", options.json.keepsComments},
                                          {rawOption, options.reading.isRaw}},
                                         {{"--root", root}, {whiteOption, options.reading.white}});
    if (operands.size() > 1) {
        throw UsageError("more than one file");
    }
    if (!operands.empty()) {
        options.source = operands[0].text;
    }
    if (root) {
        options.root = pathFromArgument(*root);
        if (!isXmlName(*options.root)) {
            throw UsageError("\"" + std::string(*root) + "\" is no name");
        }
    }
    options.json.isIndented = !options.isCompact;
    return options;
}

} // namespace

ExitCode runConvert(Console& console, Arguments arguments) {
    const Options options = readOptions(arguments);
    const Input input = openDocument(options.source, options.reading, console.progress());
    return beginsAsJson(*input.stream) ? writeXml(console, input, options)
                                       : writeJson(console, input, options);
}

} // namespace tool
