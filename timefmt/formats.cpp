#include "timefmt/formats.h"

#include <array>
#include <iterator>

#include "platform/digits.h"

namespace {

constexpr std::size_t npos = std::string_view::npos;
constexpr unsigned max_fraction_digits = 9;

// What an empty format word stands for: "yyyy-mm-dd" and "hh:mm:ss.xxx".
constexpr std::uint32_t default_word =
    '-' | fmt_bits::month_digits | fmt_bits::year4 | fmt_bits::order_ymd | (3u << fmt_bits::fraction_shift);

constexpr std::array<std::uint64_t, 10> powers_of_ten = {1,      10,      100,      1000,      10000,
                                                         100000, 1000000, 10000000, 100000000, 1000000000};

// A date or time text while it is put together: every report row has one
// of each, so it is built on the stack and handed over in one piece.
struct short_text {
    std::array<char, 64> chars;
    std::size_t size = 0;

    // Room for any fields; a text that would not fit is cut, never overrun.
    void push_back(char c) {
        if (size < chars.size()) chars[size++] = c;
    }
    void append(std::string_view text) {
        for (char c : text) push_back(c);
    }
};

// Decimal digits of value, zero-filled on the left to at least `width`.
void append_number(short_text& out, std::uint64_t value, std::size_t width) {
    char text[20];
    const char* first = digits::put_backwards(std::end(text), value);
    const auto size = static_cast<std::size_t>(std::end(text) - first);
    for (std::size_t pad = size; pad < width; ++pad) out.push_back('0');
    out.append(std::string_view(first, size));
}

void append_separator(short_text& out, char separator) {
    if (separator != '\0') out.push_back(separator);
}

// Three fields joined by the separator.
void append_date_fields(short_text& out, char separator, std::uint64_t first, std::size_t first_width,
                        std::uint64_t second, std::size_t second_width, std::uint64_t third,
                        std::size_t third_width) {
    append_number(out, first, first_width);
    append_separator(out, separator);
    append_number(out, second, second_width);
    append_separator(out, separator);
    append_number(out, third, third_width);
}

void render_date(short_text& out, const time_parts& parts, std::uint32_t word) {
    const char separator = static_cast<char>(word & fmt_bits::separator_mask);
    const bool four_digit_year = (word & fmt_bits::year4) != 0;
    const std::uint64_t year = four_digit_year ? parts.year : parts.year % 100;
    const std::size_t year_width = four_digit_year ? 4 : 2;

    if ((word & fmt_bits::month_name) != 0) {
        // A named month is written only in front of or behind the day.
        const std::string_view name = month_name(parts.month);
        if ((word & fmt_bits::order_mdy) != 0) {
            out.append(name);
            append_separator(out, separator);
            append_number(out, parts.day, 2);
        } else if ((word & fmt_bits::order_dmy) != 0) {
            append_number(out, parts.day, 2);
            append_separator(out, separator);
            out.append(name);
        } else {
            return;
        }
        append_separator(out, separator);
        append_number(out, year, year_width);
        return;
    }
    if ((word & fmt_bits::month_digits) == 0) return;
    if ((word & fmt_bits::order_mdy) != 0) {
        append_date_fields(out, separator, parts.month, 2, parts.day, 2, year, year_width);
    } else if ((word & fmt_bits::order_dmy) != 0) {
        append_date_fields(out, separator, parts.day, 2, parts.month, 2, year, year_width);
    } else if ((word & fmt_bits::order_ymd) != 0) {
        append_date_fields(out, separator, year, year_width, parts.month, 2, parts.day, 2);
    }
}

void render_time(short_text& out, const time_parts& parts, std::uint32_t word) {
    append_number(out, parts.hour, 2);
    out.push_back(':');
    append_number(out, parts.minute, 2);
    out.push_back(':');
    append_number(out, parts.second, 2);

    unsigned digits = (word & fmt_bits::fraction_mask) >> fmt_bits::fraction_shift;
    if (digits == 0) return;
    if (digits > max_fraction_digits) digits = max_fraction_digits;
    std::uint64_t fraction = 0;
    if (digits == 3) {
        fraction = parts.millisecond;
    } else if (digits <= 6) {
        fraction = parts.microseconds / powers_of_ten[6 - digits];
    } else {
        fraction = parts.nanoseconds / powers_of_ten[9 - digits];
    }
    out.push_back('.');
    append_number(out, fraction, digits);
}

}  // namespace

bool date_format_acceptable(std::string_view text) { return text.size() == 8 || text.size() == 10; }

bool time_format_acceptable(std::string_view text) {
    const bool length_ok = text.size() == 8 || (text.size() >= 12 && text.size() <= 18);
    return length_ok && text.find(':') != npos;
}

namespace {

// Where the longer token stands, else the shorter one, with the bit that
// tells which put into word; npos when neither is there.
std::size_t find_token(std::string_view format, std::string_view longer, std::uint32_t longer_bit,
                       std::string_view shorter, std::uint32_t shorter_bit, std::uint32_t& word) {
    std::size_t at = format.find(longer);
    if (at != npos) {
        word |= longer_bit;
        return at;
    }
    at = format.find(shorter);
    if (at != npos) word |= shorter_bit;
    return at;
}

}  // namespace

bool compile_formats(std::uint32_t& word, std::string_view date_format, std::string_view time_format,
                     bool pair_datetime) {
    word = pair_datetime ? fmt_bits::pair_datetime : 0;

    // One separator serves between all fields; the first kind found wins.
    for (const char candidate : {'/', '-', ' '}) {
        if (date_format.find(candidate) != npos) {
            word |= static_cast<unsigned char>(candidate);
            break;
        }
    }

    // Tokens are looked for, not parsed: the first occurrence of each counts.
    const std::size_t month_at =
        find_token(date_format, "mmm", fmt_bits::month_name, "mm", fmt_bits::month_digits, word);
    if (month_at == npos) return false;
    const std::size_t year_at = find_token(date_format, "yyyy", fmt_bits::year4, "yy", fmt_bits::year2, word);
    if (year_at == npos) return false;
    const std::size_t day_at = date_format.find("dd");
    if (day_at == npos) return false;

    if (day_at < month_at && month_at < year_at) {
        word |= fmt_bits::order_dmy;
    } else if (month_at < day_at && day_at < year_at) {
        word |= fmt_bits::order_mdy;
    } else if (year_at < month_at && month_at < day_at) {
        word |= fmt_bits::order_ymd;
    } else {
        return false;
    }

    const std::size_t fraction_at = time_format.find("xxx");
    if (fraction_at != npos) {
        std::size_t digits = time_format.rfind('x') - fraction_at + 1;
        if (digits > max_fraction_digits) digits = max_fraction_digits;
        word |= static_cast<std::uint32_t>(digits) << fmt_bits::fraction_shift;
    }
    return true;
}

std::size_t time_column_width(std::string_view time_format) {
    const std::size_t length = time_format.size();
    if (length < 8 || length > 18 || time_format.find(':') == npos) return 0;
    if (length == 8) return 8;
    if (length >= 12 && time_format.find(".xxx") != npos) return length;
    return 0;
}

std::string_view month_name(unsigned number) {
    static constexpr std::array<std::string_view, 12> names = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                               "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    if (number < 1 || number > names.size()) return {};
    return names[number - 1];
}

void render_date_time(std::string& date_text, std::string& time_text, const time_parts& parts,
                      std::uint32_t word) {
    date_text.clear();
    time_text.clear();
    if (!parts.valid) return;
    if (word == 0) word = default_word;
    short_text date;
    render_date(date, parts, word);
    date_text.assign(date.chars.data(), date.size);
    short_text time;
    render_time(time, parts, word);
    time_text.assign(time.chars.data(), time.size);
}
