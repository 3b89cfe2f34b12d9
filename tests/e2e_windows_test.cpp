// What only the Windows build does: vexa.exe run through Wine. On Linux these skip.
#include <filesystem>

#include "support/e2e.h"

namespace {

using namespace test_support;
namespace fs = std::filesystem;

// A results path past the plain form's 260 characters is retried in the long
// form ("\\?\" in front). Wine may take the long path at the first try; the
// file is made either way, whole.
TEST(E2eWindows, ResultsFileOnALongPath) {
    if (!target().windows) GTEST_SKIP() << "vexa.exe only";
    temp_dir dir;
    fs::path deep = dir.root;
    for (int i = 0; i < 4; ++i) deep /= std::string(70, static_cast<char>('p' + i));
    fs::create_directories(deep);
    const std::string file = on_drive_z(deep / "r.txt");
    ASSERT_GT(file.size(), 260u);
    responder server(silent());
    const e2e_run r = run_against(server, {"-url", "a.b", "-csv", "-timeout", "0", "-out", file});
    EXPECT_EQ(r.run.exit_code, 0) << r.run.err;
    const std::string report = read_file(deep / "r.txt");
    EXPECT_TRUE(report.starts_with("vexa ver: 0.48\r\n")) << report;
    EXPECT_TRUE(lines_end_in_crlf(report));
    EXPECT_EQ(r.queries.size(), 1u);
}

// The arguments arrive wide and reach the report as UTF-8.
TEST(E2eWindows, WideArgumentsBecomeUtf8) {
    if (!target().windows) GTEST_SKIP() << "vexa.exe only";
    responder server(silent());
    const e2e_run r = run_against(server, {"-url", "caf\xC3\xA9.b", "-csv", "-timeout", "0"});
    ASSERT_EQ(r.queries.size(), 1u);
    const datagram& q = r.queries[0];
    EXPECT_EQ(std::string(q.begin() + 12, q.begin() + 19),
              "\x05"
              "caf\xC3\xA9\x01");
    EXPECT_NE(r.run.out.find("caf\xC3\xA9.b"), std::string::npos) << r.run.out;
}

// A walk gives each named stream of a file as a path of its own, "x.txt:alt"
// before "x.txt". Wine has no streams: there the helper fails, or makes a
// file of that name, which the walk (sorted by name, taken in reverse) also
// gives before x.txt. Either way the stream's path comes first when it exists.
TEST(E2eWindows, NamedStreamsOfAWalk) {
    if (!target().windows) GTEST_SKIP() << "vexa.exe only";
    temp_dir dir;
    dir.put("x.txt", "x");
    const std::string file = on_drive_z(dir.root / "x.txt");
    const bool stream_made = run_helper({"stream", file + ":alt"}) == 0;
    responder server(silent());
    EXPECT_EQ(run_against(server, {"-url_pipe", "-enumdir", on_drive_z(dir.root), "-timeout", "0"}).run.exit_code, 0);
    EXPECT_EQ(seen(server), (stream_made ? file + ":alt/1 " : "") + file + "/1");
}

}  // namespace
