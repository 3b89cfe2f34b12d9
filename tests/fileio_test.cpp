#include "platform/fileio.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

#include "report/fileio_output.h"

namespace {

namespace fs = std::filesystem;

class Fileio : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "vexa_fileio_XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        dir_ = pattern;
    }
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(dir_, ignored);
    }
    std::string file(const char* name) const { return (dir_ / name).string(); }

    static std::string bytes_of(const std::string& path) {
        std::string bytes;
        EXPECT_TRUE(read_all(bytes, path) || bytes.empty());
        return bytes;
    }
    static void put_file(const std::string& path, const std::string& bytes) {
        std::FILE* f = std::fopen(path.c_str(), "wb");
        ASSERT_NE(f, nullptr);
        std::fwrite(bytes.data(), 1, bytes.size(), f);
        std::fclose(f);
    }

    fs::path dir_;
};

// A report of `total` file bytes: rows of 98 characters and a line end (CR LF
// in the file), then filler without a line end. Returns the expected bytes.
std::string write_report(uni::output_stream& out, std::size_t total) {
    std::string expected;
    const std::string row(98, 'r');
    while (total - expected.size() >= 100) {
        out.write(row);
        out.end_line();
        expected += row + "\r\n";
    }
    const std::size_t rest = total - expected.size();
    out.fill('f', rest);
    expected.append(rest, 'f');
    return expected;
}

TEST_F(Fileio, ResultsStreamWritesWholeBlocks) {
    constexpr std::size_t block = uni::fileio_output::block_size;
    struct row {
        std::size_t total;
        std::size_t before_close;  // file size while the stream is open
    };
    // A report that exactly fills the buffer may go out at its last byte or
    // at the close, but never in part.
    const row rows[] = {{block - 1, 0}, {block, block}, {block + 1, block}};
    for (const row& r : rows) {
        const std::string path = file("report.txt");
        uni::fileio results;
        ASSERT_TRUE(results.open_results(path, true));
        uni::fileio_output* out = results.make_stream();
        ASSERT_NE(out, nullptr);
        const std::string expected = write_report(*out, r.total);
        const auto size_open = fs::file_size(path);
        if (r.total == block)
            EXPECT_TRUE(size_open == 0 || size_open == block) << size_open;
        else
            EXPECT_EQ(size_open, r.before_close) << r.total;
        results.close();
        EXPECT_EQ(bytes_of(path), expected) << r.total;
        EXPECT_EQ(results.known_size(), static_cast<std::int64_t>(r.total));
        EXPECT_FALSE(results.is_open());
    }
}

TEST_F(Fileio, ResultsFileIsReplacedAndGetsCrLf) {
    const std::string path = file("old.txt");
    put_file(path, "an older and longer report\r\n");
    ::chmod(path.c_str(), 0444);  // read-only files are overwritten
    {
        uni::fileio results;
        ASSERT_TRUE(results.open_results(path, true));
        EXPECT_NE(fs::status(path).permissions() & fs::perms::owner_write, fs::perms::none);
        uni::output_stream& out = *results.make_stream();
        out.write("a\nb");
        out.end_line();
        out.write("c\r\n");  // a CR already there isn't looked at
    }  // the destructor closes and writes the rest
    EXPECT_EQ(bytes_of(path), "a\r\nb\r\nc\r\r\n");
}

TEST_F(Fileio, OpensThatFail) {
    uni::fileio f;
    EXPECT_FALSE(f.open_results(file("no/such/dir/x.txt"), true));
    EXPECT_FALSE(f.is_open());
    EXPECT_EQ(f.make_stream(), nullptr);
    EXPECT_FALSE(f.append_text("x"));

    // Without truncate a missing file is a failure, not a creation.
    EXPECT_FALSE(f.open_results(file("missing.txt"), false));
    EXPECT_FALSE(f.open_file(file("missing.txt"), true, false));
    EXPECT_FALSE(fs::exists(file("missing.txt")));
    EXPECT_FALSE(f.open_results("", true));
}

TEST_F(Fileio, AppendGoesToTheEndOfAnExistingFile) {
    const std::string path = file("diag.txt");
    put_file(path, "->vexa -diags diag.txt\r\n");
    uni::fileio f;
    ASSERT_TRUE(f.open_file(path + "\\/", true, false));  // trailing separators dropped
    EXPECT_EQ(f.path(), path);
    std::string head;
    ASSERT_TRUE(f.read_at(head, 2, 0));  // moves the position to 2
    EXPECT_TRUE(f.append_text("->0.25 secs"));
    EXPECT_TRUE(f.append_text(""));
    f.close();
    EXPECT_EQ(bytes_of(path), "->vexa -diags diag.txt\r\n->0.25 secs");
    EXPECT_EQ(f.known_size(), 35);  // path and size outlive the close
    EXPECT_EQ(f.path(), path);
}

TEST_F(Fileio, ReadAtAndReadAll) {
    const std::string path = file("sig.bin");
    const std::string content("MZ\x90\x00rest", 8);
    put_file(path, content);
    uni::fileio f(path);
    ASSERT_TRUE(f.is_open());
    EXPECT_FALSE(f.writable());
    struct row {
        std::size_t count;
        std::uint64_t offset;
        bool ok;
        std::string out;
    };
    const row rows[] = {
        {2, 0, true, "MZ"},
        {100, 4, true, "rest"},  // cut at the end of the file
        {1, 8, false, "-"},      // offset at the size
        {0, 3, true, "-"},       // nothing asked: out untouched
    };
    for (const row& r : rows) {
        std::string out = "-";
        EXPECT_EQ(f.read_at(out, r.count, r.offset), r.ok) << r.offset;
        EXPECT_EQ(out, r.out) << r.offset;
    }
    EXPECT_FALSE(f.append_text("x"));  // opened for reading

    std::string all;
    EXPECT_TRUE(read_all(all, path));
    EXPECT_EQ(all, content);
    put_file(file("empty"), "");
    EXPECT_FALSE(read_all(all, file("empty")));
    EXPECT_FALSE(read_all(all, file("missing")));
}

TEST_F(Fileio, FailedWriteStopsTheStream) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no device that refuses writes";
    uni::fileio f;
    ASSERT_TRUE(f.open_results("/dev/full", true));
    uni::fileio_output& out = *f.make_stream();
    write_report(out, uni::fileio_output::block_size + 1);
    EXPECT_TRUE(out.failed());
    EXPECT_FALSE(out.flush_buffer());
}

TEST_F(Fileio, FileInfo) {
    put_file(file("f.txt"), "x");
    file_info info;
    EXPECT_TRUE(get_file_info(info, file("f.txt")));
    EXPECT_GT(info.write_time, 116444736000000000ULL);  // after 1970
    EXPECT_NE(info.create_time, 0u);
    EXPECT_TRUE(get_file_info(info, dir_.string()));  // a directory too

    EXPECT_FALSE(get_file_info(info, file("missing")));
    EXPECT_EQ(info.write_time, 0u);
    // A bare name is never looked up, even where such a file exists.
    EXPECT_FALSE(get_file_info(info, "www.example.com"));
    EXPECT_FALSE(get_file_info(info, ""));
}

}  // namespace
