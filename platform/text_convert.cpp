#include "platform/text_convert.h"

#include <cstdint>

namespace {

bool is_refused(std::uint32_t code) {
    // The refused band reaches one past each end of the surrogates.
    return (code >= 0xD7FF && code <= 0xE000) || code == 0xFFFF || code > 0x10FFFF;
}

void append_code(std::uint32_t code, std::u16string& out) {
    if (code >= 0x10000) {
        out.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
        out.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
    } else {
        out.push_back(static_cast<char16_t>(code));
    }
}

void append_utf8(std::uint32_t code, std::string& out) {
    auto byte = [&out](std::uint32_t b) { out.push_back(static_cast<char>(b)); };
    if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xC0 | (code >> 6));
        byte(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        byte(0xE0 | (code >> 12));
        byte(0x80 | ((code >> 6) & 0x3F));
        byte(0x80 | (code & 0x3F));
    } else {
        byte(0xF0 | (code >> 18));
        byte(0x80 | ((code >> 12) & 0x3F));
        byte(0x80 | ((code >> 6) & 0x3F));
        byte(0x80 | (code & 0x3F));
    }
}

}  // namespace

bool append_wide(std::string_view text, std::u16string& out) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i++]);
        std::uint32_t code;
        int more;
        if (lead < 0x80) {
            code = lead;
            more = 0;
        } else if ((lead & 0xE0) == 0xC0) {
            code = lead & 0x1F;
            more = 1;
        } else if ((lead & 0xF0) == 0xE0) {
            code = lead & 0x0F;
            more = 2;
        } else if ((lead & 0xF8) == 0xF0) {
            code = lead & 0x07;
            more = 3;
        } else {
            return false;
        }
        for (; more > 0; --more) {
            if (i == text.size()) return false;
            const auto next = static_cast<unsigned char>(text[i++]);
            if ((next & 0xC0) != 0x80) return false;
            code = (code << 6) | (next & 0x3F);
        }
        // Overlong forms pass: they stand for the code point their bits spell.
        if (is_refused(code)) return false;
        append_code(code, out);
    }
    return true;
}

std::u16string to_wide(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    if (!append_wide(text, out)) out.clear();
    return out;
}

std::string to_utf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::uint32_t code = text[i];
        if (code >= 0xD800 && code <= 0xDBFF) {
            if (i + 1 == text.size() || text[i + 1] < 0xDC00 || text[i + 1] > 0xDFFF) break;
            code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
        }
        append_utf8(code, out);
    }
    return out;
}
