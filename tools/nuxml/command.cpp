#include "command.h"

#include <algorithm>

#include "checkCommand.h"
#include "completionCommand.h"
#include "convertCommand.h"
#include "editCommand.h"
#include "escapeCommand.h"
#include "eventsCommand.h"
#include "explainCommand.h"
#include "formatCommand.h"
#include "recordsCommand.h"
#include "selectCommand.h"
#include "tameCommand.h"
#include "treeCommand.h"

namespace tool {

namespace {

constexpr Command commands[] = {
    {"select", "show the nodes at a path", runSelect, help::select},
    {"explain", "tell what a path means and how many nodes pass each step", runExplain,
     help::explain},
    {"tree", "outline an unknown document, with counts and examples", runTree, help::tree},
    {"edit", "set, create, rename, move and delete nodes at paths", runEdit, help::edit},
    {"format", "write documents with line breaks and indentation, or without", runFormat,
     help::format},
    {"convert", "turn XML into JSON, and JSON into XML", runConvert, help::convert},
    {"records", "show the elements at a path of documents of any size, by many workers", runRecords,
     help::records},
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
    const auto* const found = std::ranges::find(commands, name, &Command::name);
    return found == std::end(commands) ? nullptr : found;
}

} // namespace tool
