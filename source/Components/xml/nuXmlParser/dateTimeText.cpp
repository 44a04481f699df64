#include "nuXmlParser/dateTimeText.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>

#include "host/runtime/whiteSpace.h"
#include "nuXmlParser/conversionErrors.h"
#include "nuXmlParser/localTime.h"

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::int64_t perSecond = 1000;
constexpr std::int64_t perMinute = 60 * perSecond;
constexpr std::int64_t perHour = 60 * perMinute;
constexpr std::int64_t perDay = host::millisecondsPerDay;
constexpr std::int64_t farthestZone = 14 * perHour;

constexpr sys_days dayZero = std::chrono::year(1899) / 12 / 30;
constexpr std::int64_t firstDay = (sys_days(std::chrono::year(1) / 1 / 1) - dayZero).count();
constexpr std::int64_t lastDay = (sys_days(std::chrono::year(9999) / 12 / 31) - dayZero).count();

constexpr std::int64_t timeOfDay(std::int64_t moment) noexcept {
    const std::int64_t rest = moment % perDay;
    return rest < 0 ? rest + perDay : rest;
}

constexpr std::int64_t dayOf(std::int64_t moment) noexcept {
    return (moment - timeOfDay(moment)) / perDay;
}

constexpr bool isInRange(std::int64_t moment) noexcept {
    return dayOf(moment) >= firstDay && dayOf(moment) <= lastDay;
}

std::int64_t momentOf(host::TDateTime value) {
    const auto moment = host::toMilliseconds(value);
    if (!moment) {
        throw host::EConvertError(nu::messages::dateOutOfRange);
    }
    return *moment;
}

/// Writes the pieces of a date and time one behind the other.
class DateTimeWriter {
public:
    void date(std::int64_t moment) {
        if (!isInRange(moment)) {
            throw host::EConvertError(nu::messages::dateOutOfRange);
        }
        const year_month_day date(dayZero + days(dayOf(moment)));
        digits(static_cast<unsigned>(static_cast<int>(date.year())), 4);
        unit(u'-');
        digits(static_cast<unsigned>(date.month()), 2);
        unit(u'-');
        digits(static_cast<unsigned>(date.day()), 2);
    }

    void time(std::int64_t moment) noexcept {
        const std::int64_t time = timeOfDay(moment);
        hourAndMinute(time);
        unit(u':');
        digits(static_cast<unsigned>(time / perSecond % 60), 2);
        auto fraction = static_cast<unsigned>(time % perSecond);
        if (fraction != 0) {
            unit(u'.');
            digits(fraction, 3);
            while (units_[length_ - 1] == u'0') {
                --length_;
            }
        }
    }

    void unit(char16_t unit) noexcept { units_[length_++] = unit; }

    void zone(TNuXmlDateTimeFormat format, std::int64_t offset) noexcept {
        if (format == xdtfUTC) {
            unit(u'Z');
        } else if (format == xdtfTimezone) {
            unit(offset < 0 ? u'-' : u'+');
            hourAndMinute(offset < 0 ? -offset : offset);
        }
    }

    [[nodiscard]] NuXmlString string() const { return {units_.data(), length_}; }

private:
    void hourAndMinute(std::int64_t time) noexcept {
        digits(static_cast<unsigned>(time / perHour), 2);
        unit(u':');
        digits(static_cast<unsigned>(time / perMinute % 60), 2);
    }

    void digits(unsigned number, unsigned count) noexcept {
        length_ += count;
        for (unsigned index = 1; index <= count; ++index, number /= 10) {
            units_[length_ - index] = static_cast<char16_t>(u'0' + number % 10);
        }
    }

    std::array<char16_t, 32> units_;
    std::size_t length_ = 0;
};

/// The offset that is written for an offset of local time.
constexpr std::int64_t writtenOffset(TNuXmlDateTimeFormat format, std::int64_t offset) noexcept {
    return format == xdtfUTC ? 0
                             : std::clamp(offset - offset % perMinute, -farthestZone, farthestZone);
}

/// What a text holds. Days count from day zero, times in milliseconds.
struct Parts {
    std::optional<std::int64_t> day;
    std::optional<std::int64_t> time; ///< Up to a whole day.
    std::optional<std::int64_t> zone; ///< What the time is ahead of UTC.
};

/// Takes a date and time from the front of a text, piece by piece.
class DateTimeReader {
public:
    explicit DateTimeReader(std::u16string_view text) noexcept : text_(text) {}

    /// The whole text; nothing when anything in it does not fit.
    std::optional<Parts> read() noexcept {
        Parts parts;
        const bool isTime = text_.size() > 2 && text_[2] == u':';
        if (!isTime && !(parts.day = date())) {
            return std::nullopt;
        }
        if ((isTime || take(u'T')) && !(parts.time = time())) {
            return std::nullopt;
        }
        if (!text_.empty() && !(parts.zone = zone())) {
            return std::nullopt;
        }
        return text_.empty() ? std::optional(parts) : std::nullopt;
    }

private:
    std::optional<std::int64_t> date() noexcept {
        const auto year = number(4);
        const bool hasMonth = take(u'-');
        const auto month = number(2);
        const bool hasDay = take(u'-');
        const auto day = number(2);
        if (!hasMonth || !hasDay || !year || !month || !day || *year == 0) {
            return std::nullopt;
        }
        const year_month_day date{std::chrono::year(static_cast<int>(*year)),
                                  std::chrono::month(*month), std::chrono::day(*day)};
        return date.ok() ? std::optional<std::int64_t>((sys_days(date) - dayZero).count())
                         : std::nullopt;
    }

    std::optional<std::int64_t> time() noexcept {
        const auto begin = hourAndMinute();
        const bool hasSecond = take(u':');
        const auto second = number(2);
        if (!begin || !hasSecond || !second || *second > 59) {
            return std::nullopt;
        }
        const auto rest = take(u'.') ? fraction() : 0;
        if (!rest) {
            return std::nullopt;
        }
        // The last hour is none but its beginning. A fraction that is rounded away does not count.
        const std::int64_t time = *begin + *second * perSecond + *rest;
        return *begin < perDay || (time == perDay && !hasFraction_) ? std::optional(time)
                                                                    : std::nullopt;
    }

    /// Up to 24 hours and 59 minutes.
    std::optional<std::int64_t> hourAndMinute() noexcept {
        const auto hour = number(2);
        const bool hasMinute = take(u':');
        const auto minute = number(2);
        if (!hasMinute || !hour || !minute || *hour > 24 || *minute > 59) {
            return std::nullopt;
        }
        return *hour * perHour + *minute * perMinute;
    }

    /// Digits behind the point, as milliseconds.
    std::optional<std::int64_t> fraction() noexcept {
        std::int64_t weight = perSecond / 10;
        std::int64_t milliseconds = 0;
        std::size_t length = 0;
        for (; length < text_.size() && isDigit(text_[length]); ++length, weight /= 10) {
            const int digit = text_[length] - u'0';
            hasFraction_ = hasFraction_ || digit != 0;
            milliseconds += weight * digit;
            milliseconds += length == 3 && digit >= 5 ? 1 : 0;
        }
        text_.remove_prefix(length);
        return length > 0 ? std::optional(milliseconds) : std::nullopt;
    }

    std::optional<std::int64_t> zone() noexcept {
        if (take(u'Z')) {
            return 0;
        }
        const bool isBehind = take(u'-');
        if (!isBehind && !take(u'+')) {
            return std::nullopt;
        }
        const auto offset = hourAndMinute();
        if (!offset || *offset > farthestZone) {
            return std::nullopt;
        }
        return isBehind ? -*offset : *offset;
    }

    static bool isDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

    /// Exactly `count` digits.
    std::optional<unsigned> number(std::size_t count) noexcept {
        unsigned value = 0;
        for (std::size_t index = 0; index < count; ++index) {
            if (index >= text_.size() || !isDigit(text_[index])) {
                return std::nullopt;
            }
            value = value * 10 + (text_[index] - unsigned{u'0'});
        }
        text_.remove_prefix(count);
        return value;
    }

    bool take(char16_t unit) noexcept {
        const bool isThere = text_.starts_with(unit);
        text_.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    std::u16string_view text_;
    bool hasFraction_ = false;
};

std::optional<Parts> readParts(std::u16string_view text) noexcept {
    return DateTimeReader(host::trimmed(text)).read();
}

std::int64_t localTimeOfDay(const Parts& parts) noexcept {
    return timeOfDay(parts.zone ? *parts.time - *parts.zone + nu::offsetAtLocal(0) : *parts.time);
}

std::optional<host::TDateTime> readDateTime(std::u16string_view text) noexcept {
    const auto parts = readParts(text);
    if (!parts) {
        return std::nullopt;
    }
    if (!parts->day) {
        return host::fromMilliseconds(localTimeOfDay(*parts));
    }
    std::int64_t moment = *parts->day * perDay + parts->time.value_or(0);
    if (parts->time && parts->zone) {
        const std::int64_t utc = moment - *parts->zone;
        moment = utc + nu::offsetAtUtc(utc);
    }
    return isInRange(moment) ? std::optional(host::fromMilliseconds(moment)) : std::nullopt;
}

} // namespace

NuXmlString NuDateToXML(host::TDateTime value) {
    DateTimeWriter writer;
    writer.date(momentOf(value));
    return writer.string();
}

NuXmlString NuTimeToXML(host::TDateTime value, TNuXmlDateTimeFormat format) {
    std::int64_t moment = momentOf(value);
    std::int64_t written = 0;
    if (format != xdtfLocal) {
        const std::int64_t offset = nu::offsetAtLocal(0);
        written = writtenOffset(format, offset);
        moment += written - offset;
    }
    DateTimeWriter writer;
    writer.time(moment);
    writer.zone(format, written);
    return writer.string();
}

NuXmlString NuDateTimeToXML(host::TDateTime value, TNuXmlDateTimeFormat format) {
    std::int64_t moment = momentOf(value);
    std::int64_t written = 0;
    if (format != xdtfLocal) {
        // Local time and its offset are moved together, so that the moment stays the same.
        const std::int64_t offset = nu::offsetAtLocal(moment);
        written = writtenOffset(format, offset);
        moment += written - offset;
    }
    DateTimeWriter writer;
    writer.date(moment);
    writer.unit(u'T');
    writer.time(moment);
    writer.zone(format, written);
    return writer.string();
}

host::TDateTime NuXMLToDate(std::u16string_view text) {
    const auto parts = readParts(text);
    if (!parts || !parts->day || parts->time) {
        nu::failConversion(nu::messages::noDate, text);
    }
    return host::fromMilliseconds(*parts->day * perDay);
}

host::TDateTime NuXMLToTime(std::u16string_view text) {
    const auto parts = readParts(text);
    if (!parts || parts->day) {
        nu::failConversion(nu::messages::noTime, text);
    }
    return host::fromMilliseconds(localTimeOfDay(*parts));
}

host::TDateTime NuXMLToDateTime(std::u16string_view text) {
    return nu::valueOrFail(readDateTime(text), nu::messages::noDateTime, text);
}

host::TDateTime NuXMLToDateTimeDef(std::u16string_view text,
                                   host::TDateTime defaultValue) noexcept {
    return readDateTime(text).value_or(defaultValue);
}
