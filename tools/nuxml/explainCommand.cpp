#include "explainCommand.h"

#include <algorithm>
#include <set>
#include <string>

#include "arguments.h"
#include "common/utf8.h"
#include "documentInput.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "pathSteps.h"
#include "pathText.h"

namespace tool {

namespace {

constexpr std::size_t mostNames = 12; ///< that are told where a step leads nowhere

/// What is right below the nodes at a path, for whoever missed it.
std::string namesBelow(TNuDOMDocument& document, std::u16string_view path,
                       TNuDOMSelectOptions options) {
    std::set<std::u16string> names;
    const auto note = [&](const TNuDOMNode& node, std::u16string_view prefix) {
        if (names.size() <= mostNames) {
            names.insert(std::u16string(prefix) + node.get_nodeName());
        }
    };
    if (path.empty()) {
        note(*document.get_documentElement(), {});
    } else {
        const auto nodes = document.CreateNodeList(path, options);
        for (TNuDOMNode* node : *nodes) {
            if (node->get_nodeType() == host::ELEMENT_NODE) {
                const auto& element = static_cast<const TNuDOMElement&>(*node);
                std::ranges::for_each(element.Attributes(),
                                      [&](const auto& attribute) { note(attribute, u"@"); });
                std::ranges::for_each(element.ChildElements(),
                                      [&](const auto& child) { note(child, {}); });
            }
        }
    }
    std::string text;
    for (const std::u16string& name : names) {
        text += (text.empty() ? "" : ", ") + NuToUtf8(name);
    }
    return text.empty() ? "nothing" : text;
}

/// What the parts of a path are, in columns: the part, how many nodes pass it, what it means.
class Explanation {
public:
    Explanation(Output& output, TNuDOMDocument* document, TNuDOMSelectOptions options)
        : output_(output), document_(document), options_(options) {}

    void write(std::u16string_view alternative) {
        const std::vector<PathPart> parts = partsOf(alternative);
        std::size_t width = 0;
        for (const PathPart& part : parts) {
            width = std::max(width, part.text.size());
        }
        std::size_t begin = 0; // of the step that the part belongs to
        for (const PathPart& part : parts) {
            const bool isFilter = part.text.starts_with(u'[');
            output_.write("  ");
            output_.writeText(part.text, Escapes::Visible);
            output_.writeSpaces(width - part.text.size() + 2);
            const std::size_t count = document_ ? writeCount(alternative.substr(0, part.end)) : 1;
            output_.write(part.meaning);
            if (count == 0 && !isDead_) {
                isDead_ = true;
                writeWhy(alternative.substr(0, begin), isFilter);
            }
            begin = part.end;
            output_.write('\n');
        }
    }

private:
    std::size_t writeCount(std::u16string_view path) {
        constexpr std::size_t countWidth = 8;
        const std::size_t count = document_->CreateNodeList(path, options_)->Count();
        const std::string digits = std::to_string(count);
        output_.writeSpaces(countWidth - std::min(digits.size(), countWidth));
        output_.write(digits);
        output_.write("  ");
        return count;
    }

    /// Where nothing is left for the first time.
    void writeWhy(std::u16string_view before, bool isFilter) {
        if (!isFilter) {
            output_.write("; there is ");
            output_.writeText(NuFromUtf8(namesBelow(*document_, before, options_)),
                              Escapes::Visible);
        }
    }

    Output& output_;
    TNuDOMDocument* document_;
    TNuDOMSelectOptions options_;
    bool isDead_ = false;
};

ExitCode explainPath(Console& console, std::u16string_view path, TNuDOMDocument* document,
                     TNuDOMSelectOptions options) {
    const std::vector<std::u16string> alternatives = alternativesOf(path);
    for (const std::u16string& alternative : alternatives) {
        if (alternatives.size() > 1) {
            console.output().writeText(alternative, Escapes::Visible);
            console.output().write('\n');
        }
        Explanation(console.output(), document, options).write(alternative);
    }
    return exitDone;
}

ExitCode explainIn(Console& console, std::string_view name, std::u16string_view path,
                   TNuDOMSelectOptions options, const ReadingOptions& reading) {
    const LoadedDocument loaded = loadDocument(console, name, reading);
    if (!loaded.document) {
        return loaded.exitCode;
    }
    console.output().write(displayName(name));
    console.output().write(":\n");
    try {
        explainPath(console, path, loaded.document.get(), options);
        return loaded.document->CreateNodeList(path, options)->Count() == 0 ? exitNothing
                                                                            : exitDone;
    } catch (const host::Exception& error) {
        console.output().write('\n');
        complainAboutPath(console, displayName(name), path, error);
        return exitUsage;
    }
}

} // namespace

ExitCode runExplain(Console& console, Arguments arguments) {
    bool ignoresCase = false;
    bool ignoresNamespace = false;
    ReadingOptions reading;
    const auto operands = parseArguments(arguments,
                                         {{"-I", ignoresCase},
                                          {"--ignore-case", ignoresCase},
                                          {"-N", ignoresNamespace},
                                          {"--ignore-namespace", ignoresNamespace},
                                          {largeOption, reading.isLarge},
                                          {rawOption, reading.isRaw}},
                                         {{whiteOption, reading.white}});
    if (operands.empty()) {
        throw UsageError("a path is missing");
    }
    const std::u16string path = pathFromArgument(operands.front().text);
    checkPath(path);
    const TNuDOMSelectOptions options =
        (ignoresCase ? soCaseInsensitive : TNuDOMSelectOptions()) |
        (ignoresNamespace ? soIgnoreNamespace : TNuDOMSelectOptions());
    if (operands.size() == 1) {
        return explainPath(console, path, nullptr, options);
    }
    ExitCode worst = exitDone;
    for (std::size_t index = 1; index < operands.size(); ++index) {
        try {
            worst =
                std::max(worst, explainIn(console, operands[index].text, path, options, reading));
        } catch (const InputError& error) {
            console.complain(error.what());
            worst = exitInputOutput;
        }
    }
    return worst;
}

} // namespace tool
