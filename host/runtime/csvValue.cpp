#include "host/runtime/csvValue.h"

#include <array>
#include <chrono>
#include <cstdint>

#include "host/runtime/asciiCase.h"
#include "host/runtime/exception.h"
#include "host/runtime/format.h"
#include "host/runtime/numberText.h"

namespace host {

namespace {

using std::chrono::sys_days;
constexpr sys_days dayZero = std::chrono::year(1899) / 12 / 30;

/// In the order of trying.
constexpr std::array candidates{TFieldType::Boolean, TFieldType::Integer, TFieldType::LargeInt,
                                TFieldType::Float,   TFieldType::Date,    TFieldType::Time,
                                TFieldType::DateTime};

/// Takes digits and marks from the front of a text.
class Pieces {
public:
    explicit Pieces(std::u16string_view text) noexcept : text_(text) {}

    bool take(char16_t unit) noexcept {
        const bool isThere = !text_.empty() && text_.front() == unit;
        text_.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }
    std::optional<unsigned> number(std::size_t digits, unsigned last) noexcept {
        const auto number = parseInteger<unsigned>(text_.substr(0, digits));
        if (text_.size() < digits || !number || *number > last || text_.front() < u'0') {
            return std::nullopt;
        }
        text_.remove_prefix(digits);
        return number;
    }
    std::u16string_view digits() noexcept {
        const auto run = text_.substr(0, text_.find_first_not_of(u"0123456789"));
        text_.remove_prefix(run.size());
        return run;
    }
    [[nodiscard]] bool isEmpty() const noexcept { return text_.empty(); }

private:
    std::u16string_view text_;
};

/// Milliseconds since day zero.
std::optional<std::int64_t> takeDate(Pieces& pieces) {
    const auto year = pieces.number(4, 9999);
    const auto month = year && pieces.take(u'-') ? pieces.number(2, 12) : std::nullopt;
    const auto day = month && pieces.take(u'-') ? pieces.number(2, 31) : std::nullopt;
    if (!day) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date(std::chrono::year(static_cast<int>(*year)),
                                           std::chrono::month(*month), std::chrono::day(*day));
    if (!date.ok() || *year == 0) {
        return std::nullopt;
    }
    return (sys_days(date) - dayZero).count() * millisecondsPerDay;
}

std::optional<std::int64_t> takeTime(Pieces& pieces) {
    const auto hour = pieces.number(2, 23);
    const auto minute = hour && pieces.take(u':') ? pieces.number(2, 59) : std::nullopt;
    if (!minute) {
        return std::nullopt;
    }
    std::int64_t milliseconds = (*hour * 60 + *minute) * 60'000LL;
    if (pieces.take(u':')) {
        const auto second = pieces.number(2, 59);
        if (!second) {
            return std::nullopt;
        }
        milliseconds += *second * 1000LL;
        if (pieces.take(u'.')) {
            std::u16string fraction(pieces.digits().substr(0, 3));
            if (fraction.empty()) {
                return std::nullopt;
            }
            fraction.resize(3, u'0');
            milliseconds += *parseInteger<unsigned>(fraction);
        }
    }
    return milliseconds;
}

std::optional<Variant> moment(std::u16string_view text, TFieldType type) {
    Pieces pieces(text);
    const bool hasDate = type != TFieldType::Time;
    const auto date = hasDate ? takeDate(pieces) : 0;
    const bool hasTime = type == TFieldType::Time || (type == TFieldType::DateTime && date &&
                                                      (pieces.take(u'T') || pieces.take(u' ')));
    const auto time = hasTime ? takeTime(pieces) : 0;
    if (!date || !time || !pieces.isEmpty()) {
        return std::nullopt;
    }
    return fromMilliseconds(*date + *time);
}

void appendDigits(std::u16string& text, std::int64_t number, std::size_t count) {
    const std::u16string digits = NumberText(number).string();
    text.append(count - std::min(count, digits.size()), u'0').append(digits);
}

std::u16string momentText(TDateTime value, TFieldType type) {
    const auto milliseconds = toMilliseconds(value);
    if (!milliseconds) {
        throw EConvertError(u"The date is out of range");
    }
    const std::chrono::milliseconds moment(*milliseconds);
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date(dayZero + day);
    const std::chrono::hh_mm_ss time(moment - day);

    std::u16string text;
    if (type != TFieldType::Time) {
        if (static_cast<int>(date.year()) < 1 || static_cast<int>(date.year()) > 9999) {
            throw EConvertError(u"The date is out of range");
        }
        appendDigits(text, static_cast<int>(date.year()), 4);
        appendDigits(text += u'-', static_cast<unsigned>(date.month()), 2);
        appendDigits(text += u'-', static_cast<unsigned>(date.day()), 2);
    }
    if (type == TFieldType::DateTime) {
        text += u'T';
    }
    if (type != TFieldType::Date) {
        appendDigits(text, time.hours().count(), 2);
        appendDigits(text += u':', time.minutes().count(), 2);
        appendDigits(text += u':', time.seconds().count(), 2);
        if (time.subseconds().count() != 0) {
            appendDigits(text += u'.', time.subseconds().count(), 3);
        }
    }
    return text;
}

bool isDate(TFieldType type) noexcept {
    return type == TFieldType::Date || type == TFieldType::Time || type == TFieldType::DateTime;
}

/// Whether a text is so surely of that type that it may be guessed. "+1" and "007" are rather text.
bool isSurely(std::u16string_view text, TFieldType type) {
    if (type == TFieldType::Boolean) {
        return equalIgnoringCase(text, u"true") || equalIgnoringCase(text, u"false");
    }
    if (!isDate(type)) {
        const std::u16string_view digits = text.substr(text.starts_with(u'-') ? 1 : 0);
        const bool hasLeadingZero = digits.size() > 1 && digits[0] == u'0' && digits[1] != u'.';
        // A double cannot hold more digits of a whole number, such as a long key.
        const bool isTooLong = type == TFieldType::Float && digits.size() > 15 &&
                               digits.find_first_of(u".eE") == digits.npos;
        if (digits.empty() || digits[0] < u'0' || digits[0] > u'9' || hasLeadingZero || isTooLong) {
            return false;
        }
    }
    return csvValue(text, type).has_value();
}

/// The place of the next candidate when a text is not of this one. Numbers widen; what was a
/// number, a boolean or a time before cannot be anything else.
std::size_t nextAfter(std::size_t candidate, bool hasSeen) noexcept {
    const TFieldType type = candidates[candidate];
    const bool widens = type == TFieldType::Integer || type == TFieldType::LargeInt;
    if (!hasSeen || widens) {
        return candidate + 1;
    }
    return type == TFieldType::Date ? candidates.size() - 1 : candidates.size();
}

} // namespace

std::optional<Variant> csvValue(std::u16string_view text, TFieldType type) {
    if (isDate(type)) {
        return moment(text, type);
    }
    if (type == TFieldType::Boolean) {
        const bool isTrue = text == u"1" || equalIgnoringCase(text, u"true");
        const bool isFalse = text == u"0" || equalIgnoringCase(text, u"false");
        return isTrue || isFalse ? std::optional<Variant>(isTrue) : std::nullopt;
    }
    try {
        return toFieldValue(text, type);
    } catch (const EConvertError&) {
        return std::nullopt;
    }
}

std::u16string csvText(const Variant& value, TFieldType type) {
    if (value.IsNull() || value.IsEmpty()) {
        return {};
    }
    return isDate(type) ? momentText(value.AsDateTime(), type) : value.AsString();
}

void CsvTypeGuess::see(std::u16string_view text) {
    while (candidate_ < candidates.size() && !isSurely(text, candidates[candidate_])) {
        candidate_ = nextAfter(candidate_, hasSeen_);
    }
    hasSeen_ = true;
}

TFieldType CsvTypeGuess::type() const noexcept {
    return hasSeen_ && candidate_ < candidates.size() ? candidates[candidate_]
                                                      : TFieldType::WideString;
}

} // namespace host
