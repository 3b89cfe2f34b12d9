#include "platform/fileio.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "report/fileio_output.h"
#include "support/fixtures.h"

namespace {

namespace fs = std::filesystem;
constexpr std::size_t block = uni::fileio_output::block_size;

std::string bytes_of(const std::string& path) {
    std::string bytes;
    read_all(bytes, path);
    return bytes;
}

// A report of `total` file bytes: rows of 98 characters and a line end (CR LF
// in the file), then filler without a line end. Returns the expected bytes.
std::string write_report(uni::output_stream& out, std::size_t total) {
    std::string expected;
    for (const std::string row(98, 'r'); total - expected.size() >= 100; expected += row + "\r\n") {
        out.write(row);
        out.end_line();
    }
    out.fill('f', total - expected.size());
    return expected.append(total - expected.size(), 'f');
}

TEST(Fileio, ResultsStreamWritesWholeBlocks) {
    // A report that exactly fills the buffer may go out at its last byte or
    // at the close, but never in part.
    for (std::size_t total : {block - 1, block, block + 1}) {
        test_support::temp_dir dir;
        const std::string path = dir / "report.txt";
        uni::fileio results;
        ASSERT_TRUE(results.open_results(path, true));
        const std::string expected = write_report(*results.make_stream(), total);
        const auto size_open = fs::file_size(path);
        EXPECT_TRUE(size_open == (total < block ? 0 : block) || (total == block && size_open == 0)) << total;
        results.close();
        EXPECT_EQ(bytes_of(path), expected) << total;
        EXPECT_EQ(results.known_size(), static_cast<std::int64_t>(total));
        EXPECT_FALSE(results.is_open());
    }
}

TEST(Fileio, ResultsFileIsReplacedAndGetsCrLf) {
    test_support::temp_dir dir;
    const std::string path = dir.put("old.txt", "an older and longer report\r\n");
    ::chmod(path.c_str(), 0444);  // read-only files are overwritten
    {
        uni::fileio results;
        ASSERT_TRUE(results.open_results(path, true));
        uni::output_stream& out = *results.make_stream();
        out.write("a\nb");
        out.end_line();
        out.write("c\r\n");  // a CR already there isn't looked at
    }  // the destructor closes and writes the rest
    EXPECT_EQ(bytes_of(path), "a\r\nb\r\nc\r\r\n");
}

TEST(Fileio, OpensThatFail) {
    test_support::temp_dir dir;
    uni::fileio f;
    EXPECT_FALSE(f.open_results(dir / "no/such/dir/x.txt", true));
    EXPECT_FALSE(f.is_open());
    EXPECT_EQ(f.make_stream(), nullptr);
    EXPECT_FALSE(f.append_text("x"));
    // Without truncate a missing file is a failure, not a creation.
    EXPECT_FALSE(f.open_results(dir / "missing.txt", false));
    EXPECT_FALSE(f.open_file(dir / "missing.txt", true, false));
    EXPECT_FALSE(fs::exists(dir / "missing.txt"));
    EXPECT_FALSE(f.open_results("", true));
}

// The diagnostics file: text goes to the end, wherever a read left the position.
TEST(Fileio, AppendGoesToTheEnd) {
    test_support::temp_dir dir;
    const std::string content("MZ\0-vexa\r\n", 10), path = dir.put("diag.txt", content);
    uni::fileio f;
    ASSERT_TRUE(f.open_file(path + "\\/", true, false));  // trailing separators dropped
    EXPECT_EQ(f.path(), path);
    std::string head;
    ASSERT_TRUE(f.read_at(head, 2, 0));
    EXPECT_TRUE(f.append_text("->0.25 secs") && f.append_text(""));
    f.close();
    EXPECT_EQ(bytes_of(path), content + "->0.25 secs");
    EXPECT_EQ(f.known_size(), 21);  // path and size outlive the close
    EXPECT_EQ(f.path(), path);
    EXPECT_FALSE(uni::fileio(path).append_text("x"));  // opened for reading
}

TEST(Fileio, FailedWriteStopsTheStream) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no device that refuses writes";
    uni::fileio f;
    ASSERT_TRUE(f.open_results("/dev/full", true));
    uni::fileio_output& out = *f.make_stream();
    write_report(out, block + 1);
    EXPECT_TRUE(out.failed());
    EXPECT_FALSE(out.flush_buffer());
}

}  // namespace
