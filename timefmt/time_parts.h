#pragma once
// One time scale for the whole tool: 100 ns ticks since 1601-01-01 00:00:00 UTC.

#include <cstdint>
#include <string_view>

#include "platform/time_scale.h"

inline constexpr std::uint64_t ticks_1601_to_1900 = 94354848000000000ULL;

// The clock now, as ticks: a whole number of milliseconds.
std::uint64_t now_ticks();

// Calendar fields of an instant, all UTC.
struct calendar_fields {
    std::uint16_t year = 0, month = 0, day = 0;
    std::uint16_t hour = 0, minute = 0, second = 0, millisecond = 0;
    std::uint64_t microseconds = 0, nanoseconds = 0;
};

// One instant in ticks and in UTC calendar fields.
struct time_parts {
    std::uint64_t unix_seconds = 0;
    std::uint64_t ticks = 0;
    std::uint16_t year = 0, month = 0, day = 0;
    std::uint16_t hour = 0, minute = 0, second = 0, millisecond = 0;
    std::uint64_t microseconds = 0;
    std::uint64_t nanoseconds = 0;
    bool valid = false;

    time_parts();                              // the present moment
    explicit time_parts(std::uint64_t ticks);  // valid is false if it can't be converted
};

// Plain proleptic Gregorian conversion. False, with all fields 0, for a
// number that is negative as signed 64-bit.
bool ticks_to_fields(std::uint64_t ticks, calendar_fields& fields);
std::uint64_t fields_to_ticks(std::uint32_t year, std::uint32_t month, std::uint32_t day, std::uint32_t hour,
                              std::uint32_t minute, std::uint32_t second, std::uint32_t millisecond);

// Date text of the time-bound options. `order` is "YMD"; `delimiter` "/" or "-".
bool parse_date(std::string_view text, std::string_view order, char delimiter, std::uint32_t& day,
                std::uint32_t& month, std::uint32_t& year);
bool parse_clock(std::string_view text, double& hours, double& minutes, double& seconds);
bool parse_date_time(std::string_view date_text, std::string_view clock_text, std::string_view order,
                     char delimiter, calendar_fields& fields);

// The run timer's stamp: whole seconds since 1900 and a 32-bit fraction.
std::uint64_t elapsed_stamp();
double stamp_difference(std::uint64_t a, std::uint64_t b);
