#include "timefmt/time_parts.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <tuple>

namespace {

using moment = std::array<std::uint32_t, 7>;  // year, month, day, hour, minute, second, ms

moment of(const calendar_fields& f) {
    return {f.year, f.month, f.day, f.hour, f.minute, f.second, f.millisecond};
}

// Ticks worked out independently of the code under test.
TEST(TimeParts, TicksAndFieldsBothWays) {
    const std::pair<std::uint64_t, moment> rows[] = {
        {134395527070420000ULL, {2026, 11, 19, 9, 5, 7, 42}},
        {133537247999990000ULL, {2024, 2, 29, 23, 59, 59, 999}},  // leap day, last ms
        {125962560000000000ULL, {2000, 2, 29, 0, 0, 0, 0}},       // 2000 is a leap year
        {125963424000000000ULL, {2000, 3, 1, 0, 0, 0, 0}},
        {157519296000000000ULL, {2100, 2, 28, 0, 0, 0, 0}},       // 2100 is not
        {157520160000000000ULL, {2100, 3, 1, 0, 0, 0, 0}},
        {0, {1601, 1, 1, 0, 0, 0, 0}},                            // start of the scale
    };
    for (const auto& [ticks, m] : rows) {
        EXPECT_EQ(fields_to_ticks(m[0], m[1], m[2], m[3], m[4], m[5], m[6]), ticks) << m[0];
        calendar_fields f;
        ASSERT_TRUE(ticks_to_fields(ticks, f)) << m[0];
        EXPECT_EQ(of(f), m);
    }
    // Fields out of range count on into the next unit.
    const std::uint64_t march3 = fields_to_ticks(2026, 3, 3, 0, 0, 0, 0);
    EXPECT_EQ(fields_to_ticks(2026, 2, 31, 0, 0, 0, 0), march3);
    EXPECT_EQ(fields_to_ticks(2026, 3, 0, 0, 0, 0, 0), fields_to_ticks(2026, 2, 28, 0, 0, 0, 0));
    EXPECT_EQ(fields_to_ticks(2026, 0, 1, 0, 0, 0, 0), fields_to_ticks(2025, 12, 1, 0, 0, 0, 0));
    EXPECT_EQ(fields_to_ticks(2026, 3, 2, 24, 0, 0, 1000), march3 + ticks_per_second);
}

TEST(TimeParts, FractionFieldsAndValidity) {
    const time_parts p(134395527070000000ULL + 1234567);
    ASSERT_TRUE(p.valid);
    EXPECT_EQ(p.unix_seconds, 1795079107u);
    EXPECT_EQ(p.millisecond * 1000000000ULL + p.nanoseconds, 123123456700ULL);
    EXPECT_EQ(p.microseconds, 123456u);
    const std::uint64_t unix0 = ticks_1601_to_1970;  // Unix second 0 counts as no time
    for (std::uint64_t bad : {unix0 - unix0, std::uint64_t{1} << 63, unix0 - 1, unix0 + 9999999})
        EXPECT_FALSE(time_parts(bad).valid) << bad;
    EXPECT_TRUE(time_parts(ticks_1601_to_1970 + ticks_per_second).valid);
    calendar_fields f;
    f.year = 7;
    EXPECT_FALSE(ticks_to_fields(1ULL << 63, f));
    EXPECT_EQ(f.year, 0);
    const time_parts now;
    ASSERT_TRUE(now.valid);
    EXPECT_GE(now.year, 2024);
    EXPECT_EQ(now.ticks % 10000, 0u);  // the clock gives whole milliseconds
}

TEST(TimeParts, ParseDate) {
    const std::tuple<std::string, char, moment> rows[] = {  // text, delimiter, year month day (none: refused)
        {"25-3-1", '-', {2025, 3, 1}}, {"99/12/31", '/', {1999, 12, 31}}, {"30/1/1", '/', {2030, 1, 1}},
        {"31/1/1", '/', {1931, 1, 1}}, {"2026-02-31", '-', {2026, 2, 31}}, {"2026-0-0", '-', {2026}},
        {"2026---11--19", '-', {2026, 11, 19}},  // doubled delimiters skipped,
        {"2026----11-19", '-', {}},              // but only three reads for the month
        {"2026-13-01", '-', {}}, {"2026-12-32", '-', {}}, {"-2026-1-1", '-', {}}, {"2026-11", '-', {}},
        {"2026-11-", '-', {}}, {"2026-nov-19", '-', {}}, {"2026/11/19", '-', {}}, {"", '-', {}},
    };
    for (const auto& [text, delimiter, ymd] : rows) {
        std::uint32_t day = 99, month = 99, year = 99;
        EXPECT_EQ(parse_date(text, "YMD", delimiter, day, month, year), ymd[0] != 0) << text;
        if (ymd[0] != 0) { EXPECT_EQ((moment{year, month, day}), ymd) << text; }
    }
    std::uint32_t d = 0, m = 0, y = 0;
    EXPECT_FALSE(parse_date("2026-1-1", "YM", '-', d, m, y));
    EXPECT_FALSE(parse_date("2026-1-1", "YMX", '-', d, m, y));
}

TEST(TimeParts, ParseClock) {
    const std::string l32(32, '1');
    const std::tuple<std::string, bool, double, double, double> rows[] = {  // text, accepted, h, m, s
        {"8:05 pm", true, 20, 5, 0}, {" 8:05 AM ", true, 8, 5, 0}, {"12:00pm", true, 24, 0, 0},
        {"09:05:07.042", true, 9, 5, 7.042}, {"8:05:07 pm", true, 20, 5, 7}, {"7.9:30", true, 7, 30, 0},
        {"805", false, 0, 0, 0}, {"8:", false, 0, 0, 0}, {"8: pm", false, 0, 0, 0},
        {l32 + ":00", false, 0, 0, 0}, {"1:" + l32, false, 0, 0, 0}, {"1:2:" + l32, false, 0, 0, 0},  // 32 characters
        {"1:2:" + l32.substr(1), true, 1, 2, 1111111111111111111111111111111.0},
    };
    for (const auto& [text, ok, hours, minutes, seconds] : rows) {
        double h = -1, m = -1, s = -1;
        EXPECT_EQ(parse_clock(text, h, m, s), ok) << text;
        if (ok) { EXPECT_TRUE(h == hours && m == minutes && std::abs(s - seconds) <= 1e-9 * seconds) << text; }
    }
}

TEST(TimeParts, ParseDateTime) {
    calendar_fields f;
    ASSERT_TRUE(parse_date_time("2026-11-19", "8:05 pm", "YMD", '-', f));
    EXPECT_EQ(of(f), (moment{2026, 11, 19, 20, 5, 0, 0}));
    ASSERT_TRUE(parse_date_time("2026/11/19", "0:0:59.9996", "YMD", '/', f));
    EXPECT_EQ(of(f), (moment{2026, 11, 19, 0, 0, 59, 1000}));  // rounded, not carried
    f.hour = 5;
    ASSERT_TRUE(parse_date_time("2026-11-19", "", "YMD", '-', f));
    EXPECT_EQ(of(f), (moment{2026, 11, 19, 0, 0, 0, 0}));
    for (const char* clock : {"-1:00", "1:1e9", "noon"})
        EXPECT_FALSE(parse_date_time("2026-11-19", clock, "YMD", '-', f)) << clock;
    EXPECT_FALSE(parse_date_time("2026-13-01", "", "YMD", '-', f));
}

TEST(TimeParts, ElapsedStamps) {
    EXPECT_DOUBLE_EQ(stamp_difference((5ULL << 32) | 0x80000000u, 3ULL << 32), 2.5);
    EXPECT_DOUBLE_EQ(stamp_difference(3ULL << 32, (5ULL << 32) | 0x80000000u), 2.5);
    const std::uint64_t first = elapsed_stamp();
    EXPECT_LT(stamp_difference(first, elapsed_stamp()), 2.0);
    // Whole seconds since 1900, kept to 32 bits.
    const std::uint64_t since_1900 = (time_parts().unix_seconds + 2208988800ULL) & 0xffffffffu;
    EXPECT_LE(since_1900 - (first >> 32), 1u);
}

}  // namespace
