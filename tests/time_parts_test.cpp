#include "timefmt/time_parts.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct moment {
    std::uint32_t year, month, day, hour, minute, second, millisecond;
    bool operator==(const moment&) const = default;
};

moment of(const calendar_fields& f) {
    return {f.year, f.month, f.day, f.hour, f.minute, f.second, f.millisecond};
}

// Ticks worked out independently of the code under test.
TEST(TimeParts, TicksAndFieldsBothWays) {
    struct row {
        const char* what;
        std::uint64_t ticks;
        moment m;
    };
    const row rows[] = {
        {"report sample", 134395527070420000ULL, {2026, 11, 19, 9, 5, 7, 42}},
        {"leap day, last ms", 133537247999990000ULL, {2024, 2, 29, 23, 59, 59, 999}},
        {"2000 is a leap year", 125962560000000000ULL, {2000, 2, 29, 0, 0, 0, 0}},
        {"1 March 2000", 125963424000000000ULL, {2000, 3, 1, 0, 0, 0, 0}},
        {"2100 is not", 157519296000000000ULL, {2100, 2, 28, 0, 0, 0, 0}},
        {"1 March 2100", 157520160000000000ULL, {2100, 3, 1, 0, 0, 0, 0}},
        {"start of the scale", 0, {1601, 1, 1, 0, 0, 0, 0}},
    };
    for (const row& r : rows) {
        const moment& m = r.m;
        EXPECT_EQ(fields_to_ticks(m.year, m.month, m.day, m.hour, m.minute, m.second,
                                  m.millisecond),
                  r.ticks)
            << r.what;
        calendar_fields f;
        ASSERT_TRUE(ticks_to_fields(r.ticks, f)) << r.what;
        EXPECT_TRUE(of(f) == m) << r.what;
    }
}

TEST(TimeParts, FractionFieldsAndValidity) {
    const time_parts p(134395527070000000ULL + 1234567);
    ASSERT_TRUE(p.valid);
    EXPECT_EQ(p.unix_seconds, 1795079107u);
    EXPECT_EQ(p.millisecond, 123);
    EXPECT_EQ(p.microseconds, 123456u);
    EXPECT_EQ(p.nanoseconds, 123456700u);

    EXPECT_FALSE(time_parts(0).valid);
    EXPECT_FALSE(time_parts(1ULL << 63).valid);
    EXPECT_FALSE(time_parts(ticks_1601_to_1970 - 1).valid);
    EXPECT_FALSE(time_parts(ticks_1601_to_1970 + 9999999).valid);  // Unix second 0
    EXPECT_TRUE(time_parts(ticks_1601_to_1970 + ticks_per_second).valid);

    calendar_fields f;
    f.year = 7;
    EXPECT_FALSE(ticks_to_fields(1ULL << 63, f));
    EXPECT_EQ(f.year, 0);
}

TEST(TimeParts, ClockGivesWholeMilliseconds) {
    const time_parts now;
    ASSERT_TRUE(now.valid);
    EXPECT_GE(now.year, 2024);
    EXPECT_EQ(now.ticks % 10000, 0u);
}

TEST(TimeParts, OutOfRangeFieldsCountOn) {
    const std::uint64_t march3 = fields_to_ticks(2026, 3, 3, 0, 0, 0, 0);
    EXPECT_EQ(fields_to_ticks(2026, 2, 31, 0, 0, 0, 0), march3);
    EXPECT_EQ(fields_to_ticks(2026, 3, 0, 0, 0, 0, 0), fields_to_ticks(2026, 2, 28, 0, 0, 0, 0));
    EXPECT_EQ(fields_to_ticks(2026, 0, 1, 0, 0, 0, 0), fields_to_ticks(2025, 12, 1, 0, 0, 0, 0));
    EXPECT_EQ(fields_to_ticks(2026, 3, 2, 24, 0, 0, 1000), march3 + ticks_per_second);
}

TEST(TimeParts, ParseDate) {
    struct row {
        std::string text;
        char delimiter;
        bool ok;
        std::uint32_t year, month, day;
    };
    const row rows[] = {
        {"25-3-1", '-', true, 2025, 3, 1},
        {"99/12/31", '/', true, 1999, 12, 31},
        {"30/1/1", '/', true, 2030, 1, 1},
        {"31/1/1", '/', true, 1931, 1, 1},
        {"2026-02-31", '-', true, 2026, 2, 31},
        {"2026-0-0", '-', true, 2026, 0, 0},
        {"2026---11--19", '-', true, 2026, 11, 19},  // doubled delimiters skipped
        {"2026----11-19", '-', false, 0, 0, 0},      // but only three reads for the month
        {"2026-13-01", '-', false, 0, 0, 0},
        {"2026-12-32", '-', false, 0, 0, 0},
        {"-2026-1-1", '-', false, 0, 0, 0},
        {"2026-11", '-', false, 0, 0, 0},
        {"2026-11-", '-', false, 0, 0, 0},
        {"2026-nov-19", '-', false, 0, 0, 0},
        {"2026/11/19", '-', false, 0, 0, 0},
        {"", '-', false, 0, 0, 0},
    };
    for (const row& r : rows) {
        std::uint32_t day = 99, month = 99, year = 99;
        EXPECT_EQ(parse_date(r.text, "YMD", r.delimiter, day, month, year), r.ok) << r.text;
        if (!r.ok) continue;
        EXPECT_TRUE(year == r.year && month == r.month && day == r.day) << r.text;
    }
    std::uint32_t d = 0, m = 0, y = 0;
    EXPECT_FALSE(parse_date("2026-1-1", "YM", '-', d, m, y));
    EXPECT_FALSE(parse_date("2026-1-1", "YMX", '-', d, m, y));
}

TEST(TimeParts, ParseClock) {
    const std::string long_field(32, '1');
    struct row {
        std::string text;
        bool ok;
        double hours, minutes, seconds;
    };
    const row rows[] = {
        {"8:05 pm", true, 20, 5, 0},
        {" 8:05 AM ", true, 8, 5, 0},
        {"12:00pm", true, 24, 0, 0},
        {"09:05:07.042", true, 9, 5, 7.042},
        {"8:05:07 pm", true, 20, 5, 7},
        {"7.9:30", true, 7, 30, 0},
        {"805", false, 0, 0, 0},
        {"8:", false, 0, 0, 0},
        {"8: pm", false, 0, 0, 0},
        {long_field + ":00", false, 0, 0, 0},
        {"1:" + long_field, false, 0, 0, 0},
        {"1:2:" + long_field, false, 0, 0, 0},
        {"1:2:" + long_field.substr(1), true, 1, 2, 1111111111111111111111111111111.0},
    };
    for (const row& r : rows) {
        double h = -1, m = -1, s = -1;
        EXPECT_EQ(parse_clock(r.text, h, m, s), r.ok) << r.text;
        if (!r.ok) continue;
        EXPECT_DOUBLE_EQ(h, r.hours) << r.text;
        EXPECT_DOUBLE_EQ(m, r.minutes) << r.text;
        EXPECT_DOUBLE_EQ(s, r.seconds) << r.text;
    }
}

TEST(TimeParts, ParseDateTime) {
    calendar_fields f;
    ASSERT_TRUE(parse_date_time("2026-11-19", "8:05 pm", "YMD", '-', f));
    EXPECT_TRUE(of(f) == (moment{2026, 11, 19, 20, 5, 0, 0}));
    ASSERT_TRUE(parse_date_time("2026/11/19", "09:05:07.042", "YMD", '/', f));
    EXPECT_TRUE(of(f) == (moment{2026, 11, 19, 9, 5, 7, 42}));
    ASSERT_TRUE(parse_date_time("2026/11/19", "0:0:59.9996", "YMD", '/', f));
    EXPECT_TRUE(of(f) == (moment{2026, 11, 19, 0, 0, 59, 1000}));  // rounded, not carried

    f.hour = 5;
    ASSERT_TRUE(parse_date_time("2026-11-19", "", "YMD", '-', f));
    EXPECT_TRUE(of(f) == (moment{2026, 11, 19, 0, 0, 0, 0}));

    EXPECT_FALSE(parse_date_time("2026-13-01", "", "YMD", '-', f));
    EXPECT_FALSE(parse_date_time("2026-11-19", "-1:00", "YMD", '-', f));
    EXPECT_FALSE(parse_date_time("2026-11-19", "1:1e9", "YMD", '-', f));
    EXPECT_FALSE(parse_date_time("2026-11-19", "noon", "YMD", '-', f));
}

TEST(TimeParts, ElapsedStamps) {
    EXPECT_DOUBLE_EQ(stamp_difference((5ULL << 32) | 0x80000000u, 3ULL << 32), 2.5);
    EXPECT_DOUBLE_EQ(stamp_difference(3ULL << 32, (5ULL << 32) | 0x80000000u), 2.5);

    const std::uint64_t first = elapsed_stamp();
    const std::uint64_t second = elapsed_stamp();
    EXPECT_LT(stamp_difference(first, second), 2.0);
    // Whole seconds since 1900, kept to 32 bits.
    const std::uint64_t since_1900 = (time_parts().unix_seconds + 2208988800ULL) & 0xffffffffu;
    EXPECT_LE(since_1900 - (first >> 32), 1u);
}

}  // namespace
