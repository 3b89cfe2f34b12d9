#include "report/text_report.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>

#include "dns/record_data.h"
#include "dns/record_types.h"
#include "dns/type_names.h"
#include "report/cells.h"
#include "report/row_workspace.h"
#include "timefmt/formats.h"

namespace {

constexpr std::size_t column_count = text_report::column_count;
constexpr std::size_t date_column = 5;  // the pair gap stands behind it

constexpr std::array<std::string_view, column_count> header_words = {
    "query", "comment", "status", "id",  "DNSserv", "date", "time-UTC",
    "type",  "tname",   "class",  "ttl", "size",    "data"};

using line_layout = text_report::line_layout;

template <class Sink>
void write_separator(Sink& out, const line_layout& layout, std::size_t column) {
    out.write(layout.separator);
    if (column == date_column) out.write_plain(layout.pair_gap);
}

void write_header(uni::output_stream& out, const line_layout& layout) {
    for (std::size_t column = 0; column < column_count; ++column) {
        if (column + 1 == column_count) {
            out.write_plain(header_words[column]);
            break;
        }
        cells::write_left(out, header_words[column], layout.widths[column]);
        write_separator(out, layout, column);
    }
    out.end_line();
}

// AAAA in full: every group written, zero runs not folded.
void write_ipv6_groups(cells::row_text& out, std::span<const std::uint8_t> data) {
    for (std::size_t i = 0; i + 1 < data.size(); i += 2) {
        if (i != 0) out.put(':');
        cells::write_number(out, (unsigned{data[i]} << 8) | data[i + 1], 16);
    }
}

// TXT as it stands; only CR and LF become blanks so the row stays one line.
void write_txt(cells::row_text& out, std::span<const std::uint8_t> data) {
    const char* text = reinterpret_cast<const char*>(data.data());
    std::size_t run_start = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n') continue;
        out.write_plain(std::string_view(text + run_start, i - run_start));
        out.put(' ');
        run_start = i + 1;
    }
    out.write_plain(std::string_view(text + run_start, data.size() - run_start));
}

// SOA names are written up to a zero byte they may hold.
std::string_view up_to_zero(const std::string& text) {
    return std::string_view(text).substr(0, text.find('\0'));
}

template <class Sink>
void write_soa_text(const soa_data& soa, Sink& out, std::string_view gap) {
    out.write(up_to_zero(soa.domain_name));
    out.write(gap);
    out.write(up_to_zero(soa.admin_mailbox));
    for (std::uint32_t value :
         {soa.serial_num, soa.refresh_sec, soa.retry_sec, soa.expire_sec, soa.min_sec}) {
        out.write(gap);
        out.write_plain("0x");
        cells::write_number(out, value, 16, 8, '0');
    }
}

void write_mx(row_workspace& work, const dns_entry& entry, std::span<const std::uint8_t> data,
              std::string_view list_gap) {
    cells::row_text& out = work.row;
    std::uint16_t preference = 0;
    // A preference behind the end of the message: nothing to translate.
    if (!decode_mx_preference(entry, preference)) {
        cells::write_hex_bytes(out, data);
        return;
    }
    cells::write_number(out, preference);
    out.write(list_gap);
    if (decode_name(entry, entry.data_offset + 2, work.text))
        out.write(work.text);
    else
        cells::write_hex_bytes(out, data);
}

void write_data_cell(row_workspace& work, const dns_entry& entry, std::string_view list_gap) {
    cells::row_text& out = work.row;
    if (entry.data_length == 0) {
        out.write_plain("  <none>");
        return;
    }
    std::span<const std::uint8_t> data = entry.data();
    switch (entry.dns_type) {
    case rr_type::a:
        if (entry.data_length == 4 && data.size() == 4)
            cells::write_ipv4(out, data.first<4>());
        else
            cells::write_hex_bytes(out, data);
        return;
    case rr_type::aaaa:
        write_ipv6_groups(out, data);
        return;
    case rr_type::mx:
        write_mx(work, entry, data, list_gap);
        return;
    case rr_type::ns:
    case rr_type::cname:
    case rr_type::ptr:
        if (decode_name(entry, entry.data_offset, work.text))
            out.write(work.text);
        else
            cells::write_hex_bytes(out, data);
        return;
    case rr_type::soa:
        if (decode_soa(entry, work.soa))
            write_soa_text(work.soa, out, list_gap);
        else
            cells::write_hex_bytes(out, data);
        return;
    case rr_type::txt:  // only answer records carry raw data
        write_txt(out, entry.raw_data());
        out.put('\n');  // the row is followed by an empty line
        return;
    default: cells::write_hex_bytes(out, data); return;
    }
}

// All cells of one row, without its line end.
void write_cells(row_workspace& work, const dns_entry& entry, std::string_view query, std::string_view comment,
                 std::string_view status, const line_layout& layout, const instant_texts::texts& when) {
    cells::row_text& out = work.row;
    const auto& w = layout.widths;
    cells::write_left(out, query, w[0]);
    write_separator(out, layout, 0);
    cells::write_left(out, comment, w[1]);
    write_separator(out, layout, 1);
    cells::write_left(out, status, w[2]);
    write_separator(out, layout, 2);
    cells::write_number(out, entry.packet_id, 16, w[3], '0');
    write_separator(out, layout, 3);
    cells::write_right(out, entry.dns_server, w[4]);
    write_separator(out, layout, 4);
    cells::write_left(out, when.date, w[5]);
    write_separator(out, layout, 5);
    cells::write_left(out, when.time, w[6]);
    write_separator(out, layout, 6);
    cells::write_number(out, entry.dns_type, 10, w[7]);
    write_separator(out, layout, 7);
    cells::write_right(out, record_type_name(entry.dns_type), w[8]);
    write_separator(out, layout, 8);
    cells::write_number(out, entry.dns_class, 10, w[9]);
    write_separator(out, layout, 9);
    cells::write_number(out, entry.ttl_secs, 10, w[10]);
    write_separator(out, layout, 10);
    cells::write_number(out, entry.data_length, 10, w[11]);
    write_separator(out, layout, 11);
    write_data_cell(work, entry, layout.list_gap);
}

}  // namespace

text_report::text_report(const report_settings& settings) : settings_(settings) {
    layout_.separator = settings.separator;
    if (settings.compact_columns) {
        layout_.pair_gap = settings.pair_blank ? " " : "";
        layout_.list_gap = ";";
        return;
    }
    layout_.pair_gap = " ";
    layout_.list_gap = "; ";
    const std::size_t date_length = settings.date_format.size();
    layout_.widths = {40,
                      9,
                      7,
                      4,
                      settings.server_width,
                      date_length == 8 || date_length == 10 ? date_length : 0,
                      time_column_width(settings.time_format),
                      4,
                      6,
                      5,
                      6,
                      4,
                      0};
}

void text_report::write_row(uni::output_stream& out, const dns_entry& entry, std::string_view comment,
                            std::string_view status, row_workspace& work) {
    if (header_due_) {
        write_header(out, layout_);
        header_due_ = false;
    }
    // The only guard against a separator inside a value.
    std::string_view query = entry.query;
    const char clash = settings_.clash_char;
    if (clash != 0 && query.find(clash) != std::string_view::npos) {
        query_.assign(query);
        std::replace(query_.begin(), query_.end(), clash, settings_.clash_subst);
        query = query_;
    }
    const instant_texts::texts when = work.when.render(entry.query_time, settings_.format_word);
    work.row.clear();
    write_cells(work, entry, query, comment, status, layout_, when);
    out.write(work.row.view());
    out.end_line();
}
