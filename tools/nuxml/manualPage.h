#pragma once

#include "output.h"

namespace tool {

/// Writes the manual page of section 1 in the macros of man(7), made from the help of all commands.
void writeManualPage(Output& output);

} // namespace tool
