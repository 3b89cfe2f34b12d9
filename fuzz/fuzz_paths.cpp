// Fuzz target: the path text rules (expansion of %NAME%, the split into
// directory and name, the full form against a current directory, the
// trimming of separators) and the text helpers that read option values.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <stdlib.h>

#include "fuzz/fuzz_input.h"
#include "platform/paths.h"
#include "platform/text.h"

namespace {

// Variables that refer to themselves, grow, or hold a path, so the
// expansion meets each kind of value.
void set_environment() {
    static const bool done = [] {
        ::setenv("VEXA_FUZZ_DIR", "D:\\data\\%VEXA_FUZZ_NAME%", 1);
        ::setenv("VEXA_FUZZ_NAME", "x.txt", 1);
        ::setenv("VEXA_FUZZ_SELF", "%VEXA_FUZZ_SELF%", 1);
        ::setenv("VEXA_FUZZ_GROW", "%VEXA_FUZZ_GROW%%VEXA_FUZZ_GROW%", 1);
        ::setenv("VEXA_FUZZ_EMPTY", "", 1);
        return true;
    }();
    (void)done;
}

bool ends_in_separator(const std::string& text) {
    return !text.empty() && (text.back() == '/' || text.back() == '\\');
}

void split_and_join(std::string_view text) {
    std::string dir, name;
    if (split_path(text, dir, name) == text.empty()) std::abort();
    std::string stripped(text);
    const bool remains = strip_separators(stripped);
    if (remains == stripped.empty() || ends_in_separator(stripped)) std::abort();
}

void read_option_values(std::string_view text) {
    std::vector<std::string> list;
    split_text(text, '|', list, true, false);
    split_text(text, ' ', list, false, true);
    std::uint32_t value = 0;
    parse_number(text, value);
    parse_number_c(text, value);
    std::string trimmed(text);
    trim_text(trimmed);
}

}  // namespace

// Pieces: a path, a current directory, a text to replace, its replacement.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    set_environment();
    const auto list = fuzz_input::pieces(data, size);
    const std::string_view path = fuzz_input::piece(list, 0);
    const std::string_view cwd = fuzz_input::piece(list, 1);

    for (bool allow_vss : {false, true}) {
        const std::string expanded = expand_path(path, allow_vss);
        split_and_join(expanded);
        full_path(expanded, cwd);
    }
    split_and_join(path);
    full_path(path, cwd);
    full_path(path);
    read_option_values(path);

    std::string text(path);
    if (!cwd.empty()) {
        replace_char(text, cwd.front(), '\\');
        remove_char(text, cwd.front());
    }
    return 0;
}
