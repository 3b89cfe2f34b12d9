#include "report/try_dump.h"

#include <string_view>

#include "report/hex_dump.h"

namespace {

constexpr std::string_view divider =
    "-------------------------------------------------------------------------------";

void write_line(uni::output_stream& out, std::string_view text) {
    out.write(text);
    out.end_line();
}

}  // namespace

// A try that sent nothing shows two dividers only. The received packet has
// no empty line of its own: the divider follows its rows.
void dump_try(uni::output_stream& out, const dns_result& result) {
    out.end_line();
    write_line(out, divider);
    if (result.sent_size != 0) {
        write_line(out, "packet that was sent");
        dump_packet(result.sent_packet.bytes(), out);
        out.end_line();
    }
    if (result.recv_size != 0) {
        write_line(out, "packet that was recv'd");
        dump_packet(result.recv_packet.bytes(), out);
    }
    write_line(out, divider);
    out.end_line();
}
