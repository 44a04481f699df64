#pragma once

#include <cstdint>
#include <string_view>

#include "host/runtime/dateTime.h"
#include "host/runtime/export.h"
#include "nuXmlParser/chars.h"

/// \file
/// Dates and times as XML text, after the lexical forms of XML Schema Datatypes, in the years 1 to
/// 9999. A value is local time; the time zone is the C library's (TZ, see tzset).
///
/// What a writer writes is read back as the same value to the millisecond, except for a time that
/// the clocks leave out or show twice when they change. A local time that comes twice is taken for
/// the first one.

/// What is said about the time zone.
enum TNuXmlDateTimeFormat : std::uint8_t {
    xdtfLocal,    ///< Nothing: "07:08:09".
    xdtfUTC,      ///< The time in UTC: "06:08:09Z".
    xdtfTimezone, ///< Local time and what it is ahead of UTC: "07:08:09+01:00".
};

/// The date: "2024-05-06". Throws host::EConvertError for a year outside 1 to 9999.
NUXML_API NuXmlString NuDateToXML(host::TDateTime value);

/// The time of day: "07:08:09", with a fraction (".5", ".123") where there are milliseconds.
///
/// Deliberate: a time alone belongs to no day, so its zone is that of 1899-12-30, for writing as
/// for reading, and never daylight saving time. Throws host::EConvertError for a value that is no
/// number.
NUXML_API NuXmlString NuTimeToXML(host::TDateTime value, TNuXmlDateTimeFormat format = xdtfLocal);

/// Date and time of day: "2024-05-06T07:08:09". An offset of local time that is no whole number of
/// minutes, or above 14 hours, is written as the nearest one towards zero, and the time with it.
/// Throws host::EConvertError for a year outside 1 to 9999, in local time or as written.
NUXML_API NuXmlString NuDateTimeToXML(host::TDateTime value,
                                      TNuXmlDateTimeFormat format = xdtfLocal);

/// Reads a date, skipping white space around it. A zone behind it ("Z", "+01:00") is ignored.
/// Throws host::EConvertError for everything else.
NUXML_API host::TDateTime NuXMLToDate(std::u16string_view text);

/// Reads a time of day, skipping white space around it, as a moment of 1899-12-30. A fraction of a
/// second may have any length and is rounded to milliseconds; "24:00:00" is "00:00:00". A zone of
/// up to 14 hours may follow; the time is then converted to local time. Throws host::EConvertError
/// for everything else.
NUXML_API host::TDateTime NuXMLToTime(std::u16string_view text);

/// Reads a date with a time, a date alone (at 00:00) or a time alone, each as described above;
/// behind a date "24:00:00" is the beginning of the next day. Throws host::EConvertError for
/// everything else, and when the local time is outside of the years 1 to 9999.
NUXML_API host::TDateTime NuXMLToDateTime(std::u16string_view text);
/// The same, but gives the default instead of throwing.
NUXML_API host::TDateTime NuXMLToDateTimeDef(std::u16string_view text,
                                             host::TDateTime defaultValue) noexcept;
