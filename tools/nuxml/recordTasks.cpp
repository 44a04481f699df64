#include "recordTasks.h"

#include <algorithm>
#include <utility>

#include "host/runtime/exception.h"
#include "host/runtime/fileStream.h"
#include "input.h"

namespace tool {

namespace {

/// What a worker reads at a time: its output is held in memory, and in the nearer caches, until its
/// turn comes.
constexpr std::int64_t taskSize = 512 * 1024;
/// The same on a promise, where each task reads the beginning of the document as well.
constexpr std::int64_t promisedTaskSize = 4 * 1024 * 1024;

} // namespace

std::unique_ptr<host::TStream> openShared(std::string_view name) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(name, error)) {
        throw InputError(error ? "cannot open " + std::string(name) + ": " + error.message()
                               : std::string(displayName(name)) +
                                     ": only a regular file can be read in parts");
    }
    try {
        return std::make_unique<host::TFileStream>(std::filesystem::path(name),
                                                   host::fmOpenRead | host::fmShareDenyNone);
    } catch (const host::EStreamError& failure) {
        throw InputError(failure.what());
    }
}

RecordTasks::RecordTasks(const RecordRequest& request)
    : request_(request), file_(openShared(request.file)), size_(file_->GetSize()) {
    if (request.sharing == Sharing::Exact) {
        start_.emplace();
        if (request.index != nullptr) {
            request.index->Check(*file_);
        } else if (!guess_.emplace(*file_, request.path).IsPossible()) {
            beginAnew(0, 0);
        }
    }
}

RecordTasks::~RecordTasks() = default;

/// The first place to begin at that is known at or behind a border; nothing at the end.
std::optional<nu::RecordStart> RecordTasks::nextStart(std::int64_t behind) {
    if (request_.index != nullptr) {
        const nu::RecordShare rest = request_.index->ShareFrom(behind);
        return rest.first >= size_ ? std::nullopt
                                   : std::optional(request_.index->StartFor(rest.first));
    }
    return guess_ ? guess_->From(behind, size_) : startFrom(behind);
}

/// The first place at or behind a position that the pass ahead comes to.
std::optional<nu::RecordStart> RecordTasks::startFrom(std::int64_t position) {
    try {
        return indexer_->NextFrom(position) ? std::optional(indexer_->Start()) : std::nullopt;
    } catch (const ENuXmlFault&) {
        // Whoever reads from the last place on meets what is wrong, and tells more about it.
        return std::nullopt;
    }
}

void RecordTasks::beginAnew(std::size_t number, std::int64_t position) {
    guess_.reset();
    indexer_.emplace(*file_, taskSize);
    count_ = number;
    border_ = position;
    // Where the pass comes to nothing, reading from the beginning does.
    start_ = position > 0 ? startFrom(position) : std::nullopt;
    if (!start_) {
        start_.emplace();
    }
}

std::optional<RecordTask> RecordTasks::next() {
    // A file that is empty has a task as well: somebody has to say that it is no document.
    if (count_ > 0 && border_ >= size_) {
        return std::nullopt;
    }
    RecordTask task{count_++, {border_, size_}, std::move(start_), guess_.has_value()};
    if (request_.sharing == Sharing::Promised) {
        task.share.behind = std::min(border_ + promisedTaskSize, size_);
    } else {
        start_ = nextStart(border_ + taskSize);
        task.share.behind = start_ ? start_->position : size_;
    }
    border_ = task.share.behind;
    if (border_ >= size_) {
        task.share.behind = nu::RecordShare().behind;
    }
    return task;
}

} // namespace tool
