#pragma once

#include <span>
#include <string_view>

#include "console.h"
#include "exitCode.h"

namespace tool {

/// What stands behind the name of a command on the command line.
using Arguments = std::span<const std::string_view>;

/// One word behind "nuxml". The operation may throw UsageError and InputError.
struct Command {
    std::string_view name;
    ExitCode (*run)(Console& console, Arguments arguments);
    std::string_view help;
};

} // namespace tool
