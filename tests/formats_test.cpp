#include "timefmt/formats.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// 2026-11-19 09:05:07.042 UTC.
constexpr std::uint64_t sample_ticks = 134395527070420000ULL;

TEST(Formats, OptionTextsAcceptedByLength) {
    struct row {
        std::string text;
        bool date_ok, time_ok;
    };
    const row rows[] = {
        {"yyyy-mm-dd", true, false},
        {"mm/dd/yy", true, false},
        {"dd-mmm-yy", false, false},
        {"dd/mm/y", false, false},
        {"hh:mm:ss", true, true},
        {"hh:mm", false, false},
        {"hh:mm:ss.xx", false, false},
        {"hh:mm:ssxxxx", false, true},
        {"hh:mm:ss.xxxxxxxxx", false, true},
        {"hh:mm:ss.xxxxxxxxxx", false, false},
        {"hhmmss.xxxxx", false, false},
    };
    for (const row& r : rows) {
        EXPECT_EQ(date_format_acceptable(r.text), r.date_ok) << r.text;
        EXPECT_EQ(time_format_acceptable(r.text), r.time_ok) << r.text;
    }
}

TEST(Formats, WordsOfFormats) {
    struct row {
        const char* date;
        const char* time;
        bool pair, ok;
        std::uint32_t word;
    };
    const row rows[] = {
        {"yyyy-mm-dd", "hh:mm:ss.xxx", false, true, '-' | 0x200 | 0x400 | 0x8000 | 3u << 17},
        {"mmm dd, yy", "hh:mm:ss", true, true, ' ' | 0x100 | 0x800 | 0x4000 | 0x10000},
        {"dd/mm-yyyy", "hh:mm:ss.xxxxxxxxxxxx", false, true, '/' | 0x200 | 0x400 | 0x2000 | 9u << 17},
        // A date that can't be understood keeps what was found, and no fraction.
        {"yyyy/dd/mm", "hh:mm:ss.xxx", false, false, '/' | 0x200 | 0x400},
        {"aaaaaaaa", "hh:mm:ss.xxx", true, false, 0x10000},
    };
    for (const row& r : rows) {
        std::uint32_t word = 0xdeadbeef;
        EXPECT_EQ(compile_formats(word, r.date, r.time, r.pair), r.ok) << r.date;
        EXPECT_EQ(word, r.word) << r.date;
    }
}

TEST(Formats, RenderSample) {
    struct row {
        const char* date_format;
        const char* time_format;
        bool pair;
        const char* date;
        const char* time;
    };
    const row rows[] = {
        {"yyyy-mm-dd", "hh:mm:ss.xxx", false, "2026-11-19", "09:05:07.042"},
        {"mm/dd/yyyy", "hh:mm:ss", false, "11/19/2026", "09:05:07"},
        {"dd-mm-yyyy", "hh:mm:ss.xxxxxx", false, "19-11-2026", "09:05:07.042000"},
        {"mm/dd/yy", "hh:mm:ssxxxx", false, "11/19/26", "09:05:07.0420"},
        {"yyyymmdd", "hh:mm:ss.xxx", false, "20261119", "09:05:07.042"},
        {"mmm dd, yy", "hh:mm:ss.xxx", false, "Nov 19 26", "09:05:07.042"},
        {"dd-mmm-yyyy", "hh:mm:ss.xxx", false, "19-Nov-2026", "09:05:07.042"},
        {"yyyy-mmmdd", "hh:mm:ss.xxx", false, "", "09:05:07.042"},
        {"yyyy/dd/mm", "hh:mm:ss.xxx", false, "", "09:05:07"},
        {"aaaaaaaa", "hh:mm:ss", false, "2026-11-19", "09:05:07.042"},  // word 0: defaults
        {"aaaaaaaa", "hh:mm:ss.xxx", true, "", "09:05:07"},
    };
    const time_parts parts(sample_ticks);
    std::string date, time;
    for (const row& r : rows) {
        std::uint32_t word = 0;
        compile_formats(word, r.date_format, r.time_format, r.pair);
        render_date_time(date, time, parts, word);
        EXPECT_EQ(date, r.date) << r.date_format;
        EXPECT_EQ(time, r.time) << r.time_format;
    }
}

TEST(Formats, FractionDigits) {
    // .0123456 s: zero-filled on the left, cut on the right.
    const char* expected[] = {"",      ".0",      ".01",      ".012",      ".0123",
                              ".01234", ".012345", ".0123456", ".01234560", ".012345600"};
    const time_parts parts(fields_to_ticks(2000, 1, 2, 3, 4, 5, 0) + 123456);
    std::string date, time;
    for (std::uint32_t k = 0; k <= 9; ++k) {
        render_date_time(date, time, parts, fmt_bits::pair_datetime | k << fmt_bits::fraction_shift);
        EXPECT_EQ(time, std::string("03:04:05") + expected[k]) << k;
    }
}

TEST(Formats, InvalidMomentGivesEmptyTexts) {
    std::string date = "old", time = "old";
    render_date_time(date, time, time_parts(0), 0);
    EXPECT_EQ(date, "");
    EXPECT_EQ(time, "");
}

TEST(Formats, TimeColumnWidth) {
    struct row {
        const char* format;
        std::size_t width;
    };
    const row rows[] = {
        {"hh:mm:ss", 8},         {"ab:cdefg", 8},        {"hh:mm:ss.xxx", 12},
        {"hh:mm:ss.xxxxxx", 15}, {"hh:mm:ssxxxx", 0},    {"hh:mm:ss.x", 0},
        {"hh:mm", 0},            {"hhmmss.xxxxx", 0},    {"hh:mm:ss.xxxxxxxxxx", 0},
    };
    for (const row& r : rows) EXPECT_EQ(time_column_width(r.format), r.width) << r.format;
}

}  // namespace
