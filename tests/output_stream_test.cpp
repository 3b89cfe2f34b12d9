// The report stream at the edge of its buffer, with a buffer of 8 bytes; the results file's own block size is
// fileio_test's.
#include "report/output_stream.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace {

constexpr std::size_t buffer_size = 8;

// Keeps each block handed on as it came. A console hands its buffer on at each line end, a results file doesn't.
struct block_log final : uni::output_stream {
    explicit block_log(bool line_end_flushes) : output_stream(buffer_size), flushes_(line_end_flushes) {}
    void sync() override {
        if (flushes_) flush_buffer();
    }
    bool write_bytes(const char* bytes, std::size_t count) override {
        blocks.emplace_back(bytes, count);
        return true;
    }
    std::vector<std::string> blocks;

private:
    bool flushes_;
};

// One call on the stream.
struct op {
    enum { write, plain, put, fill, end_line, flush } kind;
    std::string_view text{};
    char c = 0;
    std::size_t count = 0;
};
op write(std::string_view text) { return {op::write, text}; }
op plain(std::string_view text) { return {op::plain, text}; }
op put(char c) { return {op::put, {}, c}; }
op fill(char c, std::size_t count) { return {op::fill, {}, c, count}; }
const op end_line{op::end_line}, flush{op::flush};

void run(uni::output_stream& out, const op& o) {
    switch (o.kind) {
    case op::write: return out.write(o.text);
    case op::plain: return out.write_plain(o.text);
    case op::put: return out.put(o.c);
    case op::fill: return out.fill(o.c, o.count);
    case op::end_line: return out.end_line();
    case op::flush: out.flush_buffer(); return;
    }
}

// The blocks handed on during one call, joined by "|".
std::string joined(const std::vector<std::string>& blocks, std::size_t from) {
    std::string text;
    for (std::size_t i = from; i < blocks.size(); ++i) text += (i == from ? "" : "|") + blocks[i];
    return text;
}

TEST(OutputStream, BlocksLeaveAtTheirLastByte) {
    // What, line end flushes, and each call with the blocks it hands on. A block leaves whole, at the call that
    // gives its last byte, and not before; every LF leaves as CR LF, which a block edge may split.
    using steps = std::vector<std::pair<op, std::string_view>>;
    const std::tuple<const char*, bool, steps> rows[] = {
        // Each inline path handed a piece that fills the buffer to its last byte.
        {"write fills the rest", true, {{write("abc"), ""}, {write("defgh"), "abcdefgh"}, {end_line, "\r\n"}}},
        {"write_plain fills from empty", true, {{plain("abcdefgh"), "abcdefgh"}, {put('i'), ""}, {flush, "i"}}},
        {"put, one short", true, {{write("abcdefg"), ""}, {put('h'), "abcdefgh"}, {put('i'), ""}, {flush, "i"}}},
        {"fill fills the rest", true, {{write("ab"), ""}, {fill('.', 6), "ab......"}, {put('x'), ""}, {flush, "x"}}},
        {"fill over two blocks", true, {{write("a"), ""}, {fill('.', 20), "a.......|........"}, {flush, "....."}}},
        {"CR LF split by the edge", true, {{write("abcdefg\nhij"), "abcdefg\r"}, {end_line, "\nhij\r\n"}}},
        {"put LF at the edge", true, {{write("abcdefg"), ""}, {put('\n'), "abcdefg\r"}, {flush, "\n"}}},
        {"fill with LF", true, {{fill('\n', 5), "\r\n\r\n\r\n\r\n"}, {flush, "\r\n"}}},
        {"line ends wait", false, {{write("abc"), ""}, {end_line, ""}, {write("de"), ""}, {put('f'), "abc\r\ndef"}}},
        {"a line end gives the last byte", false, {{write("abcdef"), ""}, {end_line, "abcdef\r\n"}, {end_line, ""}}},
    };
    for (const auto& [what, line_end_flushes, calls] : rows) {
        block_log out(line_end_flushes);
        for (std::size_t i = 0; i < calls.size(); ++i) {
            const std::size_t before = out.blocks.size();
            run(out, calls[i].first);
            const std::string handed_on = joined(out.blocks, before);
            EXPECT_EQ(handed_on, calls[i].second) << what << ", call " << i;
            if (handed_on != calls[i].second) break;  // a block held back past its last byte: the next byte overruns
        }
        EXPECT_FALSE(out.failed()) << what;
    }
}

}  // namespace
