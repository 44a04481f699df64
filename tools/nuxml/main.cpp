#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <iterator>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "arguments.h"
#include "checkCommand.h"
#include "command.h"
#include "console.h"
#include "editCommand.h"
#include "escapeCommand.h"
#include "eventsCommand.h"
#include "formatCommand.h"
#include "help.h"
#include "host/runtime/fileReplacement.h"
#include "input.h"
#include "selectCommand.h"
#include "tameCommand.h"

namespace tool {

namespace {

constexpr std::string_view helpOption = "--help";

const Command* findCommand(std::string_view name) {
    static const Command commands[] = {
        {"events", runEvents, help::events}, {"format", runFormat, help::format},
        {"select", runSelect, help::select}, {"edit", runEdit, help::edit},
        {"check", runCheck, help::check},    {"tame", runTame, help::tame},
        {"escape", runEscape, help::escape}, {"unescape", runUnescape, help::unescape},
    };
    const auto* found = std::find_if(std::begin(commands), std::end(commands),
                                     [&](const Command& command) { return command.name == name; });
    return found == std::end(commands) ? nullptr : found;
}

/// Whether help is asked for; behind "--" stand no options.
bool asksForHelp(Arguments arguments) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::find(arguments.begin(), end, helpOption) != end;
}

ExitCode runCommand(Console& console, const Command& command, Arguments arguments) {
    if (asksForHelp(arguments)) {
        console.output().write(command.help);
        return exitDone;
    }
    try {
        return command.run(console, arguments);
    } catch (const UsageError& error) {
        console.complain(std::string(error.what()) + R"(; see "nuxml )" +
                         std::string(command.name) + " --help\"");
        return exitUsage;
    }
}

ExitCode run(Console& console, Arguments arguments) {
    if (arguments.empty()) {
        console.complain(R"(a command is missing; see "nuxml --help")");
        return exitUsage;
    }
    const std::string_view word = arguments.front();
    if (const Command* command = findCommand(word)) {
        return runCommand(console, *command, arguments.subspan(1));
    }
    if (word == helpOption) {
        console.output().write(help::general);
        return exitDone;
    }
    if (word == "--version") {
        console.output().write("nuxml " NUXML_VERSION "\n");
        return exitDone;
    }
    console.complain("there is no command \"" + std::string(word) + R"("; see "nuxml --help")");
    return exitUsage;
}

/// Writes what is left and tells about output that was lost, unless only its reader went away.
ExitCode finish(Console& console, ExitCode exitCode) {
    console.output().flush();
    if (const int error = console.output().failure()) {
        console.complain("cannot write standard output: " + std::generic_category().message(error));
        return exitInputOutput;
    }
    return exitCode;
}

/// Standard descriptors that are closed are taken, by something that cannot be used: no file that
/// is opened may be mistaken for one of them.
void takeClosedDescriptors() noexcept {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            // The lowest free number is the one that is given.
            static_cast<void>(
                ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

extern "C" void leaveNothingUnfinished(int signal) {
    host::FileReplacement::removeUnfinished();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// What ends the tool while it writes a file takes the unfinished file away first. What the caller
/// ignores stays ignored.
void watchSignals() noexcept {
    // A reader of the output that goes away, and a limit on the size of files, show as a failed
    // write, not as a deadly signal.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU}) {
        if (std::signal(signal, leaveNothingUnfinished) == SIG_IGN) {
            std::signal(signal, SIG_IGN);
        }
    }
}

} // namespace

} // namespace tool

int main(int argumentCount, char** argumentTexts) {
    tool::watchSignals();
    tool::takeClosedDescriptors();

    tool::Console console;
    tool::ExitCode exitCode = tool::exitInputOutput;
    try {
        const std::vector<std::string_view> arguments(argumentTexts + 1,
                                                      argumentTexts + argumentCount);
        exitCode = tool::run(console, arguments);
    } catch (const tool::InputError& error) {
        console.complain(error.what());
    } catch (const std::bad_alloc&) {
        console.complain("there is not enough memory");
    }
    return tool::finish(console, exitCode);
}
