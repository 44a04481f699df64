#pragma once

#include <string_view>
#include <vector>

#include "host/runtime/variant.h"
#include "nuXmlParser/chars.h"

/// \file
/// Variants as XML text and back.

/// The text of a value: numbers as numberText.h writes them, a single with its own fewest digits;
/// "true" and "false"; a date as NuDateTimeToXML with xdtfLocal; strings escaped by NuStrToXML,
/// with 8-bit ones read in the system code page; bytes as base64; an array of integers with a space
/// between them; an array of strings with each string in double quotes, those in it doubled, and a
/// space between them, all of it escaped. Empty and null give an empty text. Throws
/// host::EConvertError for a date outside of the years 1 to 9999.
NUXML_API NuXmlString NuVariantToXml(const host::Variant& value);

/// The value of the given type that a text stands for, as NuVariantToXml writes it; numbers, dates
/// and base64 as freely as the readers of their own take them. In an array of strings one without
/// blanks needs no quotes unless it begins with one; an empty text is an empty array. The types
/// empty and null give such a variant whatever the text. Throws host::EConvertError for a text that
/// is no such value and for a type code that is not known.
NUXML_API host::Variant NuXmlToVariant(std::u16string_view text, host::VarType type);

namespace nu {

/// Appends an array of strings as NuVariantToXml writes it, but not escaped.
void appendStringArray(const std::vector<NuXmlString>& strings, NuXmlString& text);
/// Reads such a text.
std::vector<NuXmlString> readStringArray(std::u16string_view text);

} // namespace nu
