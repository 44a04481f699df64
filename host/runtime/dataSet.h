#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/runtime/export.h"
#include "host/runtime/variant.h"

namespace host {

/// What the fields of a column hold. The numbers are fixed.
enum class TFieldType : std::int32_t {
    String = 1,
    SmallInt = 2, ///< 16 bits, signed.
    Integer = 3,  ///< 32 bits, signed.
    Word = 4,     ///< 16 bits, unsigned.
    Boolean = 5,
    Float = 6, ///< A double.
    Currency = 7,
    Bcd = 8, ///< A decimal number; a double holds it.
    Date = 9,
    Time = 10,
    DateTime = 11,
    AutoInc = 14, ///< 32 bits, signed; the data set numbers its records by itself.
    Memo = 16,    ///< A long text.
    WideString = 24,
    LargeInt = 25, ///< 64 bits, signed.
};

/// Records in a row, with the same fields in each, and one of them at hand: what a table, the
/// result of a query or a file of records looks like to those who read or fill it.
///
/// ```
/// for (data.First(); !data.Eof(); data.Next()) { ... data.GetValue(0) ... }
/// data.Append(); data.SetValue(0, u"Ann"); data.Post();
/// ```
/// Fields are counted from 0; one outside throws EListError. A data set that cannot do something,
/// such as take records, throws host::Exception.
class NUXML_API IDataSet {
public:
    IDataSet() = default;
    IDataSet(const IDataSet&) = default;
    IDataSet& operator=(const IDataSet&) = default;
    virtual ~IDataSet();

    /// How many fields each record has.
    [[nodiscard]] virtual std::size_t FieldCount() const = 0;
    /// The name of a field, by which it stands in XML.
    [[nodiscard]] virtual std::u16string FieldName(std::size_t field) const = 0;
    /// The type of the field's values.
    [[nodiscard]] virtual TFieldType FieldType(std::size_t field) const = 0;

    /// Goes to the first record. A record that was begun and not posted is dropped.
    virtual void First() = 0;
    /// Goes to the next record.
    virtual void Next() = 0;
    /// Whether there is no record at hand: behind the last one, or without any.
    [[nodiscard]] virtual bool Eof() const = 0;

    /// The field's value in the record at hand; null where it has none.
    [[nodiscard]] virtual Variant GetValue(std::size_t field) const = 0;
    /// Whether the field has no value in the record at hand.
    [[nodiscard]] virtual bool IsNull(std::size_t field) const;
    /// Changes the field in the record at hand or in the one that was begun. An empty variant
    /// stands for null. Throws EConvertError for what is no value of the field.
    virtual void SetValue(std::size_t field, const Variant& value) = 0;

    /// Begins a new record, all of whose fields are null.
    virtual void Append() = 0;
    /// Puts the record that was begun behind the others; it stays at hand.
    virtual void Post() = 0;
    /// Drops the record that was begun.
    virtual void Cancel() = 0;
};

/// The value as a field of that type holds it: text as a UTF-16 string, integers by their width,
/// dates as TDateTime. Empty becomes null. Throws EConvertError for what is no such value.
NUXML_API Variant toFieldValue(const Variant& value, TFieldType type);

/// The field of that name, letter case of ASCII ignored, or -1.
NUXML_API std::ptrdiff_t findField(const IDataSet& data, std::u16string_view name);

} // namespace host
