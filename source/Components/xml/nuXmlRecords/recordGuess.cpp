#include "nuXmlRecords/recordGuess.h"

#include <algorithm>
#include <string>
#include <utility>

#include "host/runtime/exception.h"
#include "nuXmlRecords/markupWalk.h"
#include "nuXmlRecords/recordHead.h"
#include "nuXmlRecords/recordPath.h"

namespace nu {

class RecordGuess::Body {
public:
    Body(host::TStream& file, const RecordPath& path) : file_(file), name_(path.recordName()) {
        MarkupWalk walk(file);
        try {
            first_ = name_.empty() ? std::nullopt : findFirstRecord(walk, path);
        } catch (const host::Exception&) {
            // What is wrong is for whoever reads it.
        }
    }

    [[nodiscard]] bool isPossible() const noexcept { return first_.has_value(); }
    std::optional<RecordStart> from(std::int64_t position, std::int64_t end) {
        const auto tag = findRecordTag(file_, name_, {std::max(position, first_->position), end});
        return tag ? std::optional(RecordStart{*tag, 0, 0, first_->head}) : std::nullopt;
    }

private:
    host::TStream& file_;
    std::string name_;
    std::optional<FirstRecord> first_;
};

RecordGuess::RecordGuess(host::TStream& file, std::u16string_view path)
    : body_(std::make_unique<Body>(file, RecordPath(path))) {}

RecordGuess::~RecordGuess() = default;

bool RecordGuess::IsPossible() const noexcept { return body_->isPossible(); }

std::optional<RecordStart> RecordGuess::From(std::int64_t position, std::int64_t end) {
    return body_->isPossible() ? body_->from(position, end) : std::nullopt;
}

} // namespace nu
