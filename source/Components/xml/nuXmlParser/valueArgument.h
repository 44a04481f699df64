#pragma once

#include <concepts>
#include <cstdint>

#include "common/textArgument.h"
#include "host/runtime/dateTime.h"
#include "host/runtime/export.h"

/// \file
/// Values that functions are called with, and written as text.

namespace nu {

/// The numbers that have a text: not those that are characters or booleans.
template <class Value>
concept Number = std::same_as<Value, float> || std::same_as<Value, double> ||
    (std::integral<Value> && !std::same_as<Value, bool> && !std::same_as<Value, char> &&
     !std::same_as<Value, wchar_t> && !std::same_as<Value, char8_t> &&
     !std::same_as<Value, char16_t> && !std::same_as<Value, char32_t>);

/// What is a value and no text.
template <class Value>
concept TypedValue =
    Number<Value> || std::same_as<Value, bool> || std::same_as<Value, host::TDateTime>;

} // namespace nu

/// A value as the argument of a call: text as TNuText takes it, a number, a boolean or a date. It
/// is the text of the value, as NuIntToXML, NuDoubleToXML, NuBoolToXML and NuDateTimeToXML write
/// it; a float is written with its own digits. Only for parameters, `const TNuValue&`.
class NUXML_API TNuValue : public TNuText {
public:
    template <class Text>
    requires nu::Utf16Text<Text> || nu::Utf8Text<Text> TNuValue(const Text& text) : TNuText(text) {}
    template <nu::TypedValue Value> TNuValue(Value value) {
        if constexpr (std::signed_integral<Value>) {
            write(std::int64_t{value});
        } else if constexpr (nu::Number<Value> && std::integral<Value>) {
            write(std::uint64_t{value});
        } else {
            write(value);
        }
    }

private:
    void write(std::int64_t number);
    void write(std::uint64_t number);
    void write(double number);
    void write(float number);
    void write(bool value);
    void write(host::TDateTime moment);
};
