#include "nuXmlRecords/recordHead.h"

#include <algorithm>
#include <vector>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "nuXmlRecords/recordMessages.h"
#include "nuXmlRecords/tagFinder.h"

namespace nu {

namespace {

/// The first record has to begin before.
constexpr std::int64_t longestHead = 16 * 1024 * 1024;

} // namespace

std::string headAt(MarkupWalk& walk) {
    std::string head = walk.prolog();
    for (const std::string& tag : walk.openTags()) {
        head += tag;
    }
    return head += '\n';
}

std::optional<FirstRecord> findFirstRecord(MarkupWalk& walk, RecordPath path) {
    for (std::int64_t position = 0; position < longestHead; position = walk.position() + 1) {
        if (!walk.walkTo(position)) {
            return std::nullopt;
        }
        if (path.matches(walk.name(), walk.depth() + 1)) {
            return FirstRecord{walk.position(), headAt(walk)};
        }
    }
    throw host::Exception(host::formatMessage(messages::headTooLong, {longestHead}));
}

std::optional<std::int64_t> findRecordTag(host::TStream& file, const std::string& name,
                                          const RecordShare& share) {
    constexpr std::int64_t blockSize = 16 * 1024;
    // A tag that begins in the share may end behind it.
    constexpr std::int64_t longestName = 4096;
    std::vector<char> block(blockSize);
    TagFinder finder(name);
    file.SetPosition(share.first);
    for (std::int64_t position = share.first;
         position < share.behind || position - share.behind < longestName;) {
        const std::size_t got = file.Read(block.data(), block.size());
        if (got == 0) {
            break;
        }
        finder.look({block.data(), std::min(got, block.size())}, position);
        if (!finder.found().empty()) {
            const std::int64_t first = finder.found().front();
            return first < share.behind ? std::optional(first) : std::nullopt;
        }
        position += static_cast<std::int64_t>(got);
    }
    return std::nullopt;
}

std::optional<RecordPart> promisedPart(host::TStream& file, const RecordPath& path,
                                       const RecordShare& share) {
    if (path.recordName().empty()) {
        throw host::Exception(messages::noRecordName);
    }
    // 1. Up to the first record the document is read as it is.
    MarkupWalk walk(file);
    std::optional<FirstRecord> record = findFirstRecord(walk, path);
    if (!record || share.first <= record->position) {
        file.SetPosition(0);
        return RecordPart{{}, share, true};
    }

    // 2. Behind it everything is taken to be as it is there.
    RecordPart part{{0, 0, 0, std::move(record->head)}, share, true};
    const std::optional<std::int64_t> first = findRecordTag(file, path.recordName(), share);
    if (!first) {
        return std::nullopt;
    }
    part.start.position = *first;
    return part;
}

} // namespace nu
