#include "command.h"

#include <algorithm>

#include "checkCommand.h"
#include "completionCommand.h"
#include "editCommand.h"
#include "escapeCommand.h"
#include "eventsCommand.h"
#include "formatCommand.h"
#include "selectCommand.h"
#include "tameCommand.h"

namespace tool {

namespace {

constexpr Command commands[] = {
    {"select", "show the nodes at a path", runSelect, help::select},
    {"edit", "set, create and delete nodes at paths", runEdit, help::edit},
    {"format", "write documents with line breaks and indentation, or without", runFormat,
     help::format},
    {"check", "say whether documents are well-formed", runCheck, help::check},
    {"events", "show documents as the events of the SAX2 reader", runEvents, help::events},
    {"tame", "write a document without what readers take differently", runTame, help::tame},
    {"escape", "turn plain text into XML character data", runEscape, help::escape},
    {"unescape", "turn XML character data into plain text", runUnescape, help::unescape},
    {"completion", "write completions for a shell, or the manual page", runCompletion,
     help::completion},
};

} // namespace

std::span<const Command> allCommands() noexcept { return commands; }

const Command* findCommand(std::string_view name) noexcept {
    const auto found = std::ranges::find(commands, name, &Command::name);
    return found == std::end(commands) ? nullptr : found;
}

} // namespace tool
