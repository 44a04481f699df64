#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/runtime/rowSet.h"
#include "host/runtime/stream.h"

/// \file
/// Tables as comma-separated values, after RFC 4180.

namespace host {

/// How a table is written as text. The character that separates fields may be another one.
struct CsvOptions {
    char16_t separator = u','; ///< one character; no quote and no line break
    /// Whether the first line holds the names of the fields; without it they are F1, F2, ...
    bool hasHeader = true;
    /// The types of the fields, from the first on. The types of those that are not named here are
    /// guessed from all of their values.
    std::span<const TFieldType> types{};
};

/// The records of a table in memory that is read from and written as comma-separated values.
///
/// Lines end with CR LF, LF or CR; a field that holds a separator, a quote or a line break stands
/// in double quotes, those in it doubled. The text is UTF-8, with or without a mark.
///
/// An empty field without quotes is null. Numbers have a point, dates the forms 2024-05-06,
/// 07:08:09 (with a fraction or not) and both with a "T" or a blank between them, booleans are true
/// and false in any letter case; a given Boolean column also takes 1 and 0. A column is guessed to
/// be the first of Boolean, Integer, LargeInt, Float, Date, Time and DateTime that all its values
/// are, and otherwise WideString; numbers with a sign "+" or leading zeros are taken for text, so
/// that postal codes and telephone numbers stay what they are.
class NUXML_API CsvDataSet : public TRowSet {
public:
    CsvDataSet() = default;
    /// Reads the rest of a stream.
    explicit CsvDataSet(TStream& stream, const CsvOptions& options = {}) { Load(stream, options); }

    /// Puts what the stream holds from its position on in place of columns and records. Throws
    /// EConvertError with the number of the line for text that is no table (a quote that is not
    /// closed, a line with more or fewer fields than the first one, a field that is no value of a
    /// given type, a doubled name); the data set then stays as it was.
    void Load(TStream& stream, const CsvOptions& options = {});
    /// The same from UTF-8 text.
    void LoadText(std::string_view text, const CsvOptions& options = {});
    /// Writes the table, lines ended with CR LF. Load gives it back, types of guessed columns
    /// aside.
    void Save(TStream& stream, const CsvOptions& options = {});
};

/// Writes any data set that way, from its first record to its last.
NUXML_API void writeCsv(IDataSet& data, TStream& stream, const CsvOptions& options = {});

} // namespace host
