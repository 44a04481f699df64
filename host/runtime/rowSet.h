#pragma once

#include <string>
#include <vector>

#include "host/runtime/dataSet.h"

namespace host {

/// Records in memory.
class NUXML_API TRowSet : public IDataSet {
public:
    TRowSet() = default;
    TRowSet(const TRowSet&) = default;
    TRowSet(TRowSet&&) = default;
    TRowSet& operator=(const TRowSet&) = default;
    TRowSet& operator=(TRowSet&&) = default;
    ~TRowSet() override;

    /// Adds a column, in which the records that are there already have null. Throws host::Exception
    /// when there is one of that name, letter case of ASCII ignored.
    void AddField(std::u16string name, TFieldType type);
    /// How many records were posted.
    [[nodiscard]] std::size_t RecordCount() const noexcept { return records_.size(); }
    /// Drops the records; the columns stay.
    void Clear() noexcept;

    // IDataSet
    [[nodiscard]] std::size_t FieldCount() const override { return fields_.size(); }
    [[nodiscard]] std::u16string FieldName(std::size_t field) const override;
    [[nodiscard]] TFieldType FieldType(std::size_t field) const override;
    void First() override;
    void Next() override;
    [[nodiscard]] bool Eof() const override;
    [[nodiscard]] Variant GetValue(std::size_t field) const override;
    void SetValue(std::size_t field, const Variant& value) override;
    void Append() override;
    void Post() override;
    void Cancel() override;

private:
    struct Field {
        std::u16string name;
        TFieldType type;
    };
    using Record = std::vector<Variant>;

    [[nodiscard]] NUXML_LOCAL const Variant& valueAt(std::size_t field) const;

    std::vector<Field> fields_;
    std::vector<Record> records_;
    std::size_t current_ = 0;
    Record begun_;
    bool isAppending_ = false;
};

} // namespace host
