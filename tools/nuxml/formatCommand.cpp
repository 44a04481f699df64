#include "formatCommand.h"

#include <optional>

#include "arguments.h"
#include "documentInput.h"
#include "documentOutput.h"
#include "input.h"

namespace tool {

namespace {

struct Options {
    bool isCompact = false;
    bool isLarge = false;
    std::string_view source = standardInput;
    std::string_view target = standardInput;
};

Options readOptions(Arguments arguments) {
    Options options;
    bool isInPlace = false;
    std::optional<std::string_view> target;
    const auto operands = parseArguments(
        arguments,
        {{"--compact", options.isCompact}, {largeOption, options.isLarge}, {"-i", isInPlace}},
        {{"-o", target}});
    if (operands.size() > 1) {
        throw UsageError("more than one file");
    }
    if (!operands.empty()) {
        options.source = operands[0].text;
    }
    options.target = targetOf(options.source, isInPlace, target);
    return options;
}

} // namespace

ExitCode runFormat(Console& console, Arguments arguments) {
    const Options options = readOptions(arguments);
    const LoadedDocument loaded = loadDocument(console, options.source, options.isLarge);
    if (!loaded.document) {
        return loaded.exitCode;
    }
    if (!mayBeWritten(console, loaded, options.source, options.target)) {
        return exitFault;
    }
    return writeDocument(console, *loaded.document, {!options.isCompact}, options.target);
}

} // namespace tool
