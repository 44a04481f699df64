#pragma once

namespace tool {

/// How the program ends. Where several inputs end differently, the highest number wins.
enum ExitCode : int {
    exitDone = 0,
    exitNothing = 1,    ///< nothing matched, or there is a difference
    exitUsage = 2,      ///< the command line is wrong
    exitFault = 3,      ///< a fault in the XML ended the work on an input
    exitInputOutput = 4 ///< an input cannot be read, the output not be written, memory is short
};

} // namespace tool
