#pragma once

#include "command.h"

namespace tool {

/// "nuxml explain": what a path means, and how many nodes pass each of its steps.
ExitCode runExplain(Console& console, Arguments arguments);

} // namespace tool
