#include "nuObj2Xml/valueText.h"

#include <charconv>
#include <vector>

#include "host/runtime/numberText.h"
#include "host/runtime/valueAccess.h"
#include "host/runtime/variant.h"
#include "nuXmlParser/base64Text.h"
#include "nuXmlParser/dateTimeText.h"
#include "nuXmlParser/schemaTypes.h"
#include "nuXmlParser/unescape.h"
#include "nuXmlParser/variantText.h"

namespace nu {

namespace {

using host::ValueKind;

void appendNumbers(const std::vector<std::int32_t>& numbers, NuXmlString& text) {
    for (const std::int32_t number : numbers) {
        if (!text.empty()) {
            text.push_back(cNuSpace);
        }
        host::NumberText(number).appendTo(text);
    }
}

TNuDataType integerType(const host::ValueType& type) noexcept {
    switch (type.size) {
    case 1:
        return type.isSigned ? TNuDataType::Int8 : TNuDataType::UInt8;
    case 2:
        return type.isSigned ? TNuDataType::Int16 : TNuDataType::UInt16;
    case 4:
        return type.isSigned ? TNuDataType::Int32 : TNuDataType::UInt32;
    default:
        // Deliberate: also without a sign; there is no name for that.
        return TNuDataType::Int64;
    }
}

TNuDataType dataTypeOf(const host::ValueType& type) noexcept {
    switch (type.kind) {
    case ValueKind::Boolean:
        return TNuDataType::Boolean;
    case ValueKind::Integer:
        return integerType(type);
    case ValueKind::Single:
        return TNuDataType::Single;
    case ValueKind::Double:
    case ValueKind::Currency:
        return TNuDataType::Double;
    case ValueKind::DateTime:
        return TNuDataType::DateTime;
    case ValueKind::Bytes:
        return TNuDataType::Bytes;
    case ValueKind::Int32Array:
        return TNuDataType::Int32Array;
    case ValueKind::StringArray:
        return TNuDataType::StringArray;
    case ValueKind::Enumeration:
    case ValueKind::Set:
    case ValueKind::String:
    case ValueKind::Utf8String:
    case ValueKind::Variant:
    case ValueKind::Object:
    case ValueKind::Slot:
    case ValueKind::Optional:
    case ValueKind::List:
    case ValueKind::Map:
    case ValueKind::Reference:
        break;
    }
    return TNuDataType::String;
}

} // namespace

NuXmlString schemaTypeOf(const host::ValueType& type) {
    return NuDataTypeToSchemaType(dataTypeOf(type));
}

template <class Unit> template <class Number> void ValueWriter<Unit>::writeNumber(Number number) {
    out_.appendAscii(host::NumberText(number).view());
}

template <class Unit>
void ValueWriter<Unit>::writeInteger(const host::ValueType& type, const void* value) {
    const std::uint64_t bits = host::loadBits(type, value);
    if (type.isSigned) {
        writeNumber(static_cast<std::int64_t>(bits));
    } else {
        writeNumber(bits);
    }
}

template <class Unit>
void ValueWriter<Unit>::writeNames(const host::ValueType& type, const void* value) {
    scratch_.clear();
    host::appendNames(type, value, scratch_);
    out_.appendContent(scratch_);
}

template <class Unit>
void ValueWriter<Unit>::write(const host::ValueType& type, const void* value) {
    switch (type.kind) {
    case ValueKind::Boolean:
        out_.appendAscii(*static_cast<const bool*>(value) ? "true" : "false");
        break;
    case ValueKind::Integer:
        writeInteger(type, value);
        break;
    case ValueKind::Enumeration:
    case ValueKind::Set:
        writeNames(type, value);
        break;
    case ValueKind::Single:
        writeNumber(*static_cast<const float*>(value));
        break;
    case ValueKind::Double:
        writeNumber(*static_cast<const double*>(value));
        break;
    case ValueKind::Currency:
        writeNumber(*static_cast<const host::Currency*>(value));
        break;
    case ValueKind::DateTime:
        out_.appendWide(NuDateTimeToXML(*static_cast<const host::TDateTime*>(value)));
        break;
    case ValueKind::String:
        out_.appendContent(*static_cast<const std::u16string*>(value));
        break;
    case ValueKind::Utf8String:
        out_.appendUtf8Content(*static_cast<const std::string*>(value));
        break;
    case ValueKind::Variant:
        write(*static_cast<const host::Variant*>(value));
        break;
    case ValueKind::Bytes:
        out_.appendWide(NuBytesToXML(*static_cast<const std::vector<std::uint8_t>*>(value)));
        break;
    case ValueKind::Int32Array:
        scratch_.clear();
        appendNumbers(*static_cast<const std::vector<std::int32_t>*>(value), scratch_);
        out_.appendWide(scratch_);
        break;
    case ValueKind::StringArray:
        scratch_.clear();
        appendStringArray(*static_cast<const std::vector<std::u16string>*>(value), scratch_);
        out_.appendContent(scratch_);
        break;
    case ValueKind::Object:
    case ValueKind::Slot:
    case ValueKind::Optional:
    case ValueKind::List:
    case ValueKind::Map:
    case ValueKind::Reference:
        break; // what consists of elements is not written here
    }
}

template <class Unit> void ValueWriter<Unit>::write(const host::Variant& value) {
    if (const auto* const text = value.If<std::u16string>()) {
        out_.appendContent(*text);
    } else if (value.IsString()) {
        out_.appendContent(NuVarToWideString(value));
    } else if (NuVarType(value) == TNuDataType::StringArray) {
        out_.appendContent(NuXMLToStr(NuVariantToXml(value)));
    } else {
        out_.appendWide(NuVariantToXml(value));
    }
}

template class ValueWriter<char>;
template class ValueWriter<char16_t>;

} // namespace nu
