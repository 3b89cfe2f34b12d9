#include "timefmt/formats.h"

#include <tuple>

#include "support/fixtures.h"

namespace {

TEST(Formats, FormatTextsAcceptedAndRendered) {
    // Text, date ok, time ok, time column.
    // clang-format off
    const std::tuple<const char*, bool, bool, std::size_t> texts[] = {
        {"yyyy-mm-dd", true, false, 0}, {"dd-mmm-yy", false, false, 0}, {"hh:mm:ss", true, true, 8},
        {"hh:mm", false, false, 0}, {"hh:mm:ss.xxx", false, true, 12}, {"hh:mm:ssxxxx", false, true, 0},
        {"hh:mm:ss.xxxxxxxxx", false, true, 18}, {"hh:mm:ss.xxxxxxxxxx", false, false, 0},
    };
    // clang-format on
    for (const auto& [text, date_ok, time_ok, width] : texts) {
        EXPECT_EQ(date_format_acceptable(text), date_ok) << text;
        EXPECT_EQ(time_format_acceptable(text), time_ok) << text;
        EXPECT_EQ(time_column_width(text), width) << text;
    }
    // Date and time format, pair, understood, date and time texts of 2026-11-19 09:05:07.042. With the year first a
    // month name is refused; of formats not understood what was found stays, else the defaults.
    const std::tuple<const char*, const char*, bool, bool, const char*, const char*> rows[] = {
        {"mmm dd, yy", "hh:mm:ss", true, true, "Nov 19 26", "09:05:07"},
        {"dd/mm-yyyy", "hh:mm:ss.xxxxxxxxxxxx", false, true, "19/11/2026", "09:05:07.042000000"},
        {"mm/dd/yy", "hh:mm:ssxxxx", false, true, "11/19/26", "09:05:07.0420"},
        {"yyyy-mmmdd", "hh:mm:ss.xxx", false, true, "", "09:05:07.042"},
        {"yyyy/dd/mm", "hh:mm:ss.xxx", false, false, "", "09:05:07"},
        {"aaaaaaaa", "hh:mm:ss", false, false, "2026-11-19", "09:05:07.042"},
    };
    for (const auto& [date_format, time_format, pair, ok, date_text, time_text] : rows) {
        std::uint32_t word = 0xdeadbeef;
        std::string date, time;
        EXPECT_EQ(compile_formats(word, date_format, time_format, pair), ok) << date_format;
        render_date_time(date, time, time_parts(test_support::sample_ticks), word);
        EXPECT_EQ(date, date_text) << date_format;
        EXPECT_EQ(time, time_text) << date_format;
    }
    std::string date = "old", time = "old";  // an invalid moment
    render_date_time(date, time, time_parts(0), 0);
    EXPECT_EQ(date, "");
    EXPECT_EQ(time, "");
}

}  // namespace
