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
    ReadingOptions reading;
    std::string_view source = standardInput;
    std::string_view target = standardInput;
};

Options readOptions(Arguments arguments) {
    Options options;
    bool isInPlace = false;
    std::optional<std::string_view> target;
    const auto operands = parseArguments(arguments,
                                         {{"--compact", options.isCompact},
                                          {largeOption, options.reading.isLarge},
                                          {rawOption, options.reading.isRaw},
                                          {forceOption, options.reading.isForced},
                                          {"-i", isInPlace}},
                                         {{"-o", target}, {whiteOption, options.reading.white}});
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
    const LoadedDocument loaded = loadDocument(console, options.source, options.reading);
    if (!loaded.document) {
        return loaded.exitCode;
    }
    return writeDocument(console, loaded, {!options.isCompact, !options.isCompact},
                         {options.source, options.target, options.reading.isForced});
}

} // namespace tool
