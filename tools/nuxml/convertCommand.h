#pragma once

#include "command.h"

namespace tool {

/// "nuxml convert": XML to JSON and back.
ExitCode runConvert(Console& console, Arguments arguments);

} // namespace tool
