#pragma once

#include <span>
#include <string_view>

#include "console.h"
#include "exitCode.h"
#include "help.h"

namespace tool {

/// What stands behind the name of a command on the command line.
using Arguments = std::span<const std::string_view>;

/// One word behind "nuxml". The operation may throw UsageError and InputError.
struct Command {
    std::string_view name;
    std::string_view summary; ///< behind "nuxml NAME: "
    ExitCode (*run)(Console& console, Arguments arguments);
    const HelpText& help;
};

/// All of them, in the order of the help.
[[nodiscard]] std::span<const Command> allCommands() noexcept;
/// Null where there is none of that name.
[[nodiscard]] const Command* findCommand(std::string_view name) noexcept;

} // namespace tool
