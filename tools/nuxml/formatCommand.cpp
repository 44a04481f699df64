#include "formatCommand.h"

#include <optional>

#include "arguments.h"
#include "decimal.h"
#include "documentInput.h"
#include "documentOutput.h"
#include "fileJobs.h"
#include "host/runtime/exception.h"
#include "input.h"

namespace tool {

namespace {

constexpr std::uint8_t widestIndentation = 32;

std::uint8_t indentationOf(std::string_view text) {
    const auto blanks = numberOf<unsigned>(text);
    if (!blanks || *blanks > widestIndentation) {
        throw UsageError("--indent is a number from 0 to 32, not " + std::string(text));
    }
    return static_cast<std::uint8_t>(*blanks);
}

/// Says which documents would be written otherwise.
ExitCode checkForm(Console& console, std::string_view name, const ReadingOptions& reading,
                   const DocumentForm& form) {
    const std::string shown(displayName(name));
    const Input input = openDocument(name, reading, console.progress());
    const LoadedDocument loaded = loadDocument(console, input, name, reading);
    if (!loaded.document) {
        return loaded.exitCode;
    }
    try {
        input.stream->SetPosition(0);
        if (isWrittenAlike(loaded, form, *input.stream)) {
            return exitDone;
        }
    } catch (const host::Exception& error) {
        console.complain("cannot compare " + shown, error.Message());
        return exitInputOutput;
    }
    console.complainAbout(shown, u"not formatted");
    return exitNothing;
}

} // namespace

ExitCode runFormat(Console& console, Arguments arguments) {
    bool isCompact = false;
    bool isInPlace = false;
    bool isCheck = false;
    ReadingOptions reading;
    std::optional<std::string_view> target;
    std::optional<std::string_view> indentation;
    const auto operands =
        parseArguments(arguments,
                       {{"--compact", isCompact},
                        {"--check", isCheck},
                        {largeOption, reading.isLarge},
                        {rawOption, reading.isRaw},
                        {forceOption, reading.isForced},
                        {"-i", isInPlace}},
                       {{"-o", target}, {"--indent", indentation}, {whiteOption, reading.white}});
    if (isCheck && (isInPlace || target || reading.isLarge)) {
        throw UsageError(
            "--check writes nothing and needs the whole text: not with -i, -o, --large");
    }
    DocumentForm form{!isCompact, !isCompact};
    if (indentation) {
        form.indentation = indentationOf(*indentation);
    }
    const FileJobs jobs(operands, isInPlace, target, reading.isForced, isCheck);
    return jobs.forEach(console, [&](const Destination& job) {
        if (isCheck) {
            return checkForm(console, job.source, reading, form);
        }
        const LoadedDocument loaded = loadDocument(console, job.source, reading);
        return loaded.document ? writeDocument(console, loaded, form, job) : loaded.exitCode;
    });
}

} // namespace tool
