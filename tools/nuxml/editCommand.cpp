#include "editCommand.h"

#include <optional>
#include <string>
#include <vector>

#include "arguments.h"
#include "changes.h"
#include "common/utf8.h"
#include "documentInput.h"
#include "documentOutput.h"
#include "fileJobs.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "pathText.h"

namespace tool {

namespace {

ExitCode applyAll(Console& console, TNuDOMDocument& document, std::string_view source,
                  const std::vector<Change>& changes) {
    const std::string_view name = displayName(source);
    for (const Change& change : changes) {
        try {
            if (applyChange(document, change) == 0) {
                const bool couldCreate = change.given.name == setOption;
                console.complain(std::string(name) + ": nothing matched " + NuToUtf8(change.path) +
                                 (couldCreate ? "; --create makes what is missing" : ""));
                return exitNothing;
            }
        } catch (const host::Exception& error) {
            complainAboutPath(console, name, change.path, error);
            return exitUsage;
        }
    }
    return exitDone;
}

ExitCode editDocument(Console& console, const Destination& job, const ReadingOptions& reading,
                      const std::vector<Change>& changes) {
    const LoadedDocument loaded = loadDocument(console, job.source, reading);
    if (!loaded.document) {
        return loaded.exitCode;
    }
    // All changes or none: after a failure nothing is written.
    const ExitCode exitCode = applyAll(console, *loaded.document, job.source, changes);
    if (exitCode != exitDone) {
        return exitCode;
    }
    const SourceLayout& layout = loaded.layout;
    return writeDocument(console, loaded,
                         {layout.hasLines, layout.hasLineBreak, layout.endsWithLine}, job);
}

} // namespace

ExitCode runEdit(Console& console, Arguments arguments) {
    ReadingOptions reading;
    bool isInPlace = false;
    std::optional<std::string_view> target;
    std::vector<GivenOption> given;
    const auto operands = parseArguments(arguments,
                                         {{largeOption, reading.isLarge},
                                          {rawOption, reading.isRaw},
                                          {forceOption, reading.isForced},
                                          {"-i", isInPlace}},
                                         {{"-o", target}, {whiteOption, reading.white}},
                                         {{"-s", given},
                                          {"-c", given},
                                          {"-r", given},
                                          {"-m", given},
                                          {"-d", given},
                                          {setOption, given},
                                          {createOption, given},
                                          {renameOption, given},
                                          {moveOption, given},
                                          {deleteOption, given}});
    std::vector<Change> changes;
    changes.reserve(given.size());
    for (const GivenOption& option : given) {
        changes.push_back(changeOf(option));
    }
    if (changes.empty()) {
        throw UsageError(
            "there is nothing to do: --set, --create, --rename, --move or --delete is missing");
    }
    return FileJobs(operands, isInPlace, target, reading.isForced)
        .forEach(console, [&](const Destination& job) {
            return editDocument(console, job, reading, changes);
        });
}

} // namespace tool
