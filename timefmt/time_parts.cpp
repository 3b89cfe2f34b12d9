#include "timefmt/time_parts.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <string>

#include "platform/os.h"
#include "platform/text.h"

namespace {

constexpr std::uint64_t seconds_per_day = 86400;
constexpr std::uint64_t ticks_per_millisecond = 10000;
constexpr std::int64_t days_per_400_years = 146097;
constexpr std::int64_t days_per_100_years = 36524;
constexpr std::int64_t days_per_4_years = 1461;
constexpr std::int64_t days_per_year = 365;

// Last day of each month as a day of the year, counted from 0.
constexpr std::array<std::uint16_t, 12> last_day_common = {30,  58,  89,  119, 150, 180,
                                                           211, 242, 272, 303, 333, 364};
constexpr std::array<std::uint16_t, 12> last_day_leap = {30,  59,  90,  120, 151, 181,
                                                         212, 243, 273, 304, 334, 365};

bool is_leap_year(std::int64_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

std::int64_t floor_div(std::int64_t a, std::int64_t b) {
    std::int64_t q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0))) --q;
    return q;
}

// Days from 1601-01-01 to the first of January of `year`. 1601 opens a
// 400-year cycle, so the leap days before it are plain quotients.
std::int64_t days_before_year(std::int64_t year) {
    const std::int64_t y = year - 1601;
    return y * days_per_year + floor_div(y, 4) - floor_div(y, 100) + floor_div(y, 400);
}

// Day number since 1601-01-01 to year and day of the year, through the
// 400/100/4/1-year cycles instead of a walk over the years.
void split_days(std::int64_t days, std::int64_t& year, std::int64_t& day_of_year) {
    const std::int64_t cycles400 = days / days_per_400_years;
    days %= days_per_400_years;
    std::int64_t cycles100 = days / days_per_100_years;
    if (cycles100 == 4) cycles100 = 3;  // the last day of a leap century
    days -= cycles100 * days_per_100_years;
    const std::int64_t cycles4 = days / days_per_4_years;
    days %= days_per_4_years;
    std::int64_t years = days / days_per_year;
    if (years == 4) years = 3;  // the last day of a leap year
    days -= years * days_per_year;
    year = 1601 + cycles400 * 400 + cycles100 * 100 + cycles4 * 4 + years;
    day_of_year = days;
}

// The clock fields pass through a 32-byte buffer in the date reader of old;
// a field that would not fit there is refused rather than cut.
constexpr std::size_t clock_field_limit = 31;

bool read_clock_field(std::string_view field, double& value) {
    if (field.size() > clock_field_limit) return false;
    value = read_decimal(field);
    return true;
}

// Next field of a date text up to `delimiter`; false once the text is used up.
bool next_field(std::string_view text, std::size_t& pos, char delimiter, std::string_view& field) {
    if (pos > text.size()) return false;
    std::size_t end = text.find(delimiter, pos);
    if (end == std::string_view::npos) end = text.size();
    field = text.substr(pos, end - pos);
    pos = end + 1;
    return true;
}

bool store_date_field(char letter, std::string_view field, std::uint32_t& day, std::uint32_t& month,
                      std::uint32_t& year) {
    std::uint32_t value = 0;
    if (!parse_number_c(field, value)) return false;
    switch (letter) {
    case 'Y': year = value; return true;
    case 'M': month = value; return true;
    case 'D': day = value; return true;
    default: return false;
    }
}

// Whether a clock value fits a 16-bit calendar field.
bool fits_field(double value) { return std::isfinite(value) && value >= 0 && value < 65536; }

}  // namespace

std::uint64_t now_ticks() {
    std::uint64_t unix_seconds = 0;
    std::uint32_t milliseconds = 0;
    os::clock_now(unix_seconds, milliseconds);
    return (milliseconds + (unix_seconds + seconds_1601_to_1970) * 1000) * ticks_per_millisecond;
}

time_parts::time_parts() : time_parts(now_ticks()) {}

time_parts::time_parts(std::uint64_t instant) {
    // Only moments after the start of 1970 are shown; that also keeps out 0
    // and the numbers that are negative as signed 64-bit.
    if (instant == 0 || static_cast<std::int64_t>(instant) < 0) return;
    if (instant < ticks_1601_to_1970) return;
    const std::uint64_t seconds = (instant - ticks_1601_to_1970) / ticks_per_second;
    if (seconds == 0) return;

    calendar_fields fields;
    if (!ticks_to_fields(instant, fields)) return;
    unix_seconds = seconds;
    ticks = instant;
    year = fields.year;
    month = fields.month;
    day = fields.day;
    hour = fields.hour;
    minute = fields.minute;
    second = fields.second;
    millisecond = fields.millisecond;
    microseconds = fields.microseconds;
    nanoseconds = fields.nanoseconds;
    valid = true;
}

bool ticks_to_fields(std::uint64_t ticks, calendar_fields& fields) {
    fields = calendar_fields{};
    if (static_cast<std::int64_t>(ticks) < 0) return false;

    const std::uint64_t whole_seconds = ticks / ticks_per_second;
    const std::uint64_t fraction = ticks % ticks_per_second;
    const std::uint64_t seconds_of_day = whole_seconds % seconds_per_day;

    std::int64_t year = 0;
    std::int64_t day_of_year = 0;
    split_days(static_cast<std::int64_t>(whole_seconds / seconds_per_day), year, day_of_year);

    const auto& last_day = is_leap_year(year) ? last_day_leap : last_day_common;
    std::size_t month = static_cast<std::size_t>(day_of_year / 32);  // at most one short
    while (day_of_year > last_day[month]) ++month;
    const std::int64_t first_of_month = month == 0 ? 0 : last_day[month - 1] + 1;

    fields.year = static_cast<std::uint16_t>(year);
    fields.month = static_cast<std::uint16_t>(month + 1);
    fields.day = static_cast<std::uint16_t>(day_of_year - first_of_month + 1);
    fields.hour = static_cast<std::uint16_t>(seconds_of_day / 3600);
    fields.minute = static_cast<std::uint16_t>(seconds_of_day / 60 % 60);
    fields.second = static_cast<std::uint16_t>(seconds_of_day % 60);
    fields.millisecond = static_cast<std::uint16_t>(fraction / ticks_per_millisecond);
    fields.microseconds = fraction / 10;
    fields.nanoseconds = fraction * 100;
    return true;
}

std::uint64_t fields_to_ticks(std::uint32_t year, std::uint32_t month, std::uint32_t day, std::uint32_t hour,
                              std::uint32_t minute, std::uint32_t second, std::uint32_t millisecond) {
    // Month 0 and day 0 are let through by the date reader: they count back
    // into the month or year before, as does any overflow forward.
    std::int64_t month_index = static_cast<std::int64_t>(month) - 1;
    const std::int64_t full_year = year + floor_div(month_index, 12);
    month_index -= floor_div(month_index, 12) * 12;

    const auto& last_day = is_leap_year(full_year) ? last_day_leap : last_day_common;
    const std::int64_t first_of_month =
        month_index == 0 ? 0 : last_day[static_cast<std::size_t>(month_index - 1)] + 1;
    const std::int64_t days =
        days_before_year(full_year) + first_of_month + static_cast<std::int64_t>(day) - 1;

    // Unsigned from here on: absurd field values wrap instead of overflowing.
    const std::uint64_t total_days = static_cast<std::uint64_t>(days);
    return (millisecond + 1000ULL * (second + 60ULL * (minute + 60ULL * (hour + 24ULL * total_days)))) *
           ticks_per_millisecond;
}

bool parse_date(std::string_view text, std::string_view order, char delimiter, std::uint32_t& day,
                std::uint32_t& month, std::uint32_t& year) {
    if (order.size() < 3 || text.empty()) return false;

    std::uint32_t d = 0, m = 0, y = 0;
    std::size_t pos = 0;
    std::string_view field;
    if (!next_field(text, pos, delimiter, field) || field.empty()) return false;
    if (!store_date_field(order[0], field, d, m, y)) return false;

    // Doubled delimiters are passed over: a few times before the second
    // field, as often as it takes before the third.
    for (int reads = 0; reads < 3; ++reads) {
        if (!next_field(text, pos, delimiter, field)) return false;
        if (!field.empty()) break;
    }
    if (!store_date_field(order[1], field, d, m, y)) return false;

    do {
        if (!next_field(text, pos, delimiter, field)) return false;
    } while (field.empty());
    if (!store_date_field(order[2], field, d, m, y)) return false;

    if (y < 31) {
        y += 2000;
    } else if (y < 100) {
        y += 1900;
    }
    if (m > 12 || d > 31) return false;
    day = d;
    month = m;
    year = y;
    return true;
}

bool parse_clock(std::string_view text, double& hours, double& minutes, double& seconds) {
    std::string clock(text);
    if (!trim_text(clock)) return false;
    to_lower(clock);
    const std::string_view view(clock);

    const std::size_t colon = view.find(':');
    if (colon == std::string_view::npos) return false;

    // The "am"/"pm" marker: the first "m" behind the colon, with its letter.
    std::size_t marker = std::string_view::npos;
    bool afternoon = false;
    const std::size_t m_pos = view.find('m', colon + 1);
    if (m_pos != std::string_view::npos && (view[m_pos - 1] == 'a' || view[m_pos - 1] == 'p')) {
        marker = m_pos - 1;
        afternoon = view[marker] == 'p';
    }

    double h = 0;
    if (!read_clock_field(view.substr(0, colon), h)) return false;
    h = std::trunc(h);
    if (afternoon) h += 12;

    const std::size_t second_colon = view.find(':', colon + 1);
    std::size_t minutes_end = view.size();
    if (second_colon != std::string_view::npos) {
        minutes_end = second_colon;
    } else if (marker != std::string_view::npos) {
        minutes_end = marker;
        if (minutes_end > colon + 1 && view[minutes_end - 1] == ' ') --minutes_end;
    }
    const std::string_view minutes_field = view.substr(colon + 1, minutes_end - colon - 1);
    if (minutes_field.empty()) return false;
    double m = 0;
    if (!read_clock_field(minutes_field, m)) return false;

    double s = 0;
    if (second_colon != std::string_view::npos) {
        std::size_t seconds_end = view.size();
        if (marker != std::string_view::npos && marker > second_colon) seconds_end = marker;
        if (!read_clock_field(view.substr(second_colon + 1, seconds_end - second_colon - 1), s)) {
            return false;
        }
    }

    hours = h;
    minutes = m;
    seconds = s;
    return true;
}

bool parse_date_time(std::string_view date_text, std::string_view clock_text, std::string_view order,
                     char delimiter, calendar_fields& fields) {
    fields = calendar_fields{};
    std::uint32_t day = 0, month = 0, year = 0;
    if (!parse_date(date_text, order, delimiter, day, month, year)) return false;
    if (year > 0xffff) return false;
    fields.year = static_cast<std::uint16_t>(year);
    fields.month = static_cast<std::uint16_t>(month);
    fields.day = static_cast<std::uint16_t>(day);
    if (clock_text.empty()) return true;

    double hours = 0, minutes = 0, seconds = 0;
    if (!parse_clock(clock_text, hours, minutes, seconds)) return false;
    // Values a calendar field can't hold are refused, not wrapped.
    if (!fits_field(hours) || !fits_field(minutes) || !fits_field(seconds)) return false;
    const double whole_seconds = std::floor(seconds);
    fields.hour = static_cast<std::uint16_t>(hours);
    fields.minute = static_cast<std::uint16_t>(minutes);
    fields.second = static_cast<std::uint16_t>(whole_seconds);
    fields.millisecond = static_cast<std::uint16_t>((seconds - whole_seconds) * 1000 + 0.5);
    return true;
}

std::uint64_t elapsed_stamp() {
    constexpr std::uint64_t seconds_1900_to_1970 =
        (ticks_1601_to_1970 - ticks_1601_to_1900) / ticks_per_second;
    std::uint64_t unix_seconds = 0;
    std::uint32_t nanoseconds = 0;
    os::clock_precise(unix_seconds, nanoseconds);

    const std::uint32_t whole = static_cast<std::uint32_t>(unix_seconds + seconds_1900_to_1970);
    std::uint32_t fraction =
        static_cast<std::uint32_t>((static_cast<std::uint64_t>(nanoseconds) << 28) / 1000000000ULL);
    if (fraction != 0) {
        while ((fraction & 0xf0000000u) == 0) fraction <<= 4;
    }
    return (static_cast<std::uint64_t>(whole) << 32) | fraction;
}

double stamp_difference(std::uint64_t a, std::uint64_t b) {
    constexpr double fraction_unit = 1.0 / 4294967296.0;
    const auto seconds = [](std::uint64_t stamp) {
        return static_cast<double>(stamp >> 32) + static_cast<double>(stamp & 0xffffffffu) * fraction_unit;
    };
    return std::fabs(seconds(a) - seconds(b));
}
