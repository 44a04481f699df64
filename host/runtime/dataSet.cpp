#include "host/runtime/dataSet.h"

#include <utility>

#include "host/runtime/asciiCase.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"

namespace host {

namespace {

template <class Number> Variant toInteger(const Variant& value) {
    const std::int64_t number = value.AsInt64();
    if (!std::in_range<Number>(number)) {
        throw EConvertError(formatMessage(u"%d is too large for its field", {number}));
    }
    return static_cast<Number>(number);
}

} // namespace

IDataSet::~IDataSet() = default;

bool IDataSet::IsNull(std::size_t field) const {
    const Variant value = GetValue(field);
    return value.IsNull() || value.IsEmpty();
}

Variant toFieldValue(const Variant& value, TFieldType type) {
    if (value.IsNull() || value.IsEmpty()) {
        return null;
    }
    switch (type) {
    case TFieldType::String:
    case TFieldType::Memo:
    case TFieldType::WideString:
        return value.AsString();
    case TFieldType::SmallInt:
        return toInteger<std::int16_t>(value);
    case TFieldType::Integer:
    case TFieldType::AutoInc:
        return toInteger<std::int32_t>(value);
    case TFieldType::Word:
        return toInteger<std::uint16_t>(value);
    case TFieldType::LargeInt:
        return value.AsInt64();
    case TFieldType::Boolean:
        return value.AsBoolean();
    case TFieldType::Float:
    case TFieldType::Bcd:
        return value.AsDouble();
    case TFieldType::Currency:
        return value.AsCurrency();
    case TFieldType::Date:
    case TFieldType::Time:
    case TFieldType::DateTime:
        return value.AsDateTime();
    }
    throw EConvertError(
        formatMessage(u"There is no field type %d", {static_cast<std::int32_t>(type)}));
}

std::ptrdiff_t findField(const IDataSet& data, std::u16string_view name) {
    for (std::size_t field = 0; field < data.FieldCount(); ++field) {
        if (equalIgnoringCase(data.FieldName(field), name)) {
            return static_cast<std::ptrdiff_t>(field);
        }
    }
    return -1;
}

} // namespace host
