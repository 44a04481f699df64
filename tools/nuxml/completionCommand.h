#pragma once

#include "command.h"

namespace tool {

/// "nuxml completion": what makes shells complete the commands and options of this program, and
/// its manual page.
ExitCode runCompletion(Console& console, Arguments arguments);

} // namespace tool
