// The result of a database query as a data set, written as XML. Built where the header of SQLite
// is.

#include <sqlite3.h>

#include <iostream>
#include <memory>
#include <stdexcept>

#include "common/utf8.h"
#include "nuObj2Xml.h"
#include "nuXmlDOM.h"

/// The records that a query gives; they can be read once, from the first to the last.
class QueryResult final : public host::IDataSet {
public:
    QueryResult(sqlite3* database, const char* query) {
        if (sqlite3_prepare_v2(database, query, -1, &statement_, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database));
        }
        Next();
    }
    ~QueryResult() override { sqlite3_finalize(statement_); }

    [[nodiscard]] std::size_t FieldCount() const override {
        return static_cast<std::size_t>(sqlite3_column_count(statement_));
    }
    [[nodiscard]] std::u16string FieldName(std::size_t field) const override {
        return NuFromUtf8(sqlite3_column_name(statement_, static_cast<int>(field)));
    }
    [[nodiscard]] host::TFieldType FieldType(std::size_t field) const override {
        const char* const type = sqlite3_column_decltype(statement_, static_cast<int>(field));
        const std::string_view name = type != nullptr ? type : "";
        return name == "INTEGER" ? host::TFieldType::LargeInt
               : name == "REAL"  ? host::TFieldType::Float
                                 : host::TFieldType::WideString;
    }
    void First() override {
        sqlite3_reset(statement_);
        Next();
    }
    void Next() override { hasRow_ = sqlite3_step(statement_) == SQLITE_ROW; }
    [[nodiscard]] bool Eof() const override { return !hasRow_; }
    [[nodiscard]] host::Variant GetValue(std::size_t field) const override {
        const int column = static_cast<int>(field);
        switch (sqlite3_column_type(statement_, column)) {
        case SQLITE_NULL:
            return host::null;
        case SQLITE_INTEGER:
            return std::int64_t{sqlite3_column_int64(statement_, column)};
        case SQLITE_FLOAT:
            return sqlite3_column_double(statement_, column);
        default:
            return NuFromUtf8(
                reinterpret_cast<const char*>(sqlite3_column_text(statement_, column)));
        }
    }

    // Queries are read only.
    void SetValue(std::size_t /*field*/, const host::Variant& /*value*/) override { refuse(); }
    void Append() override { refuse(); }
    void Post() override {}
    void Cancel() override {}

private:
    [[noreturn]] static void refuse() {
        throw host::Exception(u"The result of a query cannot be changed!");
    }

    sqlite3_stmt* statement_ = nullptr;
    bool hasRow_ = false;
};

int main() {
    sqlite3* opened = nullptr;
    sqlite3_open(":memory:", &opened);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(opened, sqlite3_close);
    sqlite3_exec(opened,
                 "CREATE TABLE book (id INTEGER, title TEXT, price REAL);"
                 "INSERT INTO book VALUES (1, 'Salt & Tide', 12.5), (2, 'Maps', NULL)",
                 nullptr, nullptr, nullptr);

    QueryResult books(opened, "SELECT id, title, price FROM book ORDER BY id");
    const NuRef<TNuDOMDocument> document = NuParseDocument("<books/>");
    NuSerialize(books, *document->get_documentElement());
    std::cout << NuToUtf8(document->get_documentElement()->get_formattedXml()) << '\n';
}
