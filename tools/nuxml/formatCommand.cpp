#include "formatCommand.h"

#include <filesystem>
#include <optional>
#include <string>

#include "arguments.h"
#include "documentInput.h"
#include "documentOutput.h"
#include "input.h"

namespace tool {

namespace {

struct Options {
    bool isCompact = false;
    bool isInPlace = false;
    std::optional<std::string_view> target;
    std::string_view source = standardInput;
};

Options readOptions(Arguments arguments) {
    Options options;
    const auto operands =
        parseArguments(arguments, {{"--compact", options.isCompact}, {"-i", options.isInPlace}},
                       {{"-o", options.target}});
    if (operands.size() > 1) {
        throw UsageError("more than one file");
    }
    if (!operands.empty()) {
        options.source = operands[0].text;
    }
    if (options.isInPlace && options.target) {
        throw UsageError("-i and -o exclude each other");
    }
    if (options.isInPlace) {
        if (options.source == standardInput) {
            throw UsageError("-i needs a file");
        }
        options.target = options.source;
    }
    return options;
}

} // namespace

ExitCode runFormat(Console& console, Arguments arguments) {
    const Options options = readOptions(arguments);
    const LoadedDocument loaded = loadDocument(console, options.source);
    if (!loaded.document) {
        return loaded.exitCode;
    }
    if (loaded.hadDocumentType) {
        // A document that goes beside the old one may be without it, the only one must not.
        console.complain(std::string(displayName(options.source)) +
                         ": the document type declaration is not kept" +
                         (options.isInPlace ? "; the file stays as it is" : ""));
        if (options.isInPlace) {
            return exitFault;
        }
    }
    return writeDocument(console, *loaded.document, !options.isCompact,
                         options.target.value_or(standardInput));
}

} // namespace tool
