#pragma once

#include "command.h"

namespace tool {

ExitCode runRecords(Console& console, Arguments arguments);

} // namespace tool
