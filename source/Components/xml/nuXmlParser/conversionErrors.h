#pragma once

#include <string_view>
#include <utility>

#include "host/runtime/exception.h"
#include "host/runtime/format.h"

/// \file
/// The texts of the value conversions.

namespace nu::messages {

/// Of an assertion that names nothing else.
inline constexpr std::u16string_view assertionFailure = u"Assertion failure";

inline constexpr std::u16string_view noInteger = u"'%s' is not a valid integer value";
inline constexpr std::u16string_view noBoolean = u"'%s' is not a valid boolean value";
inline constexpr std::u16string_view noFloating = u"'%s' is not a valid floating point value";
inline constexpr std::u16string_view noCurrency = u"'%s' is not a valid currency value";
inline constexpr std::u16string_view noDate = u"'%s' is not a valid date";
inline constexpr std::u16string_view noTime = u"'%s' is not a valid time";
inline constexpr std::u16string_view noDateTime = u"'%s' is not a valid date and time";
inline constexpr std::u16string_view dateOutOfRange =
    u"A date outside of the years 1 to 9999 cannot be written";
inline constexpr std::u16string_view noBase64 = u"The text is not valid base64 (at %d)";
inline constexpr std::u16string_view noStringArray = u"The text is not a valid array of strings";
inline constexpr std::u16string_view noVariantType = u"There are no values of variant type %d";
inline constexpr std::u16string_view noSchemaTypeOfDataType =
    u"The given DataType could not be converted to a valid SchemaType!";
inline constexpr std::u16string_view noSchemaTypeOfFieldType =
    u"The given FieldType could not be converted to a valid SchemaType!";
inline constexpr std::u16string_view noVariantTypeOfSchemaType =
    u"The given schematype \"%s\" could not be converted to a valid VariantType!";

} // namespace nu::messages

namespace nu {

/// Throws host::EConvertError with the text that could not be read.
[[noreturn]] inline void failConversion(std::u16string_view message, std::u16string_view text) {
    throw host::EConvertError(host::formatMessage(message, {text}));
}

/// What was read, or the error if there is nothing.
template <class Optional>
auto valueOrFail(Optional&& read, std::u16string_view message, std::u16string_view text) {
    if (!read) {
        failConversion(message, text);
    }
    return *std::forward<Optional>(read);
}

} // namespace nu
