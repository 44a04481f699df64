#pragma once

#include "command.h"
#include "output.h"

namespace tool {

/// Writes what the program is and which commands it has.
void writeGeneralHelp(Output& output);
/// Writes what one command does.
void writeHelp(Output& output, const Command& command);

} // namespace tool
