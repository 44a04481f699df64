#include "selectCommand.h"

#include <algorithm>
#include <optional>
#include <string>

#include "arguments.h"
#include "documentInput.h"
#include "fault.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "nodePaths.h"
#include "pathText.h"

namespace tool {

namespace {

enum class Form { Xml, Value, Path, Count };

struct Options {
    std::u16string path;
    TNuDOMSelectOptions select;
    Form form = Form::Xml;
    ReadingOptions reading;
    std::vector<Operand> inputs;
};

Options readOptions(Arguments arguments) {
    bool asXml = false;
    bool asValue = false;
    bool asPath = false;
    bool asCount = false;
    bool ignoresCase = false;
    bool ignoresNamespace = false;
    Options options;
    auto operands = parseArguments(arguments,
                                   {{"--xml", asXml},
                                    {"--value", asValue},
                                    {"--path", asPath},
                                    {"--count", asCount},
                                    {"-I", ignoresCase},
                                    {"--ignore-case", ignoresCase},
                                    {"-N", ignoresNamespace},
                                    {"--ignore-namespace", ignoresNamespace},
                                    {largeOption, options.reading.isLarge},
                                    {rawOption, options.reading.isRaw}},
                                   {{whiteOption, options.reading.white}});
    if (operands.empty()) {
        throw UsageError("a path is missing");
    }
    if (asXml + asValue + asPath + asCount > 1) {
        throw UsageError("--xml, --value, --path and --count exclude each other");
    }

    options.path = pathFromArgument(operands.front().text);
    checkPath(options.path);
    options.form = asValue ? Form::Value : asPath ? Form::Path : asCount ? Form::Count : Form::Xml;
    options.select = (ignoresCase ? soCaseInsensitive : TNuDOMSelectOptions()) |
                     (ignoresNamespace ? soIgnoreNamespace : TNuDOMSelectOptions());
    operands.erase(operands.begin());
    options.inputs = std::move(operands);
    if (options.inputs.empty()) {
        options.inputs.push_back({standardInput, false});
    }
    return options;
}

/// The results of one document, a line each.
class ResultWriter {
public:
    ResultWriter(Output& output, Form form, std::string_view place)
        : output_(output), form_(form), place_(place) {}

    /// Throws host::EConvertError for a value with a reference that cannot be read, and what is
    /// beyond the limit of output.
    void write(TNuDOMNode& node) {
        switch (form_) {
        case Form::Xml:
            writeXml(node);
            break;
        case Form::Value:
            output_.writeText(node.get_nodeType() == host::DOCUMENT_NODE ? std::u16string()
                                                                         : node.get_nodeValue(),
                              Escapes::Visible);
            break;
        case Form::Path:
            output_.write(place_);
            output_.writeText(paths_.pathOf(node), Escapes::Visible);
            break;
        case Form::Count:
            return;
        }
        output_.write('\n');
    }

    void writeCount(std::size_t count) {
        if (form_ == Form::Count) {
            output_.write(place_);
            output_.writeNumber(static_cast<std::int64_t>(count));
            output_.write('\n');
        }
    }

private:
    void writeXml(TNuDOMNode& node) {
        const std::u16string xml = node.get_xml();
        // An attribute is written with the blank that separates it from what is before it.
        const bool isAttribute = node.get_nodeType() == host::ATTRIBUTE_NODE;
        output_.writeText(std::u16string_view(xml).substr(isAttribute ? 1 : 0), Escapes::None);
    }

    Output& output_;
    Form form_;
    std::string_view place_;
    NodePaths paths_;
};

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
                    const Options& options) {
    // 1. Selecting; what fails here is a matter of the path.
    NuRef<TNuDOMNodeList> nodes;
    try {
        nodes = document.CreateNodeList(options.path, options.select);
    } catch (const host::Exception& error) {
        complainAboutPath(console, name, options.path, error);
        return {exitUsage};
    }

    // 2. Showing; what fails here is a matter of the document.
    const std::string place = options.inputs.size() > 1 ? std::string(name) + ':' : std::string();
    ResultWriter writer(console.output(), options.form, place);
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

Outcome selectFrom(Console& console, std::string_view name, const Options& options) {
    try {
        const LoadedDocument loaded = loadDocument(console, name, options.reading);
        if (!loaded.document) {
            return {loaded.exitCode};
        }
        return showResults(console, *loaded.document, displayName(name), options);
    } catch (const InputError& error) {
        console.complain(error.what());
    }
    return {exitInputOutput};
}

} // namespace

ExitCode runSelect(Console& console, Arguments arguments) {
    const Options options = readOptions(arguments);

    // A bad input does not keep the others from being searched, a bad path does.
    ExitCode worst = exitDone;
    std::size_t count = 0;
    for (const Operand& input : options.inputs) {
        const Outcome outcome = selectFrom(console, input.text, options);
        worst = std::max(worst, outcome.exitCode);
        count += outcome.count;
        if (outcome.exitCode == exitUsage || !console.output().isOpen()) {
            break;
        }
    }
    return count == 0 ? std::max(worst, exitNothing) : worst;
}

} // namespace tool
