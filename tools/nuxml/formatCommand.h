#pragma once

#include "command.h"

namespace tool {

/// Writes a document with line breaks and indentation, or on one line.
ExitCode runFormat(Console& console, Arguments arguments);

} // namespace tool
