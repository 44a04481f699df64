#include "checkCommand.h"

#include <algorithm>

#include "arguments.h"
#include "fault.h"
#include "host/runtime/exception.h"
#include "input.h"
#include "nuXmlParser.h"

namespace tool {

namespace {

ExitCode checkInput(Console& console, std::string_view name, bool isQuiet) {
    const std::string_view shown = displayName(name);
    try {
        const Input input = openInput(name, InputReading::BySize, console.progress());
        TNuConformingOptions options;
        options.limits = inputLimits;
        NuCheckXML(*input.stream, options);
    } catch (const ENuXmlFault& fault) {
        if (!isQuiet) {
            complainAt(console, shown, {fault.Line(), fault.Column()}, Severity::Error,
                       fault.Message());
        }
        return exitFault;
    } catch (const InputError& error) {
        console.complain(error.what());
        return exitInputOutput;
    } catch (const host::EStreamError& error) {
        console.complain("cannot read " + std::string(shown), error.Message());
        return exitInputOutput;
    }
    if (!isQuiet) {
        console.output().write(shown);
        console.output().write(": well-formed\n");
    }
    return exitDone;
}

} // namespace

ExitCode runCheck(Console& console, Arguments arguments) {
    bool isQuiet = false;
    auto inputs = parseArguments(arguments, {{"--quiet", isQuiet}});
    if (inputs.empty()) {
        inputs.push_back({standardInput, false});
    }
    ExitCode worst = exitDone;
    for (const Operand& input : inputs) {
        worst = std::max(worst, checkInput(console, input.text, isQuiet));
        if (!console.output().isOpen()) {
            break;
        }
    }
    return worst;
}

} // namespace tool
