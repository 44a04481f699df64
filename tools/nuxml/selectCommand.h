#pragma once

#include "command.h"

namespace tool {

/// Shows the nodes at a path, one a line.
ExitCode runSelect(Console& console, Arguments arguments);

} // namespace tool
