#pragma once

#include "command.h"

namespace tool {

/// Changes a document at paths and writes it.
ExitCode runEdit(Console& console, Arguments arguments);

} // namespace tool
