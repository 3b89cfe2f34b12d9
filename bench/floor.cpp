// The floor: what a sequential tool with a new socket per query cannot avoid.
// For each name it builds an A query, opens a new UDP socket, sends it to
// port 53, waits with select for one second at most, receives into a zeroed
// 65,536-byte buffer and closes the socket. It writes nothing.
//
//   floor ADDRESS [NAME...]     the names given, or else one per line of stdin
//
// Exit code 0 when every query got a reply, 1 when some did not, 2 on misuse.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t receive_size = 65536;
constexpr std::size_t line_chunk = 65536;

unsigned next_id = 1;

// Header, QNAME, type A, class IN. 0 when the name can't be encoded.
std::size_t build_query(const char* name, std::size_t length, std::uint8_t* out) {
    const std::uint16_t id = static_cast<std::uint16_t>(next_id++);
    const std::uint8_t header[12] = {
        static_cast<std::uint8_t>(id), static_cast<std::uint8_t>(id >> 8), 0x01, 0, 0, 1, 0, 0, 0, 0, 0, 0};
    std::memcpy(out, header, sizeof header);
    std::size_t used = sizeof header;
    std::size_t start = 0;
    while (start <= length) {
        std::size_t dot = start;
        while (dot < length && name[dot] != '.') ++dot;
        const std::size_t label = dot - start;
        if (label > 63) return 0;
        if (label > 0) {
            out[used++] = static_cast<std::uint8_t>(label);
            std::memcpy(out + used, name + start, label);
            used += label;
        }
        start = dot + 1;
    }
    if (used == sizeof header || used > 12 + 255) return 0;
    const std::uint8_t tail[5] = {0, 0, 1, 0, 1};
    std::memcpy(out + used, tail, sizeof tail);
    return used + sizeof tail;
}

// One exchange. True when a datagram came back.
bool query_once(const sockaddr_in& server, const char* name, std::size_t length) {
    std::uint8_t query[12 + 256 + 5];
    const std::size_t size = build_query(name, length, query);
    if (size == 0) return true;  // nothing to send, as the tool would skip it
    // Zeroed by hand: calloc may skip the clearing of fresh pages.
    auto* buffer = static_cast<std::uint8_t*>(std::malloc(receive_size));
    if (buffer != nullptr) ::explicit_bzero(buffer, receive_size);
    bool got = false;
    const int fd = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    if (fd >= 0 && buffer != nullptr) {
        if (::sendto(fd, query, size, 0, reinterpret_cast<const sockaddr*>(&server), sizeof server) > 0) {
            fd_set readable;
            FD_ZERO(&readable);
            FD_SET(fd, &readable);
            timeval wait{1, 0};
            if (::select(fd + 1, &readable, nullptr, nullptr, &wait) > 0) {
                sockaddr_in from{};
                socklen_t from_length = sizeof from;
                got = ::recvfrom(fd, buffer, receive_size, 0, reinterpret_cast<sockaddr*>(&from),
                                 &from_length) > 0;
            }
        }
    }
    if (fd >= 0) ::close(fd);
    std::free(buffer);
    return got;
}

// Lines of stdin, read in chunks as the tool reads them; CR LF or LF.
int query_stdin(const sockaddr_in& server) {
    static char chunk[line_chunk];
    static char line[line_chunk];
    std::size_t line_used = 0;
    int missed = 0;
    auto finish_line = [&] {
        while (line_used > 0 && line[line_used - 1] == '\r') --line_used;
        if (line_used > 0 && !query_once(server, line, line_used)) ++missed;
        line_used = 0;
    };
    for (;;) {
        const ssize_t got = ::read(0, chunk, sizeof chunk);
        if (got <= 0) break;
        for (ssize_t i = 0; i < got; ++i) {
            if (chunk[i] == '\n')
                finish_line();
            else if (line_used < sizeof line)
                line[line_used++] = chunk[i];
        }
    }
    finish_line();
    return missed;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(53);
    if (::inet_pton(AF_INET, argv[1], &server.sin_addr) != 1) return 2;
    int missed = 0;
    if (argc > 2) {
        for (int i = 2; i < argc; ++i)
            if (!query_once(server, argv[i], std::strlen(argv[i]))) ++missed;
    } else {
        missed = query_stdin(server);
    }
    return missed == 0 ? 0 : 1;
}
