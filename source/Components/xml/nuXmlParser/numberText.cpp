#include "nuXmlParser/numberText.h"

#include <optional>

#include "host/runtime/numberText.h"
#include "host/runtime/whiteSpace.h"
#include "nuXmlParser/conversionErrors.h"
#include "nuXmlParser/floatingText.h"

namespace {

template <class Number> std::optional<Number> readInteger(std::u16string_view text) noexcept {
    return host::parseInteger<Number>(host::trimmed(text));
}

} // namespace

NuXmlString NuIntToXML(std::int32_t value) { return host::NumberText(value).string(); }

NuXmlString NuInt64ToXML(std::int64_t value) { return host::NumberText(value).string(); }

std::int32_t NuXMLToInt(std::u16string_view text) {
    return nu::valueOrFail(readInteger<std::int32_t>(text), nu::messages::noInteger, text);
}

std::int32_t NuXMLToIntDef(std::u16string_view text, std::int32_t defaultValue) noexcept {
    return readInteger<std::int32_t>(text).value_or(defaultValue);
}

std::int64_t NuXMLToInt64(std::u16string_view text) {
    return nu::valueOrFail(readInteger<std::int64_t>(text), nu::messages::noInteger, text);
}

std::int64_t NuXMLToInt64Def(std::u16string_view text, std::int64_t defaultValue) noexcept {
    return readInteger<std::int64_t>(text).value_or(defaultValue);
}

NuXmlString NuDoubleToXML(double value) { return host::NumberText(value).string(); }

double NuXMLToDouble(std::u16string_view text) {
    return nu::valueOrFail(nu::readFloating<double>(text), nu::messages::noFloating, text);
}

double NuXMLToDoubleDef(std::u16string_view text, double defaultValue) noexcept {
    return nu::readFloating<double>(text).value_or(defaultValue);
}

NuXmlString NuCurrencyToXML(host::Currency value) { return host::NumberText(value).string(); }

host::Currency NuXMLToCurrency(std::u16string_view text) {
    return nu::valueOrFail(host::parseCurrency(host::trimmed(text)), nu::messages::noCurrency,
                           text);
}
