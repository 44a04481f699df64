#include "common/dataTypes.h"

#include "common/codePage.h"

TNuDataType NuVarTypeToDataType(host::VarType type) noexcept {
    switch (type) {
    case host::varInt8:
        return TNuDataType::Int8;
    case host::varInt16:
        return TNuDataType::Int16;
    case host::varInt32:
        return TNuDataType::Int32;
    case host::varInt64:
    case host::varUInt64:
        return TNuDataType::Int64;
    case host::varUInt8:
        return TNuDataType::UInt8;
    case host::varUInt16:
        return TNuDataType::UInt16;
    case host::varUInt32:
        return TNuDataType::UInt32;
    case host::varSingle:
        return TNuDataType::Single;
    case host::varDouble:
        return TNuDataType::Double;
    case host::varCurrency:
        return TNuDataType::Currency;
    case host::varAnsiString:
        return TNuDataType::AnsiString;
    case host::varWideString:
        return TNuDataType::WideString;
    case host::varString:
        return TNuDataType::String;
    case host::varBoolean:
        return TNuDataType::Boolean;
    case host::varDate:
        return TNuDataType::DateTime;
    case host::varByteArray:
        return TNuDataType::Bytes;
    case host::varAnsiStringArray:
    case host::varWideStringArray:
    case host::varStringArray:
        return TNuDataType::StringArray;
    case host::varInt32Array:
        return TNuDataType::Int32Array;
    default:
        return TNuDataType::Unknown;
    }
}

TNuDataType NuVarType(const host::Variant& value) noexcept {
    return NuVarTypeToDataType(value.Type());
}

std::u16string NuVarToWideString(const host::Variant& value) {
    const auto* const narrow = value.If<std::string>();
    return narrow != nullptr ? NuAnsiStringToWideString(*narrow) : value.AsString();
}
