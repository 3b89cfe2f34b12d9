// The list input: bytes fed through a pipe on fd 0, read back line by line.
#include "input/stdin_stream.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <future>
#include <thread>
#include <utility>

#include "input/text_convert.h"

using namespace std::string_literals;

namespace {

// Puts the read end of a pipe on fd 0 for the life of the object.
struct piped_stdin {
    int saved = ::dup(0), ends[2] = {-1, -1};
    piped_stdin() {
        EXPECT_EQ(::pipe(ends), 0);
        ::dup2(ends[0], 0);
        ::close(ends[0]);
    }
    ~piped_stdin() {
        close_writer();
        ::dup2(saved, 0);
        ::close(saved);
    }
    void write(const std::string& bytes) {  // blocks until the reader has taken all but a pipe's worth
        EXPECT_EQ(::write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    void close_writer() {
        if (ends[1] >= 0) ::close(std::exchange(ends[1], -1));
    }
};

// Every line the stream hands out for this input, until its first false.
std::vector<std::string> lines_of(const std::string& input, bool trim = true) {
    piped_stdin pipe;
    std::thread writer([&] {  // a writer of its own: inputs larger than the pipe can't block us
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
    const std::string x4095(4095, 'x'), y4095(4095, 'y');
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"", {}},
        {"a.example\r\n\r\nb.example\n", {"a.example", "", "b.example"}},
        {"a\nb", {"a", "b"}},                    // last line without LF
        {"a\r\r\n\r\n\n", {"a", "", ""}},        // CR CR LF all go
        {"a\rb\n", {"a\rb"}},                    // a CR inside stays
        {"  name  \r\n#a\n", {"  name  ", "#a"}},  // blanks stay; no comments
        {"ab\0cd\nef\n"s, {"ab", "ef"}},         // a NUL cuts the rest of the line
        // UTF-16LE of "a\r\nb\r\n": each read stops at 0x0A and is cut at its
        // first NUL, so later lines begin with the NUL left over.
        {"a\0\r\0\n\0b\0\r\0\n\0"s, {"a", "", ""}},
        {"a\xFF\xC3(\n", {"a\xFF\xC3("}},        // invalid UTF-8 passes as bytes
        {x4095 + "\n", {x4095, ""}},
        {std::string(9000, 'y') + "\nz", {y4095, y4095, std::string(810, 'y'), "z"}},  // pieces of 4095
        // The dropped bytes behind a NUL still count towards the 4095.
        {"ab\0"s + std::string(5000, 'c') + "\n", {"ab", std::string(908, 'c')}},
    };
    for (const auto& [input, lines] : cases) EXPECT_EQ(lines_of(input), lines) << input.substr(0, 20);
    EXPECT_EQ(lines_of("a\r\nb", false), (std::vector<std::string>{"a\r\n", "b"}));  // untrimmed
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

TEST(TextConvert, BothWays) {
    const std::pair<std::string, std::u16string> to_wide_cases[] = {  // empty: refused
        {"\xC3\xA9", u"\u00E9"}, {"\xED\x9F\xBE", u"\uD7FE"},
        {"\xED\x9F\xBF", u""}, {"\xEE\x80\x80", u""},  // U+D7FF, U+E000: the refused band is one wider each side
        {"\xEE\x80\x81", u"\uE001"}, {"\xEF\xBF\xBF", u""}, {"\xF0\x90\x80\x80", u"\U00010000"},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {"\xF4\x90\x80\x80", u""}, {"\xC0\xAF", u"/"},  // above U+10FFFF; overlong, taken for its bits
        {"a\xC3(", u""}, {"a\xE2\x82", u""}, {"\x80", u""}, {"\xF8\x88\x80\x80\x80", u""},
    };
    for (const auto& [utf8, wide] : to_wide_cases) EXPECT_EQ(to_wide(utf8), wide) << utf8;
    const std::pair<std::u16string, std::string> to_utf8_cases[] = {
        {u"\u00E9\u20AC", "\xC3\xA9\xE2\x82\xAC"}, {u"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
        {u"a\xD800" u"b", "a"}, {u"ab\xDBFF", "ab"},      // a lone high surrogate: stop there
        {u"a\xDC00" u"b", "a\xED\xB0\x80" "b"},           // a lone low one: encoded as it is
    };
    for (const auto& [wide, utf8] : to_utf8_cases) EXPECT_EQ(to_utf8(wide), utf8);
    const std::string mixed = "x\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80y";
    EXPECT_EQ(to_utf8(to_wide(mixed)), mixed);
}

}  // namespace
