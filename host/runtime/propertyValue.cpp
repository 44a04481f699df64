#include "host/runtime/propertyValue.h"

#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/unicode.h"
#include "host/runtime/valueAccess.h"

namespace host {

namespace {

template <class Value> Variant held(const void* value) {
    return Variant(*static_cast<const Value*>(value));
}

Variant integerVariant(const ValueType& type, const void* value) {
    const std::uint64_t bits = loadBits(type, value);
    switch (type.size) {
    case 1:
        return type.isSigned ? Variant(static_cast<std::int8_t>(bits))
                             : Variant(static_cast<std::uint8_t>(bits));
    case 2:
        return type.isSigned ? Variant(static_cast<std::int16_t>(bits))
                             : Variant(static_cast<std::uint16_t>(bits));
    case 4:
        return type.isSigned ? Variant(static_cast<std::int32_t>(bits))
                             : Variant(static_cast<std::uint32_t>(bits));
    default:
        return type.isSigned ? Variant(static_cast<std::int64_t>(bits)) : Variant(bits);
    }
}

Variant namesVariant(const ValueType& type, const void* value) {
    std::u16string text;
    appendNames(type, value, text);
    return Variant(std::move(text));
}

Variant referenceVariant(const ValueType& type, const void* value) {
    const Instance target = type.reference->get(value);
    return target ? Variant(ReferenceName(target)) : Variant();
}

Variant variantOf(const ValueType& type, const void* value) {
    switch (type.kind) {
    case ValueKind::Boolean:
        return held<bool>(value);
    case ValueKind::Integer:
        return integerVariant(type, value);
    case ValueKind::Enumeration:
    case ValueKind::Set:
        return namesVariant(type, value);
    case ValueKind::Single:
        return held<float>(value);
    case ValueKind::Double:
        return held<double>(value);
    case ValueKind::Currency:
        return held<Currency>(value);
    case ValueKind::DateTime:
        return held<TDateTime>(value);
    case ValueKind::String:
        return held<std::u16string>(value);
    case ValueKind::Utf8String:
        return utf8ToUtf16(*static_cast<const std::string*>(value));
    case ValueKind::Variant:
        return *static_cast<const Variant*>(value);
    case ValueKind::Bytes:
        return held<std::vector<std::uint8_t>>(value);
    case ValueKind::Int32Array:
        return held<std::vector<std::int32_t>>(value);
    case ValueKind::StringArray:
        return held<std::vector<std::u16string>>(value);
    case ValueKind::Reference:
        return referenceVariant(type, value);
    case ValueKind::Object:
    case ValueKind::Slot:
    case ValueKind::Optional:
    case ValueKind::List:
    case ValueKind::Map:
        break;
    }
    return {};
}

[[noreturn]] void failValue(const Variant& value) {
    const std::u16string text =
        value.IsArray() || value.IsEmpty() || value.IsNull() ? std::u16string() : value.AsString();
    throw EConvertError(formatMessage(u"'%s' is no value of the property", {text}));
}

template <class Value> void assign(void* place, Value value) {
    *static_cast<Value*>(place) = std::move(value);
}

template <class Value> void assignArray(void* place, const Variant& value) {
    const auto* const array = value.If<Value>();
    if (array == nullptr) {
        failValue(value);
    }
    assign(place, *array);
}

void assignInteger(const ValueType& type, void* place, const Variant& value) {
    if (type.size == 8 && !type.isSigned) {
        storeBits(type, place, value.AsUInt64());
        return;
    }
    const std::int64_t number = value.AsInt64();
    if (!fits(type, number)) {
        failValue(value);
    }
    storeBits(type, place, static_cast<std::uint64_t>(number));
}

void assignVariant(const ValueType& target, void* place, const Variant& value) {
    const bool isOptional = target.kind == ValueKind::Optional;
    if (isOptional && (value.IsEmpty() || value.IsNull())) {
        target.optional->reset(place);
        return;
    }
    // What is in an optional is no optional again.
    const ValueType& type = isOptional ? *target.element : target;
    if (isOptional) {
        place = target.optional->emplace(place);
    }
    switch (type.kind) {
    case ValueKind::Boolean:
        return assign(place, value.AsBoolean());
    case ValueKind::Integer:
        return assignInteger(type, place, value);
    case ValueKind::Enumeration:
    case ValueKind::Set:
        if (value.IsEmpty() || value.IsNull() || value.IsArray() ||
            !parseNames(type, value.AsString(), place)) {
            failValue(value);
        }
        return;
    case ValueKind::Single:
        return assign(place, static_cast<float>(value.AsDouble()));
    case ValueKind::Double:
        return assign(place, value.AsDouble());
    case ValueKind::Currency:
        return assign(place, value.AsCurrency());
    case ValueKind::DateTime:
        return assign(place, value.AsDateTime());
    case ValueKind::String:
        return assign(place, value.AsString());
    case ValueKind::Utf8String:
        return assign(place, utf16ToUtf8(value.AsString()));
    case ValueKind::Variant:
        return assign(place, value);
    case ValueKind::Bytes:
        return assignArray<std::vector<std::uint8_t>>(place, value);
    case ValueKind::Int32Array:
        return assignArray<std::vector<std::int32_t>>(place, value);
    case ValueKind::StringArray:
        return assignArray<std::vector<std::u16string>>(place, value);
    case ValueKind::Object:
    case ValueKind::Slot:
    case ValueKind::Optional:
    case ValueKind::List:
    case ValueKind::Map:
    case ValueKind::Reference:
        break;
    }
    throw Exception(u"A property of several values cannot be set by one");
}

} // namespace

Variant GetProperty(Instance object, const TPropInfo& property) {
    const PropertyValue held(property, object.object);
    if (property.type->kind != ValueKind::Optional) {
        return variantOf(*property.type, held.get());
    }
    const void* const inner = property.type->optional->get(held.get());
    return inner != nullptr ? variantOf(*property.type->element, inner) : Variant();
}

void SetProperty(Instance object, const TPropInfo& property, const Variant& value) {
    if (property.mutablePlace != nullptr) {
        assignVariant(*property.type, property.mutablePlace(object.object), value);
        return;
    }
    if (property.set == nullptr) {
        throw Exception(formatMessage(u"The property \"%s\" is read-only", {property.name}));
    }
    const OwnedValue copy(*property.type);
    assignVariant(*property.type, copy.get(), value);
    property.set(object.object, copy.get());
}

bool HasDefault(Instance object, const TPropInfo& property) {
    const DefaultValue& expected = property.defaultValue;
    if (!property.hasDefault()) {
        return false;
    }
    const PropertyValue held(property, object.object);
    return equalsDefault(*property.type, held.get(), expected);
}

void ResetToDefault(Instance object, const TPropInfo& property) {
    if (!property.hasDefault() || !property.isWritable()) {
        return;
    }
    if (property.mutablePlace != nullptr) {
        assignDefault(*property.type, property.mutablePlace(object.object), property.defaultValue);
        return;
    }
    const OwnedValue copy(*property.type);
    assignDefault(*property.type, copy.get(), property.defaultValue);
    property.set(object.object, copy.get());
}

std::u16string ReferenceName(Instance object) {
    const TPropInfo* const property = object.info->findProperty(u"Name");
    const bool isWide = property != nullptr && property->type->kind == ValueKind::String;
    if (!isWide && (property == nullptr || property->type->kind != ValueKind::Utf8String)) {
        return {};
    }
    const PropertyValue held(*property, object.object);
    return isWide ? *static_cast<const std::u16string*>(held.get())
                  : utf8ToUtf16(*static_cast<const std::string*>(held.get()));
}

const TPropInfo& PropertyOf(const TClassInfo& info, std::u16string_view name) {
    const TPropInfo* const property = info.findProperty(name);
    if (property == nullptr) {
        throw Exception(
            formatMessage(u"There is no property \"%s\" in class %s!", {name, info.name}));
    }
    return *property;
}

} // namespace host
