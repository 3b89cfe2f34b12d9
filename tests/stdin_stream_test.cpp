// The list input line by line; that a line is handed out before more input comes is the end-to-end tests'.
#include "input/stdin_stream.h"

#include <sys/mman.h>
#include <unistd.h>

#include "support/fixtures.h"

using namespace std::string_literals;

namespace {

// Every line the stream hands out for this input on fd 0, until its first false.
std::vector<std::string> lines_of(const std::string& input, bool trim = true) {
    const int saved = ::dup(0), fd = ::memfd_create("stdin", 0);
    EXPECT_EQ(::pwrite(fd, input.data(), input.size(), 0), static_cast<ssize_t>(input.size()));
    ::dup2(fd, 0), ::close(fd);
    std::vector<std::string> lines;
    kvportdir::stdin_stream_ex stream;
    std::string line;
    while (lines.size() < 100000 && stream.read_line(line, trim)) lines.push_back(line);
    EXPECT_FALSE(stream.read_line(line, trim)) << "a read after the end";
    ::dup2(saved, 0), ::close(saved);
    return lines;
}

TEST(StdinStream, LinesAsTheyCame) {
    // CRs go at the end only, blanks stay, no comments; a NUL cuts the rest of the line (so UTF-16LE is cut at the
    // first NUL of each read up to 0x0A); long lines come in pieces of 4095, counting the bytes dropped behind a NUL.
    const std::string y4095(4095, 'y');
    // clang-format off
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"", {}}, {"a\r\r\n\r\n\n", {"a", "", ""}}, {"a\rb\nc", {"a\rb", "c"}}, {"ab\0cd\nef\n"s, {"ab", "ef"}},
        {"  name  \r\n#a\n", {"  name  ", "#a"}}, {"a\0\r\0\n\0b\0\r\0\n\0"s, {"a", "", ""}},
        {std::string(9000, 'y') + "\nz", {y4095, y4095, std::string(810, 'y'), "z"}},
        {"ab\0"s + std::string(5000, 'c') + "\n", {"ab", std::string(908, 'c')}},
    };
    // clang-format on
    for (const auto& [input, lines] : cases) EXPECT_EQ(lines_of(input), lines) << input.substr(0, 20);
    EXPECT_EQ(lines_of("a\r\nb", false), (std::vector<std::string>{"a\r\n", "b"}));  // untrimmed
}

}  // namespace
