#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/runtime/export.h"

namespace nu {

class RecordOutline;

/// How the rows of a table are written.
enum class RowForm : std::uint8_t {
    Csv, ///< by RFC 4180: commas, and quotes around what needs them
    Tsv, ///< tabs; tabs, line breaks and backslashes in values are written with a backslash
};

/// The columns of a table whose rows are records.
class NUXML_API RecordColumns {
public:
    /// \param list the columns with commas between them, each a path from the record down: "title",
    ///        "@id", "revision/text", "author/@name", "." for the record's own text. What is
    ///        missing is empty, several values have "; " between them. Prefixes do not matter.
    ///
    /// Throws host::Exception for anything else.
    explicit RecordColumns(std::u16string_view list);

    /// Appends the names of the columns as a row, with its line break.
    void AppendHeader(std::string& target, RowForm form) const;
    /// \cond internal
    void appendRow(std::string& target, RowForm form, const RecordOutline& outline) const;
    /// \endcond

private:
    struct Column {
        std::string text;
        std::vector<std::string> elements;
        std::string attribute; ///< empty for the text
    };

    std::vector<Column> columns_;
};

} // namespace nu
