#pragma once

#include "command.h"

namespace tool {

/// "nuxml tree": what is in an unknown document.
ExitCode runTree(Console& console, Arguments arguments);

} // namespace tool
