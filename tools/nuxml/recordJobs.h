#pragma once

#include <cstdint>

#include "console.h"
#include "exitCode.h"
#include "recordForm.h"
#include "recordTasks.h"

namespace tool {

/// How many workers read one file, and whether their output keeps the order of the file.
struct RecordJobs {
    std::size_t count = 1;
    bool isOrdered = true;
};

/// What came of all of them.
struct RecordOutcome {
    ExitCode exitCode = exitDone;
    std::int64_t count = 0;
};

/// Shows the records of a file by several workers: what one would show, in the same order or, each
/// record as a whole, as they come. Throws InputError.
RecordOutcome showRecordsByJobs(Console& console, const RecordRequest& request,
                                const RecordForm& form, RecordJobs jobs);

/// Says on standard error what ended the reading; called while that is handled.
ExitCode explainRecordFault(Console& console, std::string_view name);

} // namespace tool
