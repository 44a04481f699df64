#pragma once

#include "command.h"

namespace tool {

/// Turns plain text into XML character data.
ExitCode runEscape(Console& console, Arguments arguments);

/// Turns XML character data into plain text.
ExitCode runUnescape(Console& console, Arguments arguments);

} // namespace tool
