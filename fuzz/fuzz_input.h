#pragma once
// How a fuzz target reads several texts out of one input: the first byte is
// the delimiter and the rest is cut at it. Seeds stay readable ("\n" first,
// then one text a line), and the fuzzer can still put any byte into a text
// by choosing another delimiter.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace fuzz_input {

inline std::string_view as_text(const std::uint8_t* data, std::size_t size) {
    return size == 0 ? std::string_view() : std::string_view(reinterpret_cast<const char*>(data), size);
}

// The pieces behind the delimiter byte. One delimiter at the very end closes
// the last piece rather than opening an empty one.
inline std::vector<std::string_view> pieces(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string_view> list;
    std::string_view text = as_text(data, size);
    if (text.empty()) return list;
    const char delimiter = text.front();
    text.remove_prefix(1);
    if (!text.empty() && text.back() == delimiter) text.remove_suffix(1);
    if (text.empty()) return list;
    for (;;) {
        const std::size_t at = text.find(delimiter);
        list.push_back(text.substr(0, at));
        if (at == std::string_view::npos) break;
        text.remove_prefix(at + 1);
    }
    return list;
}

// Piece `index`, or the empty text when there are fewer.
inline std::string_view piece(const std::vector<std::string_view>& list, std::size_t index) {
    return index < list.size() ? list[index] : std::string_view();
}

}  // namespace fuzz_input
