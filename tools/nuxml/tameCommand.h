#pragma once

#include "command.h"

namespace tool {

/// Writes a document as every reader reads it alike.
ExitCode runTame(Console& console, Arguments arguments);

} // namespace tool
