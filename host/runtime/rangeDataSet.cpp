#include "host/runtime/rangeDataSet.h"

#include "host/runtime/exception.h"

namespace host {

namespace {

TFieldType integerField(const ValueType& type) noexcept {
    switch (type.size) {
    case 1:
        return TFieldType::SmallInt;
    case 2:
        return type.isSigned ? TFieldType::SmallInt : TFieldType::Word;
    case 4:
        return type.isSigned ? TFieldType::Integer : TFieldType::LargeInt;
    default:
        return TFieldType::LargeInt;
    }
}

std::optional<TFieldType> fieldTypeOf(const ValueType& whole) noexcept {
    const ValueType* held = &whole;
    while (held->kind == ValueKind::Optional) {
        held = held->element;
    }
    const ValueType& type = *held;
    switch (type.kind) {
    case ValueKind::Boolean:
        return TFieldType::Boolean;
    case ValueKind::Integer:
        return integerField(type);
    case ValueKind::Single:
    case ValueKind::Double:
        return TFieldType::Float;
    case ValueKind::Currency:
        return TFieldType::Currency;
    case ValueKind::DateTime:
        return TFieldType::DateTime;
    case ValueKind::Enumeration:
    case ValueKind::Set:
    case ValueKind::String:
    case ValueKind::Utf8String:
        return TFieldType::WideString;
    case ValueKind::Variant:
    case ValueKind::Bytes:
    case ValueKind::Int32Array:
    case ValueKind::StringArray:
    case ValueKind::Object:
    case ValueKind::Slot:
    case ValueKind::Optional:
    case ValueKind::List:
    case ValueKind::Map:
    case ValueKind::Reference:
        break;
    }
    return std::nullopt;
}

} // namespace

PublishedFields::PublishedFields(const TClassInfo& info) {
    for (const TPropInfo& property : info.properties) {
        if (const auto type = fieldTypeOf(*property.type)) {
            fields_.push_back({&property, *type});
        }
    }
}

const TPropInfo& PublishedFields::property(std::size_t field) const {
    checkListIndex(static_cast<std::int64_t>(field), fields_.size());
    return *fields_[field].property;
}

TFieldType PublishedFields::type(std::size_t field) const {
    checkListIndex(static_cast<std::int64_t>(field), fields_.size());
    return fields_[field].type;
}

} // namespace host
