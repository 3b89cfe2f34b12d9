#include "platform/text.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

namespace {

template <typename Char>
constexpr Char lower_ascii(Char c) {
    return c >= Char('A') && c <= Char('Z') ? static_cast<Char>(c + ('a' - 'A')) : c;
}

template <typename Char>
void lower_all(std::basic_string<Char>& text) {
    for (Char& c : text) c = lower_ascii(c);
}

template <typename Char>
bool same_letters(std::basic_string_view<Char> a, std::basic_string_view<Char> b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lower_ascii(a[i]) != lower_ascii(b[i])) return false;
    return true;
}

bool is_byte_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

template <typename Char>
void trim_both(std::basic_string<Char>& text, Char c) {
    const std::size_t first = text.find_first_not_of(c);
    if (first == std::basic_string<Char>::npos) {
        text.clear();
        return;
    }
    text.erase(text.find_last_not_of(c) + 1);
    text.erase(0, first);
}

template <typename Char>
void trim_end(std::basic_string<Char>& text, Char c) {
    const std::size_t last = text.find_last_not_of(c);
    text.erase(last == std::basic_string<Char>::npos ? 0 : last + 1);
}

template <typename Char>
bool trim_kinds(std::basic_string<Char>& text) {
    // One kind after the other, so a blank behind a leading tab stays.
    trim_both(text, Char(' '));
    trim_both(text, Char('\t'));
    trim_end(text, Char('\r'));
    trim_end(text, Char('\n'));
    return !text.empty();
}

template <typename Char>
bool split_pieces(std::basic_string_view<Char> text, Char delimiter,
                  std::vector<std::basic_string<Char>>& list, bool trim) {
    if (text.empty()) return false;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find(delimiter, start);
        if (end == std::basic_string_view<Char>::npos) end = text.size();
        std::basic_string<Char> piece(text.substr(start, end - start));
        if (trim) trim_text(piece);
        if (!piece.empty()) list.push_back(std::move(piece));
        start = end + 1;
    }
    return true;
}

bool is_c_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

int digit_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return 99;
}

// White space and one sign, as every C number reader takes them first.
std::size_t skip_front(std::string_view text, bool& negative) {
    std::size_t i = 0;
    while (i < text.size() && is_c_space(text[i])) ++i;
    negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    return i;
}

bool has_hex_prefix(std::string_view text, std::size_t i) {
    return i + 1 < text.size() && text[i] == '0' && (text[i + 1] | 0x20) == 'x';
}

// strtoul with a 32-bit unsigned long.
std::uint32_t to_unsigned(std::string_view text, int base) {
    return read_unsigned<std::uint32_t>(text, base);
}

// strtol with a 32-bit long, saturating at both limits; the bits are kept.
std::uint32_t to_signed(std::string_view text) {
    const scanned_number number = scan_number(text, 10, 0xffffffffu);
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

void to_lower(std::string& text) { lower_all(text); }
void to_lower(std::u16string& text) { lower_all(text); }

bool same_text(std::string_view a, std::string_view b) { return same_letters(a, b); }
bool same_text(std::u16string_view a, std::u16string_view b) { return same_letters(a, b); }

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

bool trim_text(std::u16string& text) { return trim_kinds(text); }
bool trim_each_kind(std::string& text) { return trim_kinds(text); }

bool split_text(std::string_view text, char delimiter, std::vector<std::string>& list, bool trim,
                bool keep_list) {
    if (!keep_list) list.clear();
    return split_pieces(text, delimiter, list, trim);
}

bool split_text(std::u16string_view text, char16_t delimiter, std::vector<std::u16string>& list, bool trim) {
    list.clear();
    return split_pieces(text, delimiter, list, trim);
}

scanned_number scan_number(std::string_view text, int base, std::uint64_t limit) {
    scanned_number number;
    std::size_t i = skip_front(text, number.negative);
    if ((base == 0 || base == 16) && has_hex_prefix(text, i)) {
        base = 16;
        i += 2;
    } else if (base == 0) {
        base = i < text.size() && text[i] == '0' ? 8 : 10;
    }
    const auto radix = static_cast<std::uint64_t>(base);
    for (; i < text.size(); ++i) {
        const int digit = digit_value(text[i]);
        if (digit >= base) break;
        const auto value = static_cast<std::uint64_t>(digit);
        number.end = i + 1;
        if (number.overflow) continue;
        if (value > limit || number.magnitude > (limit - value) / radix) {
            number.overflow = true;
            number.magnitude = limit;
        } else {
            number.magnitude = number.magnitude * radix + value;
        }
    }
    return number;
}

double read_decimal(std::string_view text) {
    bool negative = false;
    text.remove_prefix(skip_front(text, negative));
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) return 0;
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc()) return 0;
    return negative ? -value : value;
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
