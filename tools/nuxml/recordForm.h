#pragma once

#include <optional>
#include <string>

#include "nuXmlRecords.h"

namespace tool {

/// How records are shown.
struct RecordForm {
    enum class Kind { Xml, Json, Rows, Count };

    Kind kind = Kind::Xml;
    std::optional<nu::RecordColumns> columns{};
    nu::RowForm rows = nu::RowForm::Tsv;

    /// Appends the record at hand with its line break; nothing where records are counted.
    void append(std::string& target, nu::RecordReader& records) const {
        switch (kind) {
        case Kind::Xml:
            target += records.Xml();
            break;
        case Kind::Json:
            records.AppendJson(target);
            break;
        case Kind::Rows:
            records.AppendRow(target, *columns, rows);
            return;
        case Kind::Count:
            return;
        }
        target += '\n';
    }
};

} // namespace tool
