#include "editCommand.h"

#include <optional>
#include <string>
#include <vector>

#include "arguments.h"
#include "common/utf8.h"
#include "documentInput.h"
#include "documentOutput.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "pathText.h"

namespace tool {

namespace {

constexpr std::string_view setOption = "--set";
constexpr std::string_view createOption = "--create";
constexpr std::string_view deleteOption = "--delete";

/// One change, as the command line asks for it.
struct Operation {
    GivenOption given;
    std::u16string path;
    std::u16string value;
};

struct Options {
    std::vector<Operation> operations;
    ReadingOptions reading;
    std::string_view source = standardInput;
    std::string_view target = standardInput;
};

Operation operationOf(const GivenOption& given) {
    Operation operation{given, pathFromArgument(given.value), {}};
    std::u16string& path = operation.path;
    if (given.name != deleteOption) {
        const std::size_t equals = findOutside(path, u'=');
        if (equals == path.npos) {
            throw UsageError(std::string(given.name) + ' ' + std::string(given.value) +
                             " lacks \"=VALUE\"");
        }
        operation.value = path.substr(equals + 1);
        path.resize(equals);
    }
    // The library takes an empty path for all elements, which nobody means here.
    if (path.empty()) {
        throw UsageError("the path of " + std::string(given.name) + " is empty");
    }
    checkPath(path);
    return operation;
}

Options readOptions(Arguments arguments) {
    Options options;
    bool isInPlace = false;
    std::optional<std::string_view> target;
    std::vector<GivenOption> given;
    const auto operands =
        parseArguments(arguments,
                       {{largeOption, options.reading.isLarge},
                        {rawOption, options.reading.isRaw},
                        {forceOption, options.reading.isForced},
                        {"-i", isInPlace}},
                       {{"-o", target}, {whiteOption, options.reading.white}},
                       {{setOption, given}, {createOption, given}, {deleteOption, given}});
    for (const GivenOption& option : given) {
        options.operations.push_back(operationOf(option));
    }
    if (options.operations.empty()) {
        throw UsageError("there is nothing to do: --set, --create or --delete is missing");
    }
    if (operands.size() > 1) {
        throw UsageError("more than one file");
    }
    if (!operands.empty()) {
        options.source = operands[0].text;
    }
    options.target = targetOf(options.source, isInPlace, target);
    return options;
}

std::size_t setValues(TNuDOMNodeList& nodes, std::u16string_view value) {
    for (TNuDOMNode* node : nodes) {
        if (node != nullptr) { // else it was a text of an element whose text is set already
            node->set_nodeValue(value);
        }
    }
    return nodes.Count();
}

/// Sets an attribute of every element at a path, and makes both where they are missing. Paths find
/// attributes by their local name; one with a prefix is meant as it is written.
std::size_t createAttributes(TNuDOMDocument& document, std::u16string_view elementPath,
                             std::u16string_view name, std::u16string_view value) {
    const auto elements = document.CreateElementList(elementPath, soCreate);
    for (TNuDOMNode* node : *elements) {
        auto& element = static_cast<TNuDOMElement&>(*node);
        const auto found = element.CreateNodeList(u'@' + std::u16string(name));
        if (setValues(*found, value) == 0) {
            element.setAttribute(name, value);
        }
    }
    return elements->Count();
}

std::size_t create(TNuDOMDocument& document, const Operation& operation) {
    // Paths make no attributes, so a last step that names one is done here.
    const std::u16string_view path = operation.path;
    const std::size_t slash = findLastOutside(path, u'/');
    const bool hasElement = slash != path.npos && slash > 0 && path[slash - 1] != u'/' &&
                            path.find(u" | ") == path.npos;
    if (hasElement && path.substr(slash + 1).starts_with(u'@')) {
        const std::u16string_view name = path.substr(slash + 2);
        if (!name.empty() && name.find_first_of(u"*[ ") == name.npos) {
            return createAttributes(document, path.substr(0, slash), name, operation.value);
        }
    }
    return setValues(*document.CreateNodeList(path, soCreate), operation.value);
}

std::size_t remove(TNuDOMDocument& document, const Operation& operation) {
    const auto nodes = document.CreateNodeList(operation.path);
    for (TNuDOMNode* node : *nodes) {
        if (node == nullptr) {
            continue; // it stood below another one and went with that
        }
        if (node == &document || node == document.get_documentElement()) {
            throw UsageError("a document without its document element is none, so --delete " +
                             std::string(operation.given.value) + " is refused");
        }
        node->_delete();
    }
    return nodes->Count();
}

/// Gives the number of nodes that were changed.
std::size_t apply(TNuDOMDocument& document, const Operation& operation) {
    if (operation.given.name == deleteOption) {
        return remove(document, operation);
    }
    return operation.given.name == createOption
               ? create(document, operation)
               : setValues(*document.CreateNodeList(operation.path), operation.value);
}

ExitCode applyAll(Console& console, TNuDOMDocument& document, const Options& options) {
    const std::string_view name = displayName(options.source);
    for (const Operation& operation : options.operations) {
        try {
            if (apply(document, operation) == 0) {
                const bool couldCreate = operation.given.name == setOption;
                console.complain(std::string(name) + ": nothing matched " +
                                 NuToUtf8(operation.path) +
                                 (couldCreate ? "; --create makes what is missing" : ""));
                return exitNothing;
            }
        } catch (const host::Exception& error) {
            complainAboutPath(console, name, operation.path, error);
            return exitUsage;
        }
    }
    return exitDone;
}

} // namespace

ExitCode runEdit(Console& console, Arguments arguments) {
    const Options options = readOptions(arguments);
    const LoadedDocument loaded = loadDocument(console, options.source, options.reading);
    if (!loaded.document) {
        return loaded.exitCode;
    }
    // All changes or none: after a failure nothing is written.
    const ExitCode exitCode = applyAll(console, *loaded.document, options);
    if (exitCode != exitDone) {
        return exitCode;
    }
    const SourceLayout& layout = loaded.layout;
    return writeDocument(console, loaded,
                         {layout.hasLines, layout.hasLineBreak, layout.endsWithLine},
                         {options.source, options.target, options.reading.isForced});
}

} // namespace tool
