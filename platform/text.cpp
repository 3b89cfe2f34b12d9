#include "platform/text.h"

#include <algorithm>
#include <utility>

namespace {

template <typename Char>
void lower_ascii(std::basic_string<Char>& text) {
    for (Char& c : text) {
        if (c >= Char('A') && c <= Char('Z')) c = static_cast<Char>(c + ('a' - 'A'));
    }
}

bool is_byte_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

void trim_both(std::u16string& text, char16_t c) {
    const std::size_t first = text.find_first_not_of(c);
    if (first == std::u16string::npos) {
        text.clear();
        return;
    }
    text.erase(text.find_last_not_of(c) + 1);
    text.erase(0, first);
}

void trim_end(std::u16string& text, char16_t c) {
    const std::size_t last = text.find_last_not_of(c);
    text.erase(last == std::u16string::npos ? 0 : last + 1);
}

// The digits of a number as the C library's strtoul and strtol find them:
// leading white space, one sign, for base 16 an optional 0x, then as many
// digits of the base as there are. Anything behind them is ignored, and no
// digits at all read as 0.
struct scanned_number {
    std::uint64_t magnitude = 0;  // held at most one above 32 bits
    bool negative = false;
};

bool is_c_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

int digit_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return 99;
}

scanned_number scan_number(std::string_view text, int base) {
    scanned_number number;
    std::size_t i = 0;
    while (i < text.size() && is_c_space(text[i])) ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        number.negative = text[i] == '-';
        ++i;
    }
    if (base == 16 && i + 1 < text.size() && text[i] == '0' && (text[i + 1] | 0x20) == 'x') i += 2;
    constexpr std::uint64_t cap = std::uint64_t{1} << 32;
    for (; i < text.size(); ++i) {
        const int digit = digit_value(text[i]);
        if (digit >= base) break;
        number.magnitude = std::min(number.magnitude * base + digit, cap);
    }
    return number;
}

// strtoul with a 32-bit unsigned long: an overflow gives the largest value,
// a minus sign negates.
std::uint32_t to_unsigned(std::string_view text, int base) {
    const scanned_number number = scan_number(text, base);
    if (number.magnitude >= (std::uint64_t{1} << 32)) return 0xffffffffu;
    const auto value = static_cast<std::uint32_t>(number.magnitude);
    return number.negative ? 0u - value : value;
}

// strtol with a 32-bit long, saturating at both limits; the bits are kept.
std::uint32_t to_signed(std::string_view text) {
    const scanned_number number = scan_number(text, 10);
    if (number.negative) {
        return number.magnitude >= 0x80000000u ? 0x80000000u
                                               : 0u - static_cast<std::uint32_t>(number.magnitude);
    }
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(number.magnitude, 0x7fffffffu));
}

bool starts_number(char c) { return c == '-' || c == '+' || (c >= '0' && c <= '9'); }

std::string lowered_copy(std::string_view text) {
    std::string copy(text);
    trim_text(copy);
    to_lower(copy);
    return copy;
}

}  // namespace

void to_lower(std::string& text) { lower_ascii(text); }
void to_lower(std::u16string& text) { lower_ascii(text); }

bool trim_text(std::string& text) {
    const auto first = std::find_if_not(text.begin(), text.end(), is_byte_blank);
    const auto last = std::find_if_not(text.rbegin(), text.rend(), is_byte_blank).base();
    if (first >= last) {
        text.clear();
        return false;
    }
    text.erase(last, text.end());
    text.erase(text.begin(), first);
    return true;
}

bool trim_text(std::u16string& text) {
    // One kind after the other, so a blank behind a leading tab stays.
    trim_both(text, u' ');
    trim_both(text, u'\t');
    trim_end(text, u'\r');
    trim_end(text, u'\n');
    return !text.empty();
}

bool parse_number(std::string_view text, std::uint32_t& value) {
    if (text.empty()) return false;
    const std::string copy = lowered_copy(text);
    // The prefixes are looked for anywhere, so "box" reads as hex behind its x.
    if (const std::size_t x = copy.find('x'); x != std::string::npos) {
        value = to_unsigned(std::string_view(copy).substr(x + 1), 16);
    } else if (const std::size_t o = copy.find('o'); o != std::string::npos) {
        value = to_unsigned(std::string_view(copy).substr(o + 1), 8);
    } else if (!copy.empty() && starts_number(copy[0])) {
        value = to_signed(copy);
    } else {
        return false;
    }
    return true;
}

bool parse_number_c(std::string_view text, std::uint32_t& value) {
    value = 0;
    if (text.empty()) return false;
    // The prefix is found in the trimmed copy but the digits are read from the
    // text as given, so blanks in front of a prefix shift where reading starts.
    const std::string copy = lowered_copy(text);
    auto from = [text](std::size_t start) {
        return start < text.size() ? text.substr(start) : std::string_view{};
    };
    if (copy.size() > 1 && copy[1] == 'x') {
        value = to_unsigned(from(2), 16);
    } else if (!copy.empty() && copy[0] == 'x') {
        value = to_unsigned(from(1), 16);
    } else if (!copy.empty() && copy[0] == 'o') {
        value = to_unsigned(from(1), 8);
    } else if (starts_number(text[0])) {
        value = to_unsigned(text, 10);
    } else if (copy.size() == 3 && text.size() >= 3 && text[0] == '\'' && text[2] == '\'') {
        value = static_cast<unsigned char>(text[1]);
    } else {
        return false;
    }
    return true;
}

bool split_text(std::string_view text, char delimiter, std::vector<std::string>& list, bool trim,
                bool keep_list) {
    if (!keep_list) list.clear();
    if (text.empty()) return false;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find(delimiter, start);
        if (end == std::string_view::npos) end = text.size();
        std::string piece(text.substr(start, end - start));
        if (trim) trim_text(piece);
        if (!piece.empty()) list.push_back(std::move(piece));
        start = end + 1;
    }
    return true;
}
