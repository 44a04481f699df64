#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "host/runtime/stream.h"
#include "nuXmlRecords.h"

namespace tool {

/// How a file is shared.
enum class Sharing {
    Exact, ///< by an index, or by what a pass ahead finds
    Plain, ///< on the promise that the tag of records names nothing else
};

/// Which records of which file.
struct RecordRequest {
    std::string_view file;
    std::u16string path;
    nu::RecordOptions options;
    Sharing sharing = Sharing::Exact;
    const nu::RecordIndex* index = nullptr; ///< null where there is none
};

/// A share of a file that one worker reads at a time.
struct RecordTask {
    std::size_t number = 0;
    nu::RecordShare share{};
    std::optional<nu::RecordStart> start{}; ///< nothing on a promise
};

/// Cuts a file into tasks, as they are asked for.
class RecordTasks {
public:
    explicit RecordTasks(const RecordRequest& request);
    RecordTasks(const RecordTasks&) = delete;
    RecordTasks& operator=(const RecordTasks&) = delete;
    ~RecordTasks();

    /// The next task; nothing when all were given.
    std::optional<RecordTask> next();

private:
    std::optional<nu::RecordStart> nextStart(std::int64_t behind);

    const RecordRequest& request_;
    std::unique_ptr<host::TStream> file_;
    std::optional<nu::RecordIndexer> indexer_; ///< goes ahead where there is no index
    std::int64_t size_;
    std::size_t count_ = 0;
    std::optional<nu::RecordStart> start_; ///< of the next task
    std::int64_t border_ = 0;              ///< where the next task begins
};

/// A file that can be read from any place. Throws InputError for anything else.
std::unique_ptr<host::TStream> openShared(std::string_view name);

} // namespace tool
