#pragma once

#include <cstdint>
#include <string_view>

#include "host/runtime/currency.h"
#include "host/runtime/export.h"
#include "nuXmlParser/chars.h"

/// \file
/// Numbers as XML text, after the lexical forms of XML Schema Datatypes; the locale plays no part.
///
/// Every reader skips white space around the number, takes a leading "+" or "-", and throws
/// host::EConvertError for everything else that is no such number, for text behind it, and for an
/// integer or an amount out of range. The readers that end in "Def" never throw and give their
/// default instead. What a writer writes is read back as the same value, but for the sign of NaN.

/// Decimal digits, with "-" before a negative number.
NUXML_API NuXmlString NuIntToXML(std::int32_t value);
/// The same for 64 bits.
NUXML_API NuXmlString NuInt64ToXML(std::int64_t value);

/// Reads decimal digits; zeros may lead.
NUXML_API std::int32_t NuXMLToInt(std::u16string_view text);
/// The same, with a default for text that is no such number.
NUXML_API std::int32_t NuXMLToIntDef(std::u16string_view text, std::int32_t defaultValue) noexcept;
/// The same for 64 bits.
NUXML_API std::int64_t NuXMLToInt64(std::u16string_view text);
/// The same, with a default for text that is no such number.
NUXML_API std::int64_t NuXMLToInt64Def(std::u16string_view text,
                                       std::int64_t defaultValue) noexcept;

/// The fewest digits that lead back to the same number: "0.1", "5" and "-0" from 1e-5 up to below
/// 1e15, "1.5E300" and "1E-7" elsewhere; "INF", "-INF" and "NaN".
NUXML_API NuXmlString NuDoubleToXML(double value);

/// Reads digits with an optional point and exponent ("1", ".5", "1e-3"), and "INF", "+INF", "-INF"
/// and "NaN" in exactly these letters. Gives the nearest double: infinite beyond the largest, zero
/// below the smallest.
NUXML_API double NuXMLToDouble(std::u16string_view text);
/// The same, with a default for text that is no such number.
NUXML_API double NuXMLToDoubleDef(std::u16string_view text, double defaultValue) noexcept;

/// Up to four decimals; those at the end that are zero are left out.
NUXML_API NuXmlString NuCurrencyToXML(host::Currency value);

/// Reads what NuXMLToDouble reads, without its words, and rounds exactly to four decimals, a tie to
/// the even digit.
NUXML_API host::Currency NuXMLToCurrency(std::u16string_view text);
