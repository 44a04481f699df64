#include "host/runtime/variant.h"

#include <array>
#include <cmath>
#include <limits>

#include "host/runtime/decimalText.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/numberText.h"
#include "host/runtime/unicode.h"
#include "host/runtime/variantNumber.h"

static_assert(std::numeric_limits<long double>::digits >= 64);

namespace host {

namespace {

struct Kind {
    VarType type;
    std::u16string_view name;
};

/// What the storage holds, in its order.
constexpr std::array kinds = {
    Kind{varEmpty, u"empty"},
    Kind{varNull, u"null"},
    Kind{varInt8, u"8-bit integer"},
    Kind{varInt16, u"16-bit integer"},
    Kind{varInt32, u"32-bit integer"},
    Kind{varInt64, u"64-bit integer"},
    Kind{varUInt8, u"unsigned 8-bit integer"},
    Kind{varUInt16, u"unsigned 16-bit integer"},
    Kind{varUInt32, u"unsigned 32-bit integer"},
    Kind{varUInt64, u"unsigned 64-bit integer"},
    Kind{varSingle, u"single"},
    Kind{varDouble, u"double"},
    Kind{varCurrency, u"currency"},
    Kind{varDate, u"date"},
    Kind{varBoolean, u"boolean"},
    Kind{varAnsiString, u"8-bit string"},
    Kind{varWideString, u"wide string"},
    Kind{varString, u"string"},
    Kind{varByteArray, u"array of bytes"},
    Kind{varInt32Array, u"array of integers"},
    Kind{varAnsiStringArray, u"array of 8-bit strings"},
    Kind{varWideStringArray, u"array of wide strings"},
    Kind{varStringArray, u"array of strings"},
};
static_assert(kinds.size() == std::variant_size_v<Variant::Storage>);

[[noreturn]] void failConversion(const Variant& value, std::u16string_view target) {
    if (const auto text = textOf(value)) {
        throw EConvertError(formatMessage(u"'%s' cannot be converted to a value of type %s",
                                          {std::u16string_view(*text), target}));
    }
    throw EConvertError(formatMessage(u"A value of type %s cannot be converted to type %s",
                                      {kinds[value.Held().index()].name, target}));
}

template <class Number> std::optional<Number> toInteger(const Variant& value) {
    if (value.IsString()) {
        return parseInteger<Number>(*textOf(value));
    }
    // An amount has more digits than the double that it compares as.
    const auto* amount = std::get_if<Currency>(&value.Held());
    const auto number = amount != nullptr ? amount->toLongDouble() : numberOf(value);
    if (!number) {
        return std::nullopt;
    }
    const long double rounded = std::nearbyint(*number);
    const bool fits = rounded >= std::numeric_limits<Number>::min() &&
                      rounded <= std::numeric_limits<Number>::max();
    return fits ? std::optional(static_cast<Number>(rounded)) : std::nullopt;
}

std::optional<double> toDouble(const Variant& value) {
    if (value.IsString()) {
        return parseFloating<double>(*textOf(value));
    }
    const auto number = numberOf(value);
    return number ? std::optional(static_cast<double>(*number)) : std::nullopt;
}

std::optional<bool> toBoolean(const Variant& value) {
    if (value.IsString()) {
        const std::u16string text = *textOf(value);
        if (text == u"true" || text == u"1") {
            return true;
        }
        return text == u"false" || text == u"0" ? std::optional(false) : std::nullopt;
    }
    const auto number = numberOf(value);
    return number ? std::optional(*number != 0) : std::nullopt;
}

constexpr std::u16string_view nameOf(VarType type) noexcept {
    for (const Kind& kind : kinds) {
        if (kind.type == type) {
            return kind.name;
        }
    }
    return {};
}

template <class Result>
Result orFail(std::optional<Result> result, const Variant& value, VarType target) {
    if (result) {
        return std::move(*result);
    }
    failConversion(value, nameOf(target));
}

} // namespace

std::optional<long double> numberOf(const Variant& value) noexcept {
    return std::visit(
        [](const auto& held) -> std::optional<long double> {
            using Held = std::remove_cvref_t<decltype(held)>;
            if constexpr (std::is_arithmetic_v<Held>) {
                return static_cast<long double>(held);
            } else if constexpr (std::is_same_v<Held, Currency>) {
                return held.toDouble();
            } else if constexpr (std::is_same_v<Held, TDateTime>) {
                return held.serial;
            } else {
                return std::nullopt;
            }
        },
        value.Held());
}

std::optional<std::u16string> textOf(const Variant& value) {
    return std::visit(
        [](const auto& held) -> std::optional<std::u16string> {
            using Held = std::remove_cvref_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::u16string>) {
                return held;
            } else if constexpr (std::is_same_v<Held, WideString>) {
                return held.text;
            } else if constexpr (std::is_same_v<Held, std::string>) {
                return utf8ToUtf16(held);
            } else if constexpr (std::is_same_v<Held, bool>) {
                return held ? u"true" : u"false";
            } else if constexpr (std::is_same_v<Held, TDateTime>) {
                return NumberText(held.serial).string();
            } else if constexpr (std::is_arithmetic_v<Held> || std::is_same_v<Held, Currency>) {
                return NumberText(held).string();
            } else {
                return std::nullopt;
            }
        },
        value.Held());
}

VarType Variant::Type() const noexcept { return kinds[held_.index()].type; }

bool Variant::IsString() const noexcept {
    const VarType type = Type();
    return type == varAnsiString || type == varWideString || type == varString;
}

bool Variant::AsBoolean() const { return orFail(toBoolean(*this), *this, varBoolean); }

std::int32_t Variant::AsInteger() const {
    return orFail(toInteger<std::int32_t>(*this), *this, varInt32);
}

std::int64_t Variant::AsInt64() const {
    return orFail(toInteger<std::int64_t>(*this), *this, varInt64);
}

std::uint64_t Variant::AsUInt64() const {
    return orFail(toInteger<std::uint64_t>(*this), *this, varUInt64);
}

double Variant::AsDouble() const { return orFail(toDouble(*this), *this, varDouble); }

Currency Variant::AsCurrency() const {
    if (const auto* const amount = If<Currency>()) {
        return *amount;
    }
    const bool hasNumber = IsString() || numberOf(*this).has_value();
    // By its text, so that 0.1 is a tenth and no binary fraction near it.
    const auto text = Type() == varBoolean ? NumberText(AsInteger()).string() : textOf(*this);
    return orFail(hasNumber ? parseCurrency(*text) : std::nullopt, *this, varCurrency);
}

TDateTime Variant::AsDateTime() const {
    if (const auto number = IsString() ? std::nullopt : numberOf(*this)) {
        return {static_cast<double>(*number)};
    }
    failConversion(*this, nameOf(varDate));
}

std::u16string Variant::AsString() const {
    auto text = Type() == varDate ? std::nullopt : textOf(*this);
    return orFail(std::move(text), *this, varString);
}

} // namespace host
