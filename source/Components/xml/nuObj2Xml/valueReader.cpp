#include "nuObj2Xml/valueReader.h"

#include <utility>
#include <vector>

#include "common/caseFolding.h"
#include "common/utf8.h"
#include "host/runtime/decimalText.h"
#include "host/runtime/numberText.h"
#include "host/runtime/valueAccess.h"
#include "host/runtime/whiteSpace.h"
#include "nuObj2Xml/messages.h"
#include "nuXmlParser/base64Text.h"
#include "nuXmlParser/boolText.h"
#include "nuXmlParser/conversionErrors.h"
#include "nuXmlParser/dateTimeText.h"
#include "nuXmlParser/floatingText.h"
#include "nuXmlParser/numberText.h"
#include "nuXmlParser/schemaTypes.h"
#include "nuXmlParser/variantText.h"

namespace nu {

namespace {

using host::ValueKind;
using host::Variant;

/// The text itself where that is long, so that it is not copied again.
void assignText(NuXmlString& text, std::u16string& value) {
    constexpr std::size_t isLong = 4096;
    if (text.size() < isLong) {
        value.assign(text);
    } else {
        value.swap(text);
    }
}

/// Deliberate: a double is read as one, although the table of schema types has "double" for
/// amounts. An amount that no double can hold is read as an amount.
Variant readDouble(std::u16string_view text) {
    const double number = NuXMLToDouble(text);
    const std::u16string_view digits = host::trimmed(text);
    if (host::NumberText(number).string() != digits) {
        const auto amount = host::parseCurrency(digits);
        if (amount && host::NumberText(*amount).string() == digits) {
            return *amount;
        }
    }
    return number;
}

/// Deliberate: numbers above the range of "long" come from unsigned ones, which are written so.
Variant readLong(std::u16string_view text) {
    if (const auto number = host::parseInteger<std::int64_t>(host::trimmed(text))) {
        return *number;
    }
    return valueOrFail(host::parseInteger<std::uint64_t>(host::trimmed(text)), messages::noInteger,
                       text);
}

Variant readVariant(NuXmlString& text, std::u16string_view schemaType) {
    const host::VarType type = NuSchemaTypeToVariantType(schemaType, false);
    switch (type) {
    case host::varEmpty:
    case host::varString:
        return std::move(text);
    case host::varStringArray:
        return readStringArray(text);
    case host::varInt64:
        return readLong(text);
    case host::varCurrency:
        return readDouble(text);
    case host::varDouble:
        // The name of singles is one for doubles in the table of schema types.
        if (NuEqualAsciiWord(schemaType, u"float")) {
            return valueOrFail(readFloating<float>(text), messages::noFloating, text);
        }
        return NuXMLToDouble(text);
    default:
        return NuXmlToVariant(text, type);
    }
}

std::vector<std::int32_t> readIntegers(std::u16string_view text) {
    return *NuXmlToVariant(text, host::varInt32Array).If<std::vector<std::int32_t>>();
}

template <class Value> Value& as(void* value) noexcept { return *static_cast<Value*>(value); }

} // namespace

void readValue(const host::ValueType& type, NuXmlString& text, std::u16string_view schemaType,
               void* value) {
    switch (type.kind) {
    case ValueKind::Boolean:
        as<bool>(value) = NuXMLToBool(text);
        break;
    case ValueKind::Integer:
        if (!host::parseInteger(type, host::trimmed(text), value)) {
            failConversion(messages::noInteger, text);
        }
        break;
    case ValueKind::Enumeration:
    case ValueKind::Set:
        if (!host::parseNames(type, text, value)) {
            failConversion(messages::noName, text);
        }
        break;
    case ValueKind::Single:
        as<float>(value) = valueOrFail(readFloating<float>(text), messages::noFloating, text);
        break;
    case ValueKind::Double:
        as<double>(value) = NuXMLToDouble(text);
        break;
    case ValueKind::Currency:
        as<host::Currency>(value) = NuXMLToCurrency(text);
        break;
    case ValueKind::DateTime:
        as<host::TDateTime>(value) = NuXMLToDateTime(text);
        break;
    case ValueKind::String:
        assignText(text, as<std::u16string>(value));
        break;
    case ValueKind::Utf8String:
        as<std::string>(value) = NuToUtf8(text);
        break;
    case ValueKind::Variant:
        as<Variant>(value) = readVariant(text, schemaType);
        break;
    case ValueKind::Bytes:
        as<std::vector<std::uint8_t>>(value) = NuXMLToBytes(text);
        break;
    case ValueKind::Int32Array:
        as<std::vector<std::int32_t>>(value) = readIntegers(text);
        break;
    case ValueKind::StringArray:
        as<std::vector<std::u16string>>(value) = readStringArray(text);
        break;
    case ValueKind::Object:
    case ValueKind::Slot:
    case ValueKind::Optional:
    case ValueKind::List:
    case ValueKind::Map:
    case ValueKind::Reference:
        break; // what consists of elements is not read here
    }
}

} // namespace nu
