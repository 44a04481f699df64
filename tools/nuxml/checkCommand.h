#pragma once

#include "command.h"

namespace tool {

/// Says of documents whether they are well-formed.
ExitCode runCheck(Console& console, Arguments arguments);

} // namespace tool
