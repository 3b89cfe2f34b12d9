#include "platform/paths.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <tuple>

namespace {

TEST(Paths, SplitPath) {
    const std::tuple<const char*, const char*, const char*> rows[] = {  // text, directory, name
        {"a.example", ".", "a.example"}, {"\\x", ".", "\\x"},  // a separator at index 0 doesn't cut
        {"a\\b/c", "a", "b/c"},                                // the slash counts only without a backslash
        {"c:\\dir\\", "c:\\dir", ""}, {"a\\..", "a\\..", "."}, {"a/..", "a//..", "."},
        {"\\a/b", ".", "\\a/b"},                               // the only backslash stands at 0
        {"d/e/f.txt", "d/e", "f.txt"},
    };
    for (const auto& [text, expected_dir, expected_name] : rows) {
        std::string dir = "junk", name = "junk";
        EXPECT_TRUE(split_path(text, dir, name)) << text;
        EXPECT_EQ(dir + "|" + name, std::string(expected_dir) + "|" + expected_name) << text;
    }
    std::string dir = "junk", name = "junk";
    EXPECT_FALSE(split_path("", dir, name));
    EXPECT_EQ(dir + name, "");
    name = "\"a\"b\"";  // quotes around -out values go
    EXPECT_EQ(remove_char(name, '"'), 3u);
    EXPECT_EQ(name, "ab");
}

TEST(Paths, ExpandPath) {
    ::setenv("VEXA_T_DIR", "D:\\data", 1);
    ::setenv("VEXA_T_INDIRECT", "%VEXA_T_DIR%\\in", 1);
    ::setenv("VEXA_T_SELF", "%VEXA_T_SELF%", 1);
    ::setenv("VEXA_T_GROW", "%VEXA_T_GROW%%VEXA_T_GROW%", 1);
    for (const char* name : {"VEXA_T_UNSET", "VSS", "vss"}) ::unsetenv(name);
    const std::string vss(vss_prefix()), long_text = "%VEXA_T_DIR%" + std::string(501, 'x');  // 513 bytes
    const std::tuple<std::string, bool, std::string> rows[] = {  // text, %vss% allowed, expanded
        {"%VEXA_T_DIR%\\%VEXA_T_DIR%", true, "D:\\data\\D:\\data"},
        {"%VEXA_T_INDIRECT%", true, "D:\\data\\in"},  // inserted text is scanned too
        {"%VEXA_T_UNSET%VEXA_T_DIR%", true, "%VEXA_T_UNSET%VEXA_T_DIR%"},  // scan goes on behind the pair
        {"100%", true, "100%"}, {"%%", true, "%%"},
        {"%vss%12\\out.txt", true, vss + "12\\out.txt"}, {"%VSS%1", true, vss + "1"}, {"%vss%1", false, "%vss%1"},
        {long_text, true, long_text}, {"%VEXA_T_SELF%", true, "%VEXA_T_SELF%"},  // a value that names itself ends
    };
    for (const auto& [text, allow_vss, expanded] : rows)
        EXPECT_EQ(expand_path(text, allow_vss), expanded) << text;
    // Growth past 512 bytes ends the expansion.
    const std::size_t grown = expand_path("%VEXA_T_GROW%", true).size();
    EXPECT_TRUE(grown > 512 && grown <= 1024) << grown;
    ::setenv("vss", "E:", 1);  // the environment wins
    EXPECT_EQ(expand_path("%vss%\\x", true), "E:\\x");
    for (const char* name : {"VEXA_T_DIR", "VEXA_T_INDIRECT", "VEXA_T_SELF", "VEXA_T_GROW", "vss"})
        ::unsetenv(name);
}

}  // namespace
