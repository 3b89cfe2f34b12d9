#include "timefmt/time_parts.h"

#include <array>
#include <gtest/gtest.h>
#include <tuple>

namespace {

using moment = std::array<std::uint32_t, 7>;  // year, month, day, hour, minute, second, ms

moment of(const calendar_fields& f) { return {f.year, f.month, f.day, f.hour, f.minute, f.second, f.millisecond}; }

// Ticks worked out independently of the code under test: the start, leap days and a century that isn't one.
TEST(Calendar, TicksToCalendarFieldsAndBack) {
    // clang-format off
    const std::pair<std::uint64_t, moment> rows[] = {
        {0, {1601, 1, 1, 0, 0, 0, 0}}, {133537247999990000ULL, {2024, 2, 29, 23, 59, 59, 999}},
        {125962560000000000ULL, {2000, 2, 29, 0, 0, 0, 0}}, {157520160000000000ULL, {2100, 3, 1, 0, 0, 0, 0}},
    };
    // clang-format on
    for (const auto& [ticks, m] : rows) {
        EXPECT_EQ(fields_to_ticks(m[0], m[1], m[2], m[3], m[4], m[5], m[6]), ticks) << m[0];
        calendar_fields f;
        EXPECT_TRUE(ticks_to_fields(ticks, f)) << m[0];
        EXPECT_EQ(of(f), m) << m[0];
    }
    // Fields out of range count on into the next unit.
    const std::uint64_t march3 = fields_to_ticks(2026, 3, 3, 0, 0, 0, 0);
    EXPECT_EQ(fields_to_ticks(2026, 2, 31, 0, 0, 0, 0), march3);
    EXPECT_EQ(fields_to_ticks(2026, 3, 2, 24, 0, 0, 1000), march3 + ticks_per_second);
}

TEST(Calendar, OnlyInstantsAfter1970AreShown) {
    const std::uint64_t unix0 = ticks_1601_to_1970;  // Unix second 0 counts as no time
    for (std::uint64_t bad : {std::uint64_t{0}, std::uint64_t{1} << 63, unix0 - 1, unix0 + 9999999})
        EXPECT_FALSE(time_parts(bad).valid) << bad;
    EXPECT_TRUE(time_parts(unix0 + ticks_per_second).valid);
    // Elapsed stamps: whole seconds and a 32-bit fraction, either way round.
    EXPECT_DOUBLE_EQ(stamp_difference(3ULL << 32, (5ULL << 32) | 0x80000000u), 2.5);
}

TEST(Calendar, DateAndClockTextsOfTheTimeBounds) {
    // Text, delimiter, year month day (none: refused); a two-digit year up to 30 is this century's.
    // clang-format off
    const std::tuple<std::string, char, moment> dates[] = {
        {"30/1/1", '/', {2030, 1, 1}}, {"31/1/1", '/', {1931, 1, 1}}, {"2026-02-31", '-', {2026, 2, 31}},
        {"2026---11--19", '-', {2026, 11, 19}}, {"2026----11-19", '-', {}}, {"2026-13-01", '-', {}},
        {"2026-11", '-', {}}, {"2026/11/19", '-', {}},
    };
    // clang-format on
    for (const auto& [text, delimiter, ymd] : dates) {
        std::uint32_t day = 99, month = 99, year = 99;
        const bool ok = parse_date(text, "YMD", delimiter, day, month, year);
        EXPECT_EQ(ok, ymd[0] != 0) << text;
        if (ok) { EXPECT_EQ((moment{year, month, day}), ymd) << text; }
    }
    // Text, accepted, hours, minutes, seconds.
    const std::tuple<std::string, bool, double, double, double> clocks[] = {
        {" 8:05 PM ", true, 20, 5, 0}, {"12:00am", true, 12, 0, 0}, {"09:05:07.042", true, 9, 5, 7.042},
        {"7.9:30", true, 7, 30, 0},    {"805", false, 0, 0, 0},     {"1:2:" + std::string(32, '1'), false, 0, 0, 0}};
    for (const auto& [text, ok, hours, minutes, seconds] : clocks) {
        double h = -1, m = -1, s = -1;
        EXPECT_EQ(parse_clock(text, h, m, s), ok) << text;
        if (!ok) continue;
        EXPECT_EQ(h, hours) << text;
        EXPECT_EQ(m, minutes) << text;
        EXPECT_NEAR(s, seconds, 1e-9) << text;
    }
    calendar_fields f;  // milliseconds rounded, not carried
    EXPECT_TRUE(parse_date_time("2026/11/19", "0:0:59.9996", "YMD", '/', f));
    EXPECT_EQ(of(f), (moment{2026, 11, 19, 0, 0, 59, 1000}));
    EXPECT_FALSE(parse_date_time("2026-11-19", "-1:00", "YMD", '-', f));
    EXPECT_FALSE(parse_date_time("2026-13-01", "", "YMD", '-', f));
}

}  // namespace
