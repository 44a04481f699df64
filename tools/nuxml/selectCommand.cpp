#include "selectCommand.h"

#include <algorithm>
#include <optional>
#include <string>

#include "arguments.h"
#include "documentInput.h"
#include "fault.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "pathText.h"
#include "resultWriter.h"

namespace tool {

namespace {

struct Options {
    std::u16string path;
    TNuDOMSelectOptions select;
    ResultOptions results;
    std::optional<Columns> columns{};
    ReadingOptions reading;
    std::vector<Operand> inputs;
};

/// The forms that exclude each other, as they are given.
struct GivenForms {
    bool isXml = false;
    bool isValue = false;
    bool isPath = false;
    bool isCount = false;
    bool isJson = false;
    bool isCsv = false;
    bool isTsv = false;

    /// Throws UsageError for several.
    [[nodiscard]] ResultForm chosen(bool hasColumns) const {
        const bool isRow = isCsv || isTsv;
        const bool isNode = isXml || isValue || isPath || isCount;
        if (isXml + isValue + isPath + isCount + isJson + isCsv + isTsv > 1) {
            throw UsageError("--xml, --value, --path, --count, --json, --csv and --tsv exclude "
                             "each other");
        }
        if (hasColumns ? isNode : isRow) {
            throw UsageError("--columns goes together with --tsv, --csv and --json, and these "
                             "two first ones only with it");
        }
        return isJson       ? ResultForm::Json
               : isCsv      ? ResultForm::Csv
               : isValue    ? ResultForm::Value
               : isPath     ? ResultForm::Path
               : isCount    ? ResultForm::Count
               : hasColumns ? ResultForm::Tsv
                            : ResultForm::Xml;
    }
};

Options readOptions(Arguments arguments) {
    GivenForms forms;
    bool ignoresCase = false;
    bool ignoresNamespace = false;
    std::optional<std::string_view> columns;
    Options options;
    auto operands = parseArguments(
        arguments,
        {{"--xml", forms.isXml},
         {"--value", forms.isValue},
         {"--path", forms.isPath},
         {"--count", forms.isCount},
         {"--json", forms.isJson},
         {"--csv", forms.isCsv},
         {"--tsv", forms.isTsv},
         {"--header", options.results.hasHeader},
         {"--numbers", options.results.hasNumbers},
         {"-I", ignoresCase},
         {"--ignore-case", ignoresCase},
         {"-N", ignoresNamespace},
         {"--ignore-namespace", ignoresNamespace},
         {largeOption, options.reading.isLarge},
         {rawOption, options.reading.isRaw}},
        {{whiteOption, options.reading.white}, {"-c", columns}, {"--columns", columns}});
    if (operands.empty()) {
        throw UsageError("a path is missing");
    }

    options.path = pathFromArgument(operands.front().text);
    checkPath(options.path);
    options.results.form = forms.chosen(columns.has_value());
    options.select = (ignoresCase ? soCaseInsensitive : TNuDOMSelectOptions()) |
                     (ignoresNamespace ? soIgnoreNamespace : TNuDOMSelectOptions());
    if (columns) {
        options.columns.emplace(pathFromArgument(*columns), options.select);
    }
    operands.erase(operands.begin());
    options.inputs = std::move(operands);
    if (options.inputs.empty()) {
        options.inputs.push_back({standardInput, false});
    }
    return options;
}

/// How many nodes a path selects with these options; none where it cannot be followed.
std::size_t countWith(TNuDOMDocument& document, const Options& options, TNuDOMSelectOptions more) {
    try {
        return document.CreateNodeList(options.path, options.select | more)->Count();
    } catch (const host::Exception&) {
        return 0;
    }
}

/// Says which options would have made the path match; the fewest that do.
void suggestOptions(Console& console, TNuDOMDocument& document, std::string_view name,
                    const Options& options) {
    struct Suggestion {
        TNuDOMSelectOptions options;
        std::string_view text;
    };
    const Suggestion suggestions[] = {
        {soIgnoreNamespace, "without regard to namespaces (-N)"},
        {soCaseInsensitive, "without regard to letter case (-I)"},
        {soIgnoreNamespace | soCaseInsensitive,
         "without regard to namespaces and letter case (-N -I)"},
    };
    for (const Suggestion& suggestion : suggestions) {
        if (const std::size_t count = countWith(document, options, suggestion.options)) {
            console.complain(std::string(name) + ": nothing matched; " +
                             std::string(suggestion.text) + ' ' + std::to_string(count) +
                             (count == 1 ? " node would" : " nodes would"));
            return;
        }
    }
}

/// What one input gave, and how much.
struct Outcome {
    ExitCode exitCode = exitDone;
    std::size_t count = 0;
};

Outcome showResults(Console& console, TNuDOMDocument& document, std::string_view name,
                    const Options& options, ResultWriter& writer) {
    // 1. Selecting; what fails here is a matter of the path.
    NuRef<TNuDOMNodeList> nodes;
    try {
        nodes = document.CreateNodeList(options.path, options.select);
    } catch (const host::Exception& error) {
        complainAboutPath(console, name, options.path, error);
        return {exitUsage};
    }

    // 2. Showing; what fails here is a matter of the document.
    writer.beginDocument(options.inputs.size() > 1 ? std::string(name) + ':' : std::string());
    try {
        for (TNuDOMNode* node : *nodes) {
            writer.write(*node);
            if (!console.output().isOpen()) {
                break;
            }
        }
    } catch (const host::Exception& error) {
        complainAt(console, name, {}, Severity::Error, error.Message());
        return {exitFault, nodes->Count()};
    }
    writer.writeCount(nodes->Count());

    // 3. Why there is nothing.
    if (nodes->Count() == 0) {
        suggestOptions(console, document, name, options);
    }
    return {exitDone, nodes->Count()};
}

Outcome selectFrom(Console& console, std::string_view name, const Options& options,
                   ResultWriter& writer) {
    try {
        const LoadedDocument loaded = loadDocument(console, name, options.reading);
        if (!loaded.document) {
            return {loaded.exitCode};
        }
        return showResults(console, *loaded.document, displayName(name), options, writer);
    } catch (const InputError& error) {
        console.complain(error.what());
    }
    return {exitInputOutput};
}

} // namespace

ExitCode runSelect(Console& console, Arguments arguments) {
    Options options = readOptions(arguments);
    options.results.columns = options.columns ? &*options.columns : nullptr;
    ResultWriter writer(console.output(), options.results);

    // A bad input does not keep the others from being searched, a bad path does.
    ExitCode worst = exitDone;
    std::size_t count = 0;
    for (const Operand& input : options.inputs) {
        const Outcome outcome = selectFrom(console, input.text, options, writer);
        worst = std::max(worst, outcome.exitCode);
        count += outcome.count;
        if (outcome.exitCode == exitUsage || !console.output().isOpen()) {
            break;
        }
    }
    writer.end();
    return count == 0 ? std::max(worst, exitNothing) : worst;
}

} // namespace tool
