#pragma once

#include "command.h"

namespace tool {

/// Shows documents as the events of the reader.
ExitCode runEvents(Console& console, Arguments arguments);

} // namespace tool
