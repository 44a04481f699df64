#pragma once

#include <optional>
#include <string>

#include "host/runtime/stream.h"
#include "nuXmlRecords/markupWalk.h"
#include "nuXmlRecords/recordPath.h"
#include "nuXmlRecords/recordSource.h"

namespace nu {

/// What has to be known at the place of a walk, to go on reading there.
[[nodiscard]] std::string headAt(MarkupWalk& walk);

/// The part of a file that a share is, on the promise that what reads as the start tag of a record
/// is one; nothing where no record can begin in it.
[[nodiscard]] std::optional<RecordPart> plainPart(host::TStream& file, RecordPath path,
                                                  const RecordShare& share);

} // namespace nu
