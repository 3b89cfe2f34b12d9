#include "platform/paths.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <tuple>


namespace {

TEST(Paths, EnvironmentNamesInAPathAreExpanded) {
    // clang-format off
    const std::pair<const char*, const char*> environment[] = {{"VEXA_T_DIR", "D:\\data"}, {"VEXA_T_S", "%VEXA_T_S%"},
        {"VEXA_T_INDIRECT", "%VEXA_T_DIR%\\in"}, {"VEXA_T_GROW", "%VEXA_T_GROW%%VEXA_T_GROW%"}};
    // clang-format on
    for (const auto& [name, value] : environment) ::setenv(name, value, 1);
    for (const char* name : {"VEXA_T_UNSET", "VSS", "vss"}) ::unsetenv(name);
    const std::string vss(vss_prefix()), long_text = "%VEXA_T_DIR%" + std::string(501, 'x');  // 513 bytes
    // Text, %vss% allowed, expanded: inserted text is scanned too, but not a value that names itself, and the
    // scan goes on behind an unknown pair.
    // clang-format off
    const std::tuple<std::string, bool, std::string> rows[] = {
        {"%VEXA_T_DIR%\\%VEXA_T_DIR%", true, "D:\\data\\D:\\data"}, {"%VEXA_T_INDIRECT%", true, "D:\\data\\in"},
        {"%VEXA_T_UNSET%VEXA_T_DIR%", true, "%VEXA_T_UNSET%VEXA_T_DIR%"}, {"%VEXA_T_S%", true, "%VEXA_T_S%"},
        {"100%", true, "100%"}, {"%VSS%1", true, vss + "1"}, {"%vss%1", false, "%vss%1"}, {long_text, true, long_text},
    };
    // clang-format on
    for (const auto& [text, allow_vss, expanded] : rows) EXPECT_EQ(expand_path(text, allow_vss), expanded) << text;
    const std::size_t grown = expand_path("%VEXA_T_GROW%", true).size();  // growth past 512 bytes ends it
    EXPECT_GT(grown, 512u);
    EXPECT_LE(grown, 1024u);
    ::setenv("vss", "E:", 1);  // the environment wins
    EXPECT_EQ(expand_path("%vss%\\x", true), "E:\\x");
    for (const auto& [name, value] : environment) ::unsetenv(name);
    ::unsetenv("vss");
}

}  // namespace
