#include "timefmt/formats.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "support/fixtures.h"

namespace {

TEST(Formats, OptionTextsAcceptedByLength) {
    const std::tuple<const char*, bool, bool, std::size_t> rows[] = {  // text, date ok, time ok, time column
        {"yyyy-mm-dd", true, false, 0}, {"dd-mmm-yy", false, false, 0}, {"dd/mm/y", false, false, 0},
        {"hh:mm:ss", true, true, 8}, {"ab:cdefg", true, true, 8}, {"hh:mm", false, false, 0},
        {"hh:mm:ss.x", true, false, 0}, {"hh:mm:ss.xxx", false, true, 12}, {"hh:mm:ssxxxx", false, true, 0},
        {"hh:mm:ss.xxxxxxxxx", false, true, 18}, {"hh:mm:ss.xxxxxxxxxx", false, false, 0},
        {"hhmmss.xxxxx", false, false, 0},
    };
    for (const auto& [text, date_ok, time_ok, width] : rows) {
        EXPECT_EQ(date_format_acceptable(text), date_ok) << text;
        EXPECT_EQ(time_format_acceptable(text), time_ok) << text;
        EXPECT_EQ(time_column_width(text), width) << text;
    }
}

TEST(Formats, WordsAndRenderedSample) {
    // Date and time format, pair, understood, word (~0: not checked), date and time texts.
    const std::tuple<const char*, const char*, bool, bool, std::uint32_t, const char*, const char*> rows[] = {
        {"yyyy-mm-dd", "hh:mm:ss.xxx", false, true, '-' | 0x200 | 0x400 | 0x8000 | 3u << 17, "2026-11-19", "09:05:07.042"},
        {"mmm dd, yy", "hh:mm:ss", true, true, ' ' | 0x100 | 0x800 | 0x4000 | 0x10000, "Nov 19 26", "09:05:07"},
        {"dd/mm-yyyy", "hh:mm:ss.xxxxxxxxxxxx", false, true, '/' | 0x200 | 0x400 | 0x2000 | 9u << 17, "19/11/2026",
         "09:05:07.042000000"},
        {"mm/dd/yy", "hh:mm:ssxxxx", false, true, ~0u, "11/19/26", "09:05:07.0420"},
        {"yyyymmdd", "hh:mm:ss.xxx", false, true, ~0u, "20261119", "09:05:07.042"},
        {"dd-mmm-yyyy", "hh:mm:ss.xxx", false, true, ~0u, "19-Nov-2026", "09:05:07.042"},
        {"yyyy-mmmdd", "hh:mm:ss.xxx", false, true, ~0u, "", "09:05:07.042"},  // year first, month name
        // A date that can't be understood keeps what was found, and no fraction.
        {"yyyy/dd/mm", "hh:mm:ss.xxx", false, false, '/' | 0x200 | 0x400, "", "09:05:07"},
        {"aaaaaaaa", "hh:mm:ss", false, false, 0, "2026-11-19", "09:05:07.042"},  // word 0: defaults
        {"aaaaaaaa", "hh:mm:ss.xxx", true, false, 0x10000, "", "09:05:07"},
    };
    const time_parts parts(test_support::sample_ticks);
    for (const auto& [date_format, time_format, pair, ok, expected_word, date_text, time_text] : rows) {
        std::uint32_t word = 0xdeadbeef;
        std::string date, time;
        EXPECT_EQ(compile_formats(word, date_format, time_format, pair), ok) << date_format;
        if (expected_word != ~0u) { EXPECT_EQ(word, expected_word) << date_format; }
        render_date_time(date, time, parts, word);
        EXPECT_EQ(date + " " + time, std::string(date_text) + " " + time_text) << date_format;
    }
    std::string date = "old", time = "old";
    render_date_time(date, time, time_parts(0), 0);  // an invalid moment
    EXPECT_EQ(date + time, "");
}

TEST(Formats, FractionDigits) {
    // .0123456 s: zero-filled on the left, cut on the right.
    const char* expected[] = {"", ".0", ".01", ".012", ".0123", ".01234", ".012345", ".0123456", ".01234560",
                              ".012345600"};
    const time_parts parts(fields_to_ticks(2000, 1, 2, 3, 4, 5, 0) + 123456);
    std::string date, time;
    for (std::uint32_t k = 0; k <= 9; ++k) {
        render_date_time(date, time, parts, fmt_bits::pair_datetime | k << fmt_bits::fraction_shift);
        EXPECT_EQ(time, std::string("03:04:05") + expected[k]) << k;
    }
}

}  // namespace
