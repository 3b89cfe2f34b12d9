// The list input: bytes fed through a pipe on fd 0, read back line by line.
#include "input/stdin_stream.h"
#include "input/text_convert.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

using namespace std::string_literals;

namespace {

// Puts the read end of a pipe on fd 0 for the life of the object.
class piped_stdin {
public:
    piped_stdin() {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        saved_ = ::dup(0);
        ::dup2(ends[0], 0);
        ::close(ends[0]);
        writer_ = ends[1];
    }
    ~piped_stdin() {
        close_writer();
        ::dup2(saved_, 0);
        ::close(saved_);
    }
    void write(const std::string& bytes) {
        for (std::size_t done = 0; done < bytes.size();) {
            const ssize_t n = ::write(writer_, bytes.data() + done, bytes.size() - done);
            if (n <= 0) return;
            done += static_cast<std::size_t>(n);
        }
    }
    void close_writer() {
        if (writer_ >= 0) ::close(writer_);
        writer_ = -1;
    }

private:
    int saved_ = -1;
    int writer_ = -1;
};

// Every line the stream hands out for this input, until its first false.
std::vector<std::string> lines_of(const std::string& input, bool trim = true) {
    piped_stdin pipe;
    // A writer of its own, so inputs larger than the pipe can't block us.
    std::thread writer([&] {
        pipe.write(input);
        pipe.close_writer();
    });
    kvportdir::stdin_stream_ex stream;
    std::vector<std::string> lines;
    std::string line;
    while (lines.size() < 100000 && stream.read_line(line, trim)) lines.push_back(line);
    writer.join();
    EXPECT_FALSE(stream.read_line(line, trim)) << "a read after the end";
    return lines;
}

TEST(StdinStream, LinesAsTheyCame) {
    const std::string x4095(4095, 'x');
    const struct {
        const char* what;
        std::string input;
        std::vector<std::string> lines;
    } cases[] = {
        {"empty input", "", {}},
        {"CR LF, blank line, LF", "a.example\r\n\r\nb.example\n", {"a.example", "", "b.example"}},
        {"last line without LF", "a\nb", {"a", "b"}},
        {"CR CR LF all go", "a\r\r\n\r\n\n", {"a", "", ""}},
        {"CR inside stays", "a\rb\n", {"a\rb"}},
        {"blanks stay", "  name  \r\n   \n", {"  name  ", "   "}},
        {"no comments", "#a\n;b\n", {"#a", ";b"}},
        {"byte order mark stays", "\xEF\xBB\xBF" "a\n", {"\xEF\xBB\xBF" "a"}},
        {"NUL cuts the rest of the line", "ab\0cd\nef\n"s, {"ab", "ef"}},
        // UTF-16LE of "a\r\nb\r\n": each read stops at 0x0A and is cut at its
        // first NUL, so later lines begin with the NUL left over.
        {"UTF-16 input", "a\0\r\0\n\0b\0\r\0\n\0"s, {"a", "", ""}},
        {"invalid UTF-8 passes as bytes", "a\xFF\xC3(\n", {"a\xFF\xC3("}},
        {"4095 bytes then LF", x4095 + "\n", {x4095, ""}},
        {"long line in pieces of 4095", std::string(9000, 'y') + "\nz",
         {std::string(4095, 'y'), std::string(4095, 'y'), std::string(810, 'y'), "z"}},
        // The dropped bytes behind a NUL still count towards the 4095.
        {"NUL in a long line", "ab\0"s + std::string(5000, 'c') + "\n", {"ab", std::string(908, 'c')}},
    };
    for (const auto& c : cases) EXPECT_EQ(lines_of(c.input), c.lines) << c.what;
}

TEST(StdinStream, UntrimmedKeepsLineEnds) {
    EXPECT_EQ(lines_of("a\r\nb", false), (std::vector<std::string>{"a\r\n", "b"}));
}

TEST(StdinStream, ManyLinesAcrossReadChunks) {
    std::string input;
    std::vector<std::string> expected;
    for (int i = 0; i < 20000; ++i) {
        expected.push_back("host" + std::to_string(i) + ".example");
        input += expected.back() + (i % 3 == 0 ? "\r\n" : "\n");
    }
    EXPECT_EQ(lines_of(input), expected);
}

// A line is handed out as soon as it is there: nothing waits for more input.
TEST(StdinStream, DeliversWithoutReadingAhead) {
    piped_stdin pipe;
    uni::stdin_stream stream;
    std::string line;
    pipe.write("first\n");
    auto read = std::async(std::launch::async, [&] { return stream.read_line(line, true); });
    const bool in_time = read.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
    if (!in_time) pipe.close_writer();  // frees the reader, so the test ends
    EXPECT_TRUE(in_time) << "the line waited for more input";
    ASSERT_TRUE(read.get());
    EXPECT_EQ(line, "first");
    pipe.write("second");
    pipe.close_writer();
    EXPECT_TRUE(stream.read_line(line, true));
    EXPECT_EQ(line, "second");
    EXPECT_FALSE(stream.read_line(line, true));
}

TEST(StdinStream, ClosedStreamAndWideLines) {
    piped_stdin pipe;
    pipe.write("a\xC3\xA9\r\nab\xFF" "cd\n\n");
    pipe.close_writer();
    kvportdir::stdin_stream_ex stream;
    std::u16string wide;
    ASSERT_TRUE(stream.read_line_wide(wide, true));
    EXPECT_EQ(wide, u"a\u00E9");
    ASSERT_TRUE(stream.read_line_wide(wide, true));
    EXPECT_EQ(wide, u"ab") << "converted up to the bad byte";
    ASSERT_TRUE(stream.read_line_wide(wide, true));
    EXPECT_EQ(wide, u"");
    stream.is_open = false;
    std::string line = "old";
    EXPECT_FALSE(stream.read_line(line, true));
    EXPECT_EQ(line, "");
}

TEST(TextConvert, ToWide) {
    const struct {
        std::string utf8;
        std::u16string wide;  // empty: refused
    } cases[] = {
        {"a.example", u"a.example"},
        {"\xC3\xA9", u"\u00E9"},
        {"\xED\x9F\xBE", u"\uD7FE"},
        {"\xED\x9F\xBF", u""},  // U+D7FF: the refused band starts one early
        {"\xEE\x80\x80", u""},  // U+E000: and ends one late
        {"\xEE\x80\x81", u"\uE001"},
        {"\xEF\xBF\xBF", u""},  // U+FFFF
        {"\xF0\x90\x80\x80", u"\U00010000"},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {"\xF4\x90\x80\x80", u""},  // above U+10FFFF
        {"\xC0\xAF", u"/"},         // overlong, taken for its bits
        {"a\xC3(", u""},            // bad continuation
        {"a\xE2\x82", u""},         // cut short
        {"\x80", u""},              // continuation as lead
        {"\xF8\x88\x80\x80\x80", u""},
        {"", u""},
    };
    for (const auto& c : cases) EXPECT_EQ(to_wide(c.utf8), c.wide) << c.utf8;
}

TEST(TextConvert, ToUtf8) {
    const struct {
        std::u16string wide;
        std::string utf8;
    } cases[] = {
        {u"a.example", "a.example"},
        {u"\u00E9\u20AC", "\xC3\xA9\xE2\x82\xAC"},
        {u"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
        {u"a\xD800" u"b", "a"},              // lone high surrogate: stop there
        {u"ab\xDBFF", "ab"},
        {u"a\xDC00" u"b", "a\xED\xB0\x80" "b"},  // lone low one: encoded as it is
        {u"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(to_utf8(c.wide), c.utf8);
    const std::string mixed = "x\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80y";
    EXPECT_EQ(to_utf8(to_wide(mixed)), mixed);
}

}  // namespace
