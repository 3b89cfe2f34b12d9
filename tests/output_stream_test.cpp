// The report stream at the edge of its buffer, 8 bytes here: a block leaves whole, at the call that gives its
// last byte, and not before; every LF leaves as CR LF, which a block edge may split. A console hands its buffer
// on at each line end; a results file keeps it until a block is full.
#include "report/output_stream.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

namespace {

struct block_log final : uni::output_stream {
    explicit block_log(bool console) : output_stream(8), console_(console) {}
    void sync() override {
        if (console_) flush_buffer();
    }
    bool write_bytes(const char* bytes, std::size_t count) override {
        handed_on.append(handed_on.empty() ? "" : "|").append(bytes, count);
        return true;
    }
    std::string handed_on;  // the blocks, joined by "|"
    bool console_;
};

// One call: "w" write, "p" write_plain, "c" put, "f" fill with the next character as often as the digits
// behind it say, "e" end_line, "F" flush; the text behind the letter is its argument.
void call(block_log& out, const std::string& step) {
    const std::string text = step.substr(1);
    switch (step[0]) {
    case 'w': return out.write(text);
    case 'p': return out.write_plain(text);
    case 'c': return out.put(text[0]);
    case 'f': return out.fill(text[0], std::stoul(text.substr(1)));
    case 'e': return out.end_line();
    default: out.flush_buffer();
    }
}

TEST(OutputStream, BlocksLeaveAtTheirLastByte) {
    // What, a console, and each call with the blocks it hands on. Each inline path is handed a piece that fills
    // the buffer to its last byte.
    using steps = std::vector<std::pair<std::string, std::string>>;
    const std::tuple<const char*, bool, steps> rows[] = {
        {"write fills the rest", true, {{"wabc", ""}, {"wdefgh", "abcdefgh"}, {"e", "\r\n"}}},
        {"write_plain fills from empty", true, {{"pabcdefgh", "abcdefgh"}, {"ci", ""}, {"F", "i"}}},
        {"put, one short", true, {{"wabcdefg", ""}, {"ch", "abcdefgh"}, {"ci", ""}, {"F", "i"}}},
        {"fill fills the rest", true, {{"wab", ""}, {"f.6", "ab......"}, {"cx", ""}, {"F", "x"}}},
        {"fill over two blocks", true, {{"wa", ""}, {"f.20", "a.......|........"}, {"F", "....."}}},
        {"CR LF split by the edge", true, {{"wabcdefg\nhij", "abcdefg\r"}, {"e", "\nhij\r\n"}}},
        {"put LF at the edge", true, {{"wabcdefg", ""}, {"c\n", "abcdefg\r"}, {"F", "\n"}}},
        {"fill with LF", true, {{"f\n5", "\r\n\r\n\r\n\r\n"}, {"F", "\r\n"}}},
        {"line ends wait", false, {{"wabc", ""}, {"e", ""}, {"wde", ""}, {"cf", "abc\r\ndef"}}},
        {"a line end gives the last byte", false, {{"wabcdef", ""}, {"e", "abcdef\r\n"}, {"e", ""}}},
    };
    for (const auto& [what, console, calls] : rows) {
        block_log out(console);
        for (std::size_t i = 0; i < calls.size(); ++i) {
            out.handed_on.clear();
            call(out, calls[i].first);
            EXPECT_EQ(out.handed_on, calls[i].second) << what << ", call " << i;
            if (out.handed_on != calls[i].second) break;  // a block held back past its last byte: the next overruns
        }
    }
}

}  // namespace
