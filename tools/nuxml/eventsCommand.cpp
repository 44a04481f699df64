#include "eventsCommand.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <typeinfo>

#include "arguments.h"
#include "eventHandler.h"
#include "eventJson.h"
#include "eventText.h"
#include "host/runtime/exception.h"
#include "host/runtime/unicode.h"
#include "input.h"
#include "nuXmlSax.h"
#include "readingOptions.h"

namespace tool {

namespace {

struct Options {
    bool asJson = false;
    bool showsPlaces = false;
    ReadingOptions reading;
    std::optional<TNuConformingOptions> conforming{}; ///< for the stage, if there is one
};

/// The class of an exception without its namespace.
std::u16string className(const std::exception& exception) {
    const char* mangled = typeid(exception).name();
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    const std::string_view name = status == 0 ? readable.get() : mangled;
    return host::utf8ToUtf16(name.substr(name.rfind(':') + 1));
}

/// Shows the exception that is being handled as the last line of its document and returns its
/// message.
std::u16string showException(EventFormat& format, const std::exception& exception) {
    std::u16string message = host::currentExceptionMessage();
    const std::u16string name = className(exception);
    const EventField fields[] = {{"class", name}, {"message", message}};
    format.write({EventKind::Exception, fields});
    return message;
}

ExitCode showEvents(Console& console, const Input& input, std::string_view name,
                    EventFormat& format, const Options& options) {
    // 1. The reader tells everything to one object.
    const auto handler = host::makeRef<EventHandler>(format, console, name, options.showsPlaces);
    TNuSAXXMLReader reader;
    reader.SetLimits(inputLimits);
    reader.setContentHandler(handler);
    reader.setLexicalHandler(handler);
    reader.setErrorHandler(handler);
    reader.SetParserChoice(input.parserChoice);
    if (options.conforming) {
        reader.SetConforming(*options.conforming);
    }

    // 2. What leaves the parse is shown as well.
    std::optional<std::u16string> exceptionMessage;
    try {
        reader.Parse(*input.stream);
    } catch (const std::exception& exception) {
        exceptionMessage = showException(format, exception);
    }
    console.progress().clear();

    // 3. A fatal error counts also where the reader returned normally.
    if ((!exceptionMessage && !handler->fatality()) || !console.output().isOpen()) {
        return exitDone;
    }
    if (!handler->fatality()) {
        complainAt(console, name, {}, Severity::Error, *exceptionMessage);
        return exitFault;
    }
    return explain(console, name, *handler->fatality());
}

ExitCode showInput(Console& console, std::string_view name, const Options& options,
                   bool isOneOfSeveral) {
    try {
        const Input input =
            openInput(name, options.reading.isLarge ? InputReading::InPieces : InputReading::BySize,
                      console.progress());
        if (options.asJson) {
            EventJson format(console.output());
            return showEvents(console, input, displayName(name), format, options);
        }
        EventText format(console, options.showsPlaces,
                         isOneOfSeveral ? host::utf8ToUtf16(displayName(name)) : u"");
        return showEvents(console, input, displayName(name), format, options);
    } catch (const InputError& error) {
        console.complain(error.what());
    }
    return exitInputOutput;
}

} // namespace

ExitCode runEvents(Console& console, Arguments arguments) {
    Options options;
    auto inputs = parseArguments(arguments,
                                 {{"--json", options.asJson},
                                  {"--positions", options.showsPlaces},
                                  {largeOption, options.reading.isLarge},
                                  {rawOption, options.reading.isRaw}},
                                 {{whiteOption, options.reading.white}});
    options.conforming = options.reading.conforming();
    if (inputs.empty()) {
        inputs.push_back({standardInput, false});
    }

    // A bad input does not keep the others from being shown.
    ExitCode worst = exitDone;
    for (const Operand& input : inputs) {
        worst = std::max(worst, showInput(console, input.text, options, inputs.size() > 1));
        if (!console.output().isOpen()) {
            break;
        }
    }
    return worst;
}

} // namespace tool
