#include "host/runtime/rowSet.h"

#include <utility>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"

namespace host {

TRowSet::~TRowSet() = default;

void TRowSet::AddField(std::u16string name, TFieldType type) {
    if (findField(*this, name) >= 0) {
        throw Exception(formatMessage(u"There is a field \"%s\" already!", {name}));
    }
    for (Record& record : records_) {
        record.resize(fields_.size() + 1, null);
    }
    begun_.resize(fields_.size() + 1, null);
    fields_.push_back({std::move(name), type});
}

void TRowSet::Clear() noexcept {
    records_.clear();
    current_ = 0;
    isAppending_ = false;
}

std::u16string TRowSet::FieldName(std::size_t field) const {
    checkListIndex(static_cast<std::int64_t>(field), fields_.size());
    return fields_[field].name;
}

TFieldType TRowSet::FieldType(std::size_t field) const {
    checkListIndex(static_cast<std::int64_t>(field), fields_.size());
    return fields_[field].type;
}

void TRowSet::First() {
    isAppending_ = false;
    current_ = 0;
}

void TRowSet::Next() {
    isAppending_ = false;
    if (current_ < records_.size()) {
        ++current_;
    }
}

bool TRowSet::Eof() const { return !isAppending_ && current_ == records_.size(); }

const Variant& TRowSet::valueAt(std::size_t field) const {
    checkListIndex(static_cast<std::int64_t>(field), fields_.size());
    if (Eof()) {
        throw Exception(u"There is no record at hand!");
    }
    return (isAppending_ ? begun_ : records_[current_])[field];
}

Variant TRowSet::GetValue(std::size_t field) const { return valueAt(field); }

void TRowSet::SetValue(std::size_t field, const Variant& value) {
    auto& place = const_cast<Variant&>(valueAt(field));
    place = toFieldValue(value, fields_[field].type);
}

void TRowSet::Append() {
    begun_.assign(fields_.size(), null);
    isAppending_ = true;
}

void TRowSet::Post() {
    if (isAppending_) {
        records_.push_back(std::move(begun_));
        current_ = records_.size() - 1;
        isAppending_ = false;
    }
}

void TRowSet::Cancel() { isAppending_ = false; }

} // namespace host
