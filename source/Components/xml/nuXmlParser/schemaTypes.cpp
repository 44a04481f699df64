#include "nuXmlParser/schemaTypes.h"

#include "common/caseFolding.h"
#include "nuXmlParser/conversionErrors.h"

namespace {

struct SchemaName {
    std::u16string_view name; // in lower case
    host::VarType type;
};

constexpr SchemaName schemaNames[] = {
    {u"byte", host::varInt8},
    {u"short", host::varInt16},
    {u"int", host::varInt32},
    {u"integer", host::varInt32},
    {u"long", host::varInt64},
    {u"int64", host::varInt64},
    {u"integer64", host::varInt64},
    {u"unsignedbyte", host::varUInt8},
    {u"unsignedshort", host::varUInt16},
    {u"unsignedint", host::varUInt32},
    {u"float", host::varDouble},
    {u"decimal", host::varDouble},
    {u"double", host::varCurrency},
    {u"string", host::varString},
    {u"boolean", host::varBoolean},
    {u"date", host::varDate},
    {u"time", host::varDate},
    {u"datetime", host::varDate},
    {u"timeinstant", host::varDate},
    {u"base64binary", host::varByteArray},
    {u"stringarray", host::varStringArray},
    {u"intarray", host::varInt32Array},
};

} // namespace

NuXmlString NuDataTypeToSchemaType(TNuDataType type) {
    switch (type) {
    case TNuDataType::Int8:
        return u"byte";
    case TNuDataType::Int16:
        return u"short";
    case TNuDataType::Int32:
        return u"int";
    case TNuDataType::Int64:
        return u"long";
    case TNuDataType::UInt8:
        return u"unsignedByte";
    case TNuDataType::UInt16:
        return u"unsignedShort";
    case TNuDataType::UInt32:
        return u"unsignedInt";
    case TNuDataType::Single:
        return u"float";
    case TNuDataType::Double:
    case TNuDataType::Currency:
        return u"double";
    case TNuDataType::AnsiString:
    case TNuDataType::WideString:
    case TNuDataType::String:
    case TNuDataType::Text:
        return u"string";
    case TNuDataType::Boolean:
        return u"boolean";
    case TNuDataType::Date:
        return u"date";
    case TNuDataType::Time:
        return u"time";
    case TNuDataType::DateTime:
        return u"dateTime";
    case TNuDataType::Bytes:
        return u"base64Binary";
    case TNuDataType::StringArray:
        return u"stringArray";
    case TNuDataType::Int32Array:
        return u"intArray";
    case TNuDataType::Unknown:
        break;
    }
    throw host::Exception(nu::messages::noSchemaTypeOfDataType);
}

NuXmlString NuSchemaType(const host::Variant& value) {
    return NuDataTypeToSchemaType(NuVarType(value));
}

NuXmlString NuVariantTypeToSchemaType(host::VarType type) {
    return NuSchemaType(static_cast<std::int16_t>(type));
}

NuXmlString NuFieldTypeToSchemaType(std::int32_t fieldType) {
    switch (fieldType) {
    case 1:
    case 16:
    case 24:
        return u"string";
    case 2:
        return u"short";
    case 3:
    case 4:
    case 14:
    case 25:
        return u"int";
    case 5:
        return u"boolean";
    case 6:
    case 7:
        return u"double";
    case 8:
        return u"decimal";
    case 9:
        return u"date";
    case 10:
        return u"time";
    case 11:
        return u"dateTime";
    default:
        throw host::Exception(nu::messages::noSchemaTypeOfFieldType);
    }
}

host::VarType NuSchemaTypeToVariantType(std::u16string_view name, bool raiseOnUnknown) {
    if (name.empty()) {
        return host::varEmpty;
    }
    // Without a ":" the place behind it is the start.
    const std::u16string local = NuFolded(name.substr(name.find(u':') + 1));
    for (const SchemaName& known : schemaNames) {
        if (known.name == local) {
            return known.type;
        }
    }
    if (raiseOnUnknown) {
        throw host::Exception(
            host::formatMessage(nu::messages::noVariantTypeOfSchemaType, {local}));
    }
    return host::varEmpty;
}

TNuDataType NuSchemaTypeToDataType(std::u16string_view name, bool raiseOnUnknown) {
    return NuVarTypeToDataType(NuSchemaTypeToVariantType(name, raiseOnUnknown));
}
