// Fuzz target: a -filter value, a -filter_sig value, then texts to test
// against the entries they make, both as list lines (UTF-8) and as raw
// wide text (as the directory walk hands names over).

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "input/filter.h"
#include "platform/fileio.h"
#include "platform/text_convert.h"

namespace {

// Inside the file-time bounds below, before them, and behind them.
constexpr std::uint64_t start_time = 130000000000000000ULL;
constexpr std::uint64_t stop_time = 134000000000000000ULL;
constexpr std::uint64_t fact_times[] = {start_time - 1, start_time + 1, stop_time + 1};

std::u16string raw_wide(std::string_view bytes) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        text.push_back(static_cast<char16_t>(static_cast<std::uint8_t>(bytes[i]) |
                                             (static_cast<std::uint8_t>(bytes[i + 1]) << 8)));
    return text;
}

std::u16string upper_ascii(std::u16string text) {
    for (char16_t& c : text)
        if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - u'a' + u'A');
    return text;
}

// A signature entry opens the file the text names. Without separators the
// text can only name a file of the working directory, which the runs keep
// empty: nothing outside is ever opened.
void keep_in_working_directory(std::u16string& text) {
    std::erase_if(text, [](char16_t c) { return c == u'/' || c == u'\\'; });
}

void test_text(std::u16string text, const std::vector<filter_entry>& entries, bool has_signature) {
    if (has_signature) keep_in_working_directory(text);
    const bool passes = match_entries(text, entries);
    // Names and directories are compared in lower case: a line passes or
    // not whatever the case of its letters.
    if (!has_signature && match_entries(upper_ascii(text), entries) != passes) std::abort();

    static filter_settings filter;
    filter.entries = entries;
    filter.start = filter.stop = {};
    if (match_filter(filter, text, nullptr) != passes) std::abort();
    filter.start = {true, start_time, 0};
    filter.stop = {true, stop_time, 0};
    for (std::uint64_t time : fact_times) {
        file_info facts{time, time};
        match_filter(filter, text, &facts);
    }
}

}  // namespace

// Pieces: the -filter value, the -filter_sig value, then the texts.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string_view> list = fuzz_input::pieces(data, size);
    std::vector<filter_entry> entries;
    parse_filter(fuzz_input::piece(list, 0), entries);
    const std::string_view sig = fuzz_input::piece(list, 1);
    parse_filter_sig(sig, entries);
    std::uint64_t offset = 0;
    parse_offset(sig, offset);

    const bool has_signature = std::any_of(entries.begin(), entries.end(),
                                           [](const filter_entry& e) { return !e.signature.empty(); });
    for (std::size_t i = 2; i < list.size(); ++i) {
        test_text(to_wide(list[i]), entries, has_signature);
        test_text(raw_wide(list[i]), entries, has_signature);
    }
    return 0;
}
