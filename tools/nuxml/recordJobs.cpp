#include "recordJobs.h"

#include <condition_variable>
#include <exception>
#include <limits>
#include <map>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

#include "fault.h"
#include "host/runtime/exception.h"
#include "input.h"

namespace tool {

namespace {

/// What a worker made of a task.
struct Result {
    std::string text;
    std::int64_t count = 0;
    std::int64_t behind = 0; ///< where its share ends
    nu::RecordBorder first{};
    nu::RecordBorder stop{};
    std::exception_ptr failure;
};

/// Gives tasks to workers and takes results from them; the output is written by whoever has the
/// next piece of it.
class Jobs {
public:
    Jobs(Console& console, const RecordRequest& request, const RecordForm& form, RecordJobs jobs)
        : console_(console), request_(request), form_(form), jobs_(jobs), tasks_(request) {}

    RecordOutcome run() {
        std::vector<std::thread> workers;
        for (std::size_t number = 1; number < jobs_.count; ++number) {
            workers.emplace_back([this] { work(); });
        }
        work();
        for (std::thread& worker : workers) {
            worker.join();
        }
        console_.progress().clear();
        if (failure_) {
            try {
                std::rethrow_exception(failure_);
            } catch (...) {
                outcome_.exitCode = explainRecordFault(console_, displayName(request_.file));
            }
        }
        return outcome_;
    }

private:
    void work() {
        try {
            const std::unique_ptr<host::TStream> file = openShared(request_.file);
            Result result;
            while (const std::optional<RecordTask> task = takeTask(result)) {
                read(*file, *task, result);
                deliver(*task, std::move(result));
            }
        } catch (...) {
            const std::scoped_lock lock(mutex_);
            fail(std::current_exception());
        }
    }

    void read(host::TStream& file, const RecordTask& task, Result& result) {
        result.behind = task.share.behind;
        try {
            std::optional<nu::RecordReader> records;
            if (task.start) {
                records.emplace(file, request_.path, *task.start, task.share, request_.options);
            } else {
                records.emplace(file, request_.path, task.share, request_.options);
            }
            while (records->Next()) {
                form_.append(result.text, *records);
                ++result.count;
            }
            result.first = records->First();
            result.stop = records->Stop();
        } catch (...) {
            result.failure = std::current_exception();
        }
    }

    /// Waits while too much is ready that cannot be written yet. The result gets the memory of one
    /// that was written.
    std::optional<RecordTask> takeTask(Result& result) {
        std::unique_lock lock(mutex_);
        hasWritten_.wait(lock, [this] { return hasEnded_ || taken_ < next_ + jobs_.count + 2; });
        std::optional<RecordTask> task = hasEnded_ ? std::nullopt : tasks_.next();
        taken_ += task ? 1 : 0;
        result = {};
        if (!spare_.empty()) {
            result.text = std::move(spare_.back());
            result.text.clear();
            spare_.pop_back();
        }
        return task;
    }

    void deliver(const RecordTask& task, Result result) {
        const std::scoped_lock lock(mutex_);
        if (task.isGuessing && !tasks_.isGuessing()) {
            return; // it was begun behind a wrong guess
        }
        if (!jobs_.isOrdered && !task.isGuessing) {
            ++next_;
            write(result);
        } else {
            ready_.emplace(task.number, std::move(result));
            writeReady(task.isGuessing);
        }
        hasWritten_.notify_all();
    }

    void writeReady(bool isGuessing) {
        while (!hasEnded_ && !ready_.empty() && ready_.begin()->first == next_) {
            Result& result = ready_.begin()->second;
            if (isGuessing && !isRight(result)) {
                // A fault is told with its line only by who knows where the task begins.
                tasks_.beginAnew(next_, stop_.position);
                taken_ = next_;
                ready_.clear();
                return;
            }
            ++next_;
            stop_ = std::move(result.stop);
            write(result);
            // Whoever stops nowhere has come to the end of the document.
            hasEnded_ = hasEnded_ || (isGuessing && !stop_.isThere());
            ready_.erase(ready_.begin());
        }
    }

    /// Whether a task whose beginning was guessed began where the one before stopped. That of the
    /// first one is known.
    [[nodiscard]] bool isRight(const Result& result) const {
        return next_ == 0 || (!result.failure && result.first == stop_);
    }

    void write(Result& result) {
        if (hasEnded_) {
            return;
        }
        console_.output().write(result.text);
        outcome_.count += result.count;
        showReading(console_.progress(), request_.file, result.behind);
        if (result.failure) {
            fail(result.failure);
        } else if (!console_.output().isOpen()) {
            hasEnded_ = true;
        }
        spare_.push_back(std::move(result.text));
    }

    /// The first failure in the order of the output ends all work.
    void fail(std::exception_ptr failure) {
        if (!hasEnded_) {
            failure_ = std::move(failure);
        }
        hasEnded_ = true;
        hasWritten_.notify_all();
    }

    Console& console_;
    const RecordRequest& request_;
    const RecordForm& form_;
    RecordJobs jobs_;

    std::mutex mutex_;
    std::condition_variable hasWritten_;
    RecordTasks tasks_;
    std::size_t taken_ = 0;
    std::size_t next_ = 0; ///< of the tasks whose results are to be written
    std::map<std::size_t, Result> ready_;
    nu::RecordBorder stop_;          ///< where the last one of them stopped
    std::vector<std::string> spare_; ///< memory of texts that were written
    bool hasEnded_ = false;
    std::exception_ptr failure_;
    RecordOutcome outcome_;
};

} // namespace

RecordOutcome showRecordsByJobs(Console& console, const RecordRequest& request,
                                const RecordForm& form, RecordJobs jobs) {
    try {
        return Jobs(console, request, form, jobs).run();
    } catch (const host::Exception&) {
        return {explainRecordFault(console, displayName(request.file)), 0};
    }
}

ExitCode explainRecordFault(Console& console, std::string_view name) {
    try {
        throw;
    } catch (const ENuXmlFault& fault) {
        complainAt(console, name, {fault.Line(), fault.Column()}, Severity::Error, fault.Message());
        return exitFault;
    } catch (const host::EStreamError& error) {
        console.complain("cannot read " + std::string(name), error.Message());
    } catch (const host::Exception& error) {
        console.complain(name, error.Message());
    } catch (const std::bad_alloc&) {
        console.complain(std::string(name) + ": there is not enough memory");
    } catch (const InputError& error) {
        console.complain(error.what());
    }
    return exitInputOutput;
}

} // namespace tool
