#include "report/xml_report.h"

#include <charconv>
#include <span>
#include <utility>

#include "dns/record_data.h"
#include "dns/record_types.h"
#include "dns/type_names.h"
#include "report/cells.h"
#include "report/row_workspace.h"

namespace {

void write_element(cells::row_text& out, std::string_view open, std::string_view value,
                   std::string_view close) {
    out.write(open);
    out.write(value);
    out.write(close);
}

void write_number_element(cells::row_text& out, std::string_view open, std::uint64_t value,
                          std::string_view close) {
    out.write(open);
    cells::write_number(out, value);
    out.write(close);
}

// An attribute of translated_data; its opener carries the blank in front.
void write_attribute(cells::row_text& out, std::string_view opener, std::string_view value) {
    out.write(opener);
    out.write(value);
    out.put('"');
}

void write_soa_attributes(cells::row_text& out, const soa_data& soa) {
    write_attribute(out, " domain_name=\"", soa.domain_name);
    write_attribute(out, " admin_mailbox=\"", soa.admin_mailbox);
    out.write(" serial_num=\"0x");
    cells::write_number(out, soa.serial_num, 16);
    out.put('"');
    const std::pair<std::string_view, std::uint32_t> times[] = {{" refresh_sec=\"", soa.refresh_sec},
                                                                {" retry_sec=\"", soa.retry_sec},
                                                                {" expire_sec=\"", soa.expire_sec},
                                                                {" min_sec=\"", soa.min_sec}};
    for (const auto& [opener, value] : times) {
        out.write(opener);
        cells::write_number(out, value);
        out.put('"');
    }
}

void write_mx_attributes(row_workspace& work, const dns_entry& entry) {
    // A preference reaching behind the message reads what is there and
    // zeros for the rest.
    std::uint16_t preference = 0;
    decode_mx_preference(entry, preference);
    cells::row_text& out = work.row;
    out.write(" preference=\"");
    cells::write_number(out, preference, 10, 3);
    out.put('"');
    decode_name(entry, entry.data_offset + 2, work.text);
    write_attribute(out, " mx_server=\"", work.text);
}

// The start tag of translated_data: attributes only, by record type.
void write_translated_data(row_workspace& work, const dns_entry& entry, std::span<const std::uint8_t> data) {
    cells::row_text& out = work.row;
    out.write("<translated_data ");
    switch (entry.dns_type) {
    case rr_type::a:
        if (entry.data_length == 4 && data.size() == 4) {
            out.write(" ipv4_addr=\"");
            cells::write_ipv4(out, data.first<4>());
            out.put('"');
        }
        break;
    case rr_type::aaaa: {
        work.text.clear();
        format_ipv6(data.data(), data.size(), work.text);
        write_attribute(out, " ipv6_addr=\"", work.text);
        break;
    }
    case rr_type::mx:
        if (entry.data_length != 0) write_mx_attributes(work, entry);
        break;
    case rr_type::ns:
    case rr_type::cname:
    case rr_type::ptr: {
        decode_name(entry, entry.data_offset, work.text);
        write_attribute(out, " domain_name=\"", work.text);
        break;
    }
    case rr_type::soa:
        if (decode_soa(entry, work.soa)) write_soa_attributes(out, work.soa);
        break;
    default:  // TXT too: its text shows only in raw_data_hex
        break;
    }
    out.write("></translated_data>");
}

}  // namespace

void write_xml_entry(const dns_entry& entry, uni::output_stream& out, std::uint32_t format_word,
                     std::string_view status, row_workspace& work) {
    const instant_texts::texts when = work.when.render(entry.query_time, format_word);
    std::span<const std::uint8_t> data = entry.data();

    // Nothing is escaped: names go out as the bytes the server sent.
    cells::row_text& row = work.row;
    row.clear();
    write_element(row, "<data_entry><query>", entry.query, "</query>");
    write_element(row, "<status>", status, "</status>");
    row.write("<packet_id>");
    cells::write_number(row, entry.packet_id, 16, 4, '0');
    row.write("</packet_id>");
    write_element(row, "<dns_server>", entry.dns_server, "</dns_server>");
    write_element(row, "<query_date_utc>", when.date, "</query_date_utc>");
    write_element(row, "<query_time_utc>", when.time, "</query_time_utc>");
    write_number_element(row, "<dns_type>", entry.dns_type, "</dns_type>");
    write_element(row, "<dns_type_name>", record_type_name(entry.dns_type), "</dns_type_name>");
    write_number_element(row, "<dns_class>", entry.dns_class, "</dns_class>");
    write_number_element(row, "<ttl_secs>", entry.ttl_secs, "</ttl_secs>");
    write_number_element(row, "<data_length>", entry.data_length, "</data_length>");
    row.write("<raw_data_hex>");
    cells::write_hex_bytes(row, data);
    row.write("</raw_data_hex>");
    write_translated_data(work, entry, data);
    row.write("</data_entry>");
    out.write(row.view());
    out.end_line();
}

bool format_ipv6(const std::uint8_t* data, std::size_t length, std::string& text) {
    if (data == nullptr || length == 0) return false;
    text.clear();
    const std::size_t groups = length / 2;
    bool folded = false;  // the one run of zero groups has been seen
    bool inside = false;  // the walk is in that run now
    for (std::size_t i = 0; i < groups; ++i) {
        const unsigned group = (unsigned{data[2 * i]} << 8) | data[2 * i + 1];
        const bool last = i + 1 == groups;
        if (group != 0) {
            inside = false;
            char digits[4];
            auto end = std::to_chars(digits, digits + sizeof digits, group, 16).ptr;
            text.append(digits, end);
        } else if (inside) {
            continue;
        } else if (folded) {
            text.push_back('0');
        } else {
            if (i == 0) text.push_back(':');
            folded = inside = true;
            if (last) text.push_back(':');
        }
        if (!last) text.push_back(':');
    }
    return true;
}
