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
    Exact,    ///< by an index, or by what a pass ahead finds
    Promised, ///< on the promise that the tag of records names nothing else
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
    bool isGuessing = false; ///< what comes of it has to fit what came of the task before
};

/// Cuts a file into tasks, as they are asked for: on a promise anywhere, at the places of an index,
/// or, without one, first where records seem to begin and, once that was wrong, where a pass ahead
/// finds that it can be begun.
class RecordTasks {
public:
    explicit RecordTasks(const RecordRequest& request);
    RecordTasks(const RecordTasks&) = delete;
    RecordTasks& operator=(const RecordTasks&) = delete;
    ~RecordTasks();

    /// The next task; nothing when all were given.
    std::optional<RecordTask> next();
    [[nodiscard]] bool isGuessing() const noexcept { return guess_.has_value(); }
    /// Guesses no more: the next task gets that number and begins at that position, at a start tag.
    void beginAnew(std::size_t number, std::int64_t position);

private:
    std::optional<nu::RecordStart> nextStart(std::int64_t behind);
    std::optional<nu::RecordStart> startFrom(std::int64_t position);

    const RecordRequest& request_;
    std::unique_ptr<host::TStream> file_;
    std::optional<nu::RecordGuess> guess_;
    std::optional<nu::RecordIndexer> indexer_; ///< goes ahead where nothing is guessed
    std::int64_t size_;
    std::size_t count_ = 0;
    std::optional<nu::RecordStart> start_; ///< of the next task
    std::int64_t border_ = 0;              ///< where the next task begins
};

/// A file that can be read from any place. Throws InputError for anything else.
std::unique_ptr<host::TStream> openShared(std::string_view name);

} // namespace tool
