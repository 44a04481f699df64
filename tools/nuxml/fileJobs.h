#pragma once

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "arguments.h"
#include "console.h"
#include "documentOutput.h"
#include "exitCode.h"

namespace tool {

/// Which documents a command writes, and where to.
class FileJobs {
public:
    /// From the operands and the options -i and -o. Throws UsageError where these do not go
    /// together.
    /// \param isReadOnly nothing is written, so there may be several files without -i
    FileJobs(const std::vector<Operand>& operands, bool isInPlace,
             std::optional<std::string_view> target, bool isForced, bool isReadOnly = false);

    /// Calls `run` with the Destination of each document, one after the other, and gives the
    /// highest exit code. A file that cannot be opened does not keep the others from their turn; a
    /// mistake on the command line does.
    template <class Run> ExitCode forEach(Console& console, Run run) const {
        ExitCode worst = exitDone;
        for (const Destination& job : jobs_) {
            try {
                checkReplaced(job);
                worst = std::max(worst, run(job));
            } catch (const InputError& error) {
                console.complain(error.what());
                worst = std::max(worst, exitInputOutput);
            }
            if (worst == exitUsage || !console.output().isOpen()) {
                break;
            }
        }
        return worst;
    }

private:
    std::vector<Destination> jobs_;
};

} // namespace tool
