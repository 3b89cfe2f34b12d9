#include "platform/paths.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

TEST(Paths, SplitPath) {
    const struct {
        const char *text, *dir, *name;
    } rows[] = {
        {"a.example", ".", "a.example"}, {"\\x", ".", "\\x"},  // a separator at index 0 doesn't cut
        {"a\\b/c", "a", "b/c"},                                // the slash counts only without a backslash
        {"c:\\dir\\", "c:\\dir", ""}, {"a\\..", "a\\..", "."}, {"a/..", "a//..", "."},
        {"\\a/b", ".", "\\a/b"},                               // the only backslash stands at 0
        {"d/e/f.txt", "d/e", "f.txt"},
    };
    for (const auto& r : rows) {
        std::string dir = "junk", name = "junk";
        EXPECT_TRUE(split_path(r.text, dir, name)) << r.text;
        EXPECT_EQ(dir + "|" + name, std::string(r.dir) + "|" + r.name) << r.text;
    }
    std::string dir = "junk", name = "junk";
    EXPECT_FALSE(split_path("", dir, name));
    EXPECT_EQ(dir + name, "");
}

TEST(Paths, FullPathAgainstACurrentDirectory) {
    const struct {
        const char *path, *cwd, *full;
    } rows[] = {
        {"x.txt", "C:\\", "C:\\x.txt"},  // the doubled backslash folds
        {"..\\y\\x.txt", "C:\\a\\b", "C:\\a\\y\\x.txt"},
        {"..\\..\\..\\x.txt", "C:\\a\\b", "C:\\a\\b\\..\\..\\..\\x.txt"},  // too many: as it was
        {".\\d\\x.txt", "C:\\w", "C:\\w\\d\\x.txt"}, {"D:\\v\\x.txt", "C:\\w", "D:\\v\\x.txt"},
        {"\\x.txt", "C:\\w", ""}, {"\\\\srv\\share\\x", "C:\\w", "\\\\srv\\share\\x"},
        {"'my file.txt'", "C:\\w", "C:\\w\\my file.txt"}, {"\"x.txt\"", "C:\\w", "C:\\w\\x.txt"},
        {"  \t ", "C:\\w", ""}, {"../y/x.txt", "/a/b", "/a/y/x.txt"},  // a POSIX root is kept
    };
    for (const auto& r : rows) EXPECT_EQ(full_path(r.path, r.cwd), r.full) << r.path << " in " << r.cwd;
}

TEST(Paths, ExpandPath) {
    ::setenv("VEXA_T_DIR", "D:\\data", 1);
    ::setenv("VEXA_T_INDIRECT", "%VEXA_T_DIR%\\in", 1);
    ::setenv("VEXA_T_SELF", "%VEXA_T_SELF%", 1);
    ::setenv("VEXA_T_GROW", "%VEXA_T_GROW%%VEXA_T_GROW%", 1);
    for (const char* name : {"VEXA_T_UNSET", "VSS", "vss"}) ::unsetenv(name);
    const std::string vss(vss_prefix()), long_text = "%VEXA_T_DIR%" + std::string(501, 'x');  // 513 bytes
    const struct {
        std::string text;
        bool allow_vss;
        std::string expanded;
    } rows[] = {
        {"%VEXA_T_DIR%\\%VEXA_T_DIR%", true, "D:\\data\\D:\\data"},
        {"%VEXA_T_INDIRECT%", true, "D:\\data\\in"},  // inserted text is scanned too
        {"%VEXA_T_UNSET%VEXA_T_DIR%", true, "%VEXA_T_UNSET%VEXA_T_DIR%"},  // scan goes on behind the pair
        {"100%", true, "100%"}, {"%%", true, "%%"},
        {"%vss%12\\out.txt", true, vss + "12\\out.txt"}, {"%VSS%1", true, vss + "1"}, {"%vss%1", false, "%vss%1"},
        {long_text, true, long_text}, {"%VEXA_T_SELF%", true, "%VEXA_T_SELF%"},  // a value that names itself ends
    };
    for (const auto& r : rows) EXPECT_EQ(expand_path(r.text, r.allow_vss), r.expanded) << r.text;
    // Growth past 512 bytes ends the expansion.
    const std::size_t grown = expand_path("%VEXA_T_GROW%", true).size();
    EXPECT_TRUE(grown > 512 && grown <= 1024) << grown;
    ::setenv("vss", "E:", 1);  // the environment wins
    EXPECT_EQ(expand_path("%vss%\\x", true), "E:\\x");
    for (const char* name : {"VEXA_T_DIR", "VEXA_T_INDIRECT", "VEXA_T_SELF", "VEXA_T_GROW", "vss"}) ::unsetenv(name);
}

TEST(Paths, TextHelpers) {
    std::string text = "out\\dir/\\//";
    EXPECT_TRUE(strip_separators(text));
    EXPECT_EQ(text, "out\\dir");
    text = "\\/";
    EXPECT_FALSE(strip_separators(text));
    text = "one two two";
    EXPECT_TRUE(replace_first(text, "two", "2"));
    EXPECT_FALSE(replace_first(text, "three", "3"));
    EXPECT_EQ(text, "one 2 two");
    text = "\"a\"b\"";
    EXPECT_EQ(remove_char(text, '"'), 3u);
    EXPECT_EQ(text, "ab");
}

}  // namespace
