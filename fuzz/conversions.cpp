// Values as XML text: what is written is read back, and readers know one kind of fault only.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "host/runtime/exception.h"
#include "nuXmlParser.h"

namespace {

constexpr host::VarType types[] = {
    host::varEmpty,           host::varNull,       host::varInt8,
    host::varInt16,           host::varInt32,      host::varInt64,
    host::varUInt8,           host::varUInt16,     host::varUInt32,
    host::varUInt64,          host::varSingle,     host::varDouble,
    host::varCurrency,        host::varDate,       host::varBoolean,
    host::varAnsiString,      host::varWideString, host::varString,
    host::varByteArray,       host::varInt32Array, host::varAnsiStringArray,
    host::varWideStringArray, host::varStringArray};

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

template <class Number> Number numberAt(const std::uint8_t* data, std::size_t size) {
    Number number{};
    std::memcpy(&number, data, std::min(size, sizeof number));
    return number;
}

/// What is read from any text is written as a text that means the same.
void checkText(std::u16string_view text, host::VarType type) {
    try {
        const host::Variant value = NuXmlToVariant(text, type);
        require(value.Type() == type);
        const NuXmlString written = NuVariantToXml(value);
        // A string loses its NUL characters, and one of 8 bits what its code page does not have.
        if (written.find(u"NaN") == written.npos && type != host::varAnsiString &&
            type != host::varAnsiStringArray && NuXMLToStr(text).find(u'\0') == text.npos) {
            require(NuXmlToVariant(written, type) == value);
        }
        require(host::Variant::Compare(value, value) == 0);
    } catch (const host::EConvertError&) {
    }
}

/// Readers that do not throw agree with those that do.
void checkDefaults(std::u16string_view text) {
    const auto agrees = [text](auto read, auto readOrDefault, auto standIn) {
        try {
            const auto value = read(text);
            require(NuVariantToXml(value) == NuVariantToXml(readOrDefault(text, standIn)));
        } catch (const host::EConvertError&) {
            require(readOrDefault(text, standIn) == standIn);
        }
    };
    agrees(NuXMLToInt, NuXMLToIntDef, -7);
    agrees(NuXMLToInt64, NuXMLToInt64Def, std::int64_t{-7});
    agrees(NuXMLToDouble, NuXMLToDoubleDef, -7.5);
    agrees(NuXMLToDateTime, NuXMLToDateTimeDef, host::TDateTime{-7.5});
    try {
        require(NuSchemaTypeToVariantType(text, true) == NuSchemaTypeToVariantType(text, false));
    } catch (const host::Exception&) {
        require(NuSchemaTypeToVariantType(text, false) == host::varEmpty);
    }
}

/// Any value comes back from its text.
void checkValues(const std::uint8_t* data, std::size_t size) {
    const auto real = numberAt<double>(data, size);
    const auto single = numberAt<float>(data, size);
    const host::Variant values[] = {numberAt<std::int32_t>(data, size),
                                    numberAt<std::uint64_t>(data, size),
                                    std::isnan(real) ? 0 : real,
                                    std::isnan(single) ? 0 : single,
                                    host::Currency{numberAt<std::int64_t>(data, size)},
                                    std::vector<std::uint8_t>(data, data + size),
                                    std::vector<std::int32_t>(data, data + size)};
    for (const host::Variant& value : values) {
        require(NuXmlToVariant(NuVariantToXml(value), value.Type()) == value);
    }
}

void checkMoment(host::TDateTime moment) {
    try {
        const NuXmlString local = NuDateTimeToXML(moment);
        require(NuDateTimeToXML(NuXMLToDateTime(local)) == local);
        const NuXmlString time = NuTimeToXML(moment);
        for (const auto format : {xdtfUTC, xdtfTimezone}) {
            require(NuTimeToXML(NuXMLToTime(NuTimeToXML(moment, format))) == time);
        }
    } catch (const host::EConvertError&) {
        const auto milliseconds = host::toMilliseconds(moment);
        require(!milliseconds || std::abs(moment.serial) > 600'000);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const host::VarType type = types[data[0] % std::size(types)];
    ++data;
    --size;
    const std::u16string text(data, data + size);
    std::u16string wide(size / sizeof(char16_t), u'\0');
    std::memcpy(wide.data(), data, wide.size() * sizeof(char16_t));

    checkText(text, type);
    checkText(wide, type);
    checkDefaults(text);
    checkDefaults(wide);
    checkValues(data, size);
    checkMoment({numberAt<double>(data, size)});
    return 0;
}
