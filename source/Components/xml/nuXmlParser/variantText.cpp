#include "nuXmlParser/variantText.h"

#include <type_traits>
#include <utility>

#include "common/codePage.h"
#include "host/runtime/numberText.h"
#include "host/runtime/whiteSpace.h"
#include "nuXmlParser/base64Text.h"
#include "nuXmlParser/boolText.h"
#include "nuXmlParser/conversionErrors.h"
#include "nuXmlParser/dateTimeText.h"
#include "nuXmlParser/escape.h"
#include "nuXmlParser/floatingText.h"
#include "nuXmlParser/numberText.h"
#include "nuXmlParser/unescape.h"

namespace {

using host::WideString;

constexpr char16_t quote = u'"';

// Each kind of string to UTF-16 and back.
std::u16string_view wide(const std::u16string& text) noexcept { return text; }
std::u16string_view wide(const WideString& text) noexcept { return text.text; }
std::u16string wide(const std::string& text) { return NuAnsiStringToWideString(text); }

template <class String> String stringOf(std::u16string text) {
    if constexpr (std::is_same_v<String, std::string>) {
        return NuWideStringToAnsiString(text);
    } else {
        return String{std::move(text)};
    }
}

void addQuoted(NuXmlString& list, std::u16string_view item) {
    list.push_back(quote);
    for (const char16_t unit : item) {
        list.append(unit == quote ? 2 : 1, unit);
    }
    list.push_back(quote);
}

/// Adds the items with a blank between them.
template <class Items, class Add> void addJoined(NuXmlString& list, const Items& items, Add add) {
    bool isFirst = true;
    for (const auto& item : items) {
        if (!std::exchange(isFirst, false)) {
            list.push_back(u' ');
        }
        add(list, item);
    }
}

template <class Strings> void addStrings(NuXmlString& list, const Strings& strings) {
    addJoined(list, strings,
              [](NuXmlString& text, const auto& item) { addQuoted(text, wide(item)); });
}

struct VariantWriter {
    NuXmlString operator()(std::monostate) const { return {}; }
    NuXmlString operator()(host::Null) const { return {}; }
    NuXmlString operator()(bool value) const { return NuBoolToXML(value); }
    NuXmlString operator()(host::TDateTime value) const { return NuDateTimeToXML(value); }
    template <class Number>
    requires std::is_arithmetic_v<Number> || std::is_same_v<Number, host::Currency>
        NuXmlString operator()(Number value) const {
        return host::NumberText(value).string();
    }
    template <class String>
    requires requires(const String& text) { wide(text); }
    NuXmlString operator()(const String& text) const { return NuStrToXML(wide(text)); }
    NuXmlString operator()(const std::vector<std::uint8_t>& bytes) const {
        return NuBytesToXML(bytes);
    }
    NuXmlString operator()(const std::vector<std::int32_t>& numbers) const {
        NuXmlString list;
        addJoined(list, numbers, [](NuXmlString& text, std::int32_t number) {
            host::NumberText(number).appendTo(text);
        });
        return list;
    }
    template <class String> NuXmlString operator()(const std::vector<String>& strings) const {
        NuXmlString list;
        addStrings(list, strings);
        return NuStrToXML(list);
    }
};

/// Removes a string in quotes, which stands at the front, and gives what it holds.
NuXmlString takeQuoted(std::u16string_view& text) {
    NuXmlString content;
    text.remove_prefix(1);
    while (true) {
        const std::size_t end = text.find(quote);
        if (end == text.npos) {
            throw host::EConvertError(nu::messages::noStringArray);
        }
        content += text.substr(0, end);
        text.remove_prefix(end + 1);
        if (!text.starts_with(quote)) {
            return content;
        }
        content.push_back(quote);
        text.remove_prefix(1);
    }
}

template <class String> std::vector<String> readStrings(std::u16string_view text) {
    std::vector<String> strings;
    for (std::u16string_view rest = host::trimmed(text); !rest.empty();
         rest = host::trimmed(rest)) {
        if (!rest.starts_with(quote)) {
            strings.push_back(stringOf<String>(NuXmlString(host::takeWord(rest))));
            continue;
        }
        strings.push_back(stringOf<String>(takeQuoted(rest)));
        if (!rest.empty() && !host::isWhiteSpace(rest.front())) {
            throw host::EConvertError(nu::messages::noStringArray);
        }
    }
    return strings;
}

std::vector<std::int32_t> readIntegers(std::u16string_view text) {
    std::vector<std::int32_t> numbers;
    for (auto word = host::takeWord(text); !word.empty(); word = host::takeWord(text)) {
        numbers.push_back(NuXMLToInt(word));
    }
    return numbers;
}

template <class Number> Number readInteger(std::u16string_view text) {
    return nu::valueOrFail(host::parseInteger<Number>(host::trimmed(text)), nu::messages::noInteger,
                           text);
}

} // namespace

NuXmlString NuVariantToXml(const host::Variant& value) {
    return std::visit(VariantWriter(), value.Held());
}

host::Variant NuXmlToVariant(std::u16string_view text, host::VarType type) {
    switch (type) {
    case host::varEmpty:
        return {};
    case host::varNull:
        return host::null;
    case host::varInt8:
        return readInteger<std::int8_t>(text);
    case host::varInt16:
        return readInteger<std::int16_t>(text);
    case host::varInt32:
        return readInteger<std::int32_t>(text);
    case host::varInt64:
        return readInteger<std::int64_t>(text);
    case host::varUInt8:
        return readInteger<std::uint8_t>(text);
    case host::varUInt16:
        return readInteger<std::uint16_t>(text);
    case host::varUInt32:
        return readInteger<std::uint32_t>(text);
    case host::varUInt64:
        return readInteger<std::uint64_t>(text);
    case host::varSingle:
        return nu::valueOrFail(nu::readFloating<float>(text), nu::messages::noFloating, text);
    case host::varDouble:
        return NuXMLToDouble(text);
    case host::varCurrency:
        return NuXMLToCurrency(text);
    case host::varDate:
        return NuXMLToDateTime(text);
    case host::varBoolean:
        return NuXMLToBool(text);
    case host::varAnsiString:
        return stringOf<std::string>(NuXMLToStr(text));
    case host::varWideString:
        return stringOf<WideString>(NuXMLToStr(text));
    case host::varString:
        return NuXMLToStr(text);
    case host::varByteArray:
        return NuXMLToBytes(text);
    case host::varInt32Array:
        return readIntegers(text);
    case host::varAnsiStringArray:
        return readStrings<std::string>(NuXMLToStr(text));
    case host::varWideStringArray:
        return readStrings<WideString>(NuXMLToStr(text));
    case host::varStringArray:
        return readStrings<NuXmlString>(NuXMLToStr(text));
    default:
        throw host::EConvertError(host::formatMessage(nu::messages::noVariantType, {type}));
    }
}

void nu::appendStringArray(const std::vector<NuXmlString>& strings, NuXmlString& text) {
    addStrings(text, strings);
}

std::vector<NuXmlString> nu::readStringArray(std::u16string_view text) {
    return readStrings<NuXmlString>(text);
}
