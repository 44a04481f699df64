#include "host/runtime/csvDataSet.h"

#include <array>
#include <optional>
#include <utility>

#include "host/runtime/csvValue.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/numberText.h"
#include "host/runtime/unicode.h"

namespace host {

namespace {

struct Cell {
    std::u16string text;
    bool isQuoted = false;

    [[nodiscard]] bool isNull() const noexcept { return text.empty() && !isQuoted; }
};

struct Line {
    std::size_t number = 0; ///< Of the line on which the record begins.
    std::vector<Cell> cells;
};

/// Splits a text into records.
class CsvReader {
public:
    CsvReader(std::u16string_view text, char16_t separator) noexcept
        : text_(text), separator_(separator) {}

    /// The next record; false at the end.
    bool read(Line& line) {
        if (place_ == text_.size()) {
            return false;
        }
        line.number = lineNumber_;
        line.cells.clear();
        do {
            readCell(line.cells.emplace_back());
        } while (take(separator_));
        if (place_ < text_.size() && !takeLineBreak()) {
            fail(u"There is text behind a closing quote in line %d!");
        }
        return true;
    }

private:
    void readCell(Cell& cell) {
        cell.isQuoted = take(u'"');
        if (!cell.isQuoted) {
            const std::array ends{separator_, u'\r', u'\n'};
            const std::u16string_view all(ends.data(), ends.size());
            const std::size_t end = std::min(text_.find_first_of(all, place_), text_.size());
            cell.text = text_.substr(place_, end - place_);
            place_ = end;
            return;
        }
        const std::size_t opened = lineNumber_;
        do {
            const std::size_t end = text_.find(u'"', place_);
            if (end == text_.npos) {
                lineNumber_ = opened;
                fail(u"The quote that opens in line %d is not closed!");
            }
            const auto part = text_.substr(place_, end - place_);
            countLines(part);
            cell.text += part;
            place_ = end + 1;
            if (place_ < text_.size() && text_[place_] == u'"') {
                cell.text += u'"';
            }
        } while (take(u'"'));
    }

    bool take(char16_t unit) noexcept {
        const bool isThere = place_ < text_.size() && text_[place_] == unit;
        place_ += isThere ? 1 : 0;
        return isThere;
    }

    bool takeLineBreak() noexcept {
        const bool hasReturn = take(u'\r');
        const bool isBreak = take(u'\n') || hasReturn;
        lineNumber_ += isBreak ? 1 : 0;
        return isBreak;
    }

    void countLines(std::u16string_view part) noexcept {
        for (std::size_t index = 0; index < part.size(); ++index) {
            const bool isPair = part[index] == u'\r' && part.substr(index + 1).starts_with(u'\n');
            lineNumber_ += part[index] == u'\n' || (part[index] == u'\r' && !isPair) ? 1 : 0;
        }
    }

    [[noreturn]] void fail(std::u16string_view message) const {
        throw EConvertError(formatMessage(message, {lineNumber_}));
    }

    std::u16string_view text_;
    char16_t separator_;
    std::size_t place_ = 0;
    std::size_t lineNumber_ = 1;
};

std::vector<Line> readLines(std::u16string_view text, char16_t separator) {
    std::vector<Line> lines;
    CsvReader reader(text, separator);
    for (Line line; reader.read(line);) {
        const std::size_t count = line.cells.size();
        const bool isEmptyLine = count == 1 && line.cells[0].isNull();
        const std::size_t wanted = lines.empty() ? count : lines[0].cells.size();
        if (count != wanted && !isEmptyLine) {
            throw EConvertError(formatMessage(u"Line %d has %d fields instead of %d!",
                                              {line.number, count, wanted}));
        }
        // In a table of one column an empty line is a record.
        if (!isEmptyLine || wanted == 1) {
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

TFieldType typeOfColumn(const std::vector<Line>& lines, std::size_t first, std::size_t field,
                        const CsvOptions& options) {
    if (field < options.types.size()) {
        return options.types[field];
    }
    CsvTypeGuess guess;
    for (std::size_t index = first; index < lines.size(); ++index) {
        const Cell& cell = lines[index].cells[field];
        if (!cell.isNull()) {
            guess.see(cell.text);
        }
    }
    return guess.type();
}

Variant valueOf(const Line& line, std::size_t field, TFieldType type) {
    const Cell& cell = line.cells[field];
    if (cell.isNull()) {
        return null;
    }
    if (auto value = csvValue(cell.text, type)) {
        return *std::move(value);
    }
    throw EConvertError(formatMessage(u"\"%s\" is no value of field %d in line %d!",
                                      {cell.text, field + 1, line.number}));
}

/// Writes lines through a block.
class CsvWriter {
public:
    CsvWriter(TStream& stream, char16_t separator) : stream_(stream), separator_(separator) {}

    void add(std::u16string_view text, bool isText) {
        if (!isFirst_) {
            block_ += separator_;
        }
        isFirst_ = false;
        const std::array special{separator_, u'"', u'\r', u'\n'};
        const bool needsQuotes =
            isText &&
            (text.empty() || text.find_first_of({special.data(), special.size()}) != text.npos);
        if (!needsQuotes) {
            block_ += text;
            return;
        }
        block_ += u'"';
        for (const char16_t unit : text) {
            block_.append(unit == u'"' ? 2 : 1, unit);
        }
        block_ += u'"';
    }

    void endLine() {
        block_ += u"\r\n";
        isFirst_ = true;
        constexpr std::size_t enough = 0x8000;
        if (block_.size() >= enough) {
            flush();
        }
    }

    void flush() {
        const std::string bytes = utf16ToUtf8(block_);
        stream_.WriteBuffer(bytes.data(), bytes.size());
        block_.clear();
    }

private:
    TStream& stream_;
    char16_t separator_;
    std::u16string block_;
    bool isFirst_ = true;
};

std::string restOf(TStream& stream) {
    std::string bytes;
    constexpr std::size_t piece = 0x10000;
    std::size_t size = 0;
    std::size_t count = 0;
    do {
        bytes.resize(size + piece);
        count = stream.Read(bytes.data() + size, piece);
        size += count;
    } while (count > 0);
    bytes.resize(size);
    return bytes;
}

} // namespace

void CsvDataSet::Load(TStream& stream, const CsvOptions& options) {
    LoadText(restOf(stream), options);
}

void CsvDataSet::LoadText(std::string_view text, const CsvOptions& options) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(mark) ? mark.size() : 0);
    const std::vector<Line> lines = readLines(utf8ToUtf16(text), options.separator);
    const std::size_t first = options.hasHeader ? 1 : 0;
    const std::size_t fields = lines.empty() ? 0 : lines[0].cells.size();

    TRowSet table;
    for (std::size_t field = 0; field < fields; ++field) {
        std::u16string name =
            options.hasHeader ? lines[0].cells[field].text : u"F" + NumberText(field + 1).string();
        if (findField(table, name) >= 0) {
            throw EConvertError(formatMessage(u"There are two fields \"%s\"!", {name}));
        }
        table.AddField(std::move(name), typeOfColumn(lines, first, field, options));
    }
    for (std::size_t index = first; index < lines.size(); ++index) {
        table.Append();
        for (std::size_t field = 0; field < fields; ++field) {
            table.SetValue(field, valueOf(lines[index], field, table.FieldType(field)));
        }
        table.Post();
    }
    table.First();
    static_cast<TRowSet&>(*this) = std::move(table);
}

void CsvDataSet::Save(TStream& stream, const CsvOptions& options) {
    writeCsv(*this, stream, options);
}

void writeCsv(IDataSet& data, TStream& stream, const CsvOptions& options) {
    CsvWriter writer(stream, options.separator);
    const std::size_t fields = data.FieldCount();
    if (options.hasHeader && fields > 0) {
        for (std::size_t field = 0; field < fields; ++field) {
            writer.add(data.FieldName(field), true);
        }
        writer.endLine();
    }
    for (data.First(); !data.Eof(); data.Next()) {
        for (std::size_t field = 0; field < fields; ++field) {
            const Variant value = data.GetValue(field);
            const bool isNull = value.IsNull() || value.IsEmpty();
            writer.add(csvText(value, data.FieldType(field)), !isNull);
        }
        writer.endLine();
    }
    writer.flush();
}

} // namespace host
