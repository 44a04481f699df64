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
#include "closestWord.h"
#include "command.h"
#include "console.h"
#include "helpOutput.h"
#include "host/runtime/fileReplacement.h"
#include "input.h"

namespace tool {

namespace {

constexpr std::string_view progressOption = "--progress";

bool isHelpOption(std::string_view word) noexcept { return word == "--help" || word == "-h"; }
bool isHelp(std::string_view word) noexcept { return word == "help" || isHelpOption(word); }
bool isVersion(std::string_view word) noexcept { return word == "version" || word == "--version"; }

/// The command that a word names. Throws UsageError where there is none.
const Command& commandOf(std::string_view word) {
    if (const Command* command = findCommand(word)) {
        return *command;
    }
    std::vector<std::string_view> names{"help", "version"};
    std::ranges::transform(allCommands(), std::back_inserter(names), &Command::name);
    throw UsageError("there is no command \"" + std::string(word) + '"' +
                     suggestionFor(word, names));
}

ExitCode showHelp(Console& console, Arguments words) {
    if (words.empty() || isHelp(words.front()) || isVersion(words.front())) {
        writeGeneralHelp(console.output());
    } else {
        writeHelp(console.output(), commandOf(words.front()));
    }
    return exitDone;
}

/// Takes out what is for all commands alike; behind "--" stand no options.
ExitCode runCommand(Console& console, const Command& command, Arguments arguments) {
    std::vector<std::string_view> rest;
    const auto end = std::ranges::find(arguments, "--");
    for (auto word = arguments.begin(); word != end; ++word) {
        if (isHelpOption(*word)) {
            writeHelp(console.output(), command);
            return exitDone;
        }
        if (*word == progressOption) {
            console.progress().enable();
        } else {
            rest.push_back(*word);
        }
    }
    rest.insert(rest.end(), end, arguments.end());
    return command.run(console, rest);
}

ExitCode runWord(Console& console, std::string_view word, Arguments arguments) {
    if (isHelp(word)) {
        return showHelp(console, arguments);
    }
    if (isVersion(word)) {
        console.output().write("nuxml " NUXML_VERSION "\n");
        return exitDone;
    }
    return runCommand(console, commandOf(word), arguments);
}

ExitCode run(Console& console, Arguments arguments) {
    const std::string_view word = arguments.empty() ? std::string_view() : arguments.front();
    try {
        if (arguments.empty()) {
            throw UsageError("a command is missing");
        }
        return runWord(console, word, arguments.subspan(1));
    } catch (const UsageError& error) {
        const bool isCommand = findCommand(word) != nullptr;
        console.complain(std::string(error.what()) + R"(; see "nuxml help)" +
                         (isCommand ? ' ' + std::string(word) : std::string()) + '"');
        return exitUsage;
    }
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
