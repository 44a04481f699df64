#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/runtime/stream.h"
#include "nuXmlRecords/markupWalk.h"
#include "nuXmlRecords/recordPath.h"
#include "nuXmlRecords/recordSource.h"

namespace nu {

/// What has to be known at the place of a walk, to go on reading there.
[[nodiscard]] std::string headAt(MarkupWalk& walk);

/// Where the first record of a document begins, and what has to be known there.
struct FirstRecord {
    std::int64_t position = 0;
    std::string head;
};

/// Walks from the beginning of a document to its first record; nothing where it has none. Throws
/// host::Exception where none begins in the first 16 MiB, and what the walk does.
[[nodiscard]] std::optional<FirstRecord> findFirstRecord(MarkupWalk& walk, RecordPath path);

/// The position of the first thing in a share that reads as a start tag of that name.
[[nodiscard]] std::optional<std::int64_t>
findRecordTag(host::TStream& file, const std::string& name, const RecordShare& share);

/// The part of a file that a share is, on the promise that what reads as the start tag of a record
/// is one; nothing where no record can begin in it.
[[nodiscard]] std::optional<RecordPart> promisedPart(host::TStream& file, const RecordPath& path,
                                                     const RecordShare& share);

} // namespace nu
