// The worst reply a UDP exchange can bring: every query is answered with one
// 65,507-byte datagram (the most a UDP/IPv4 datagram holds) full of answer
// records, each an A record whose owner is a pointer to the question.
//
//   worst_responder ADDRESS [SECONDS]
//
// A first label of digits caps the record count ("1000.worst.test" gets
// 1,000 records in a shorter datagram); any other name gets as many as fit.
// It answers until killed, or after SECONDS (default 600) at the latest.
// "ready" on stdout once it listens.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

constexpr std::size_t most_bytes = 65507;
constexpr std::size_t header_size = 12;
constexpr std::size_t record_size = 16;  // pointer 2, type 2, class 2, TTL 4, length 2, address 4

std::uint8_t reply[most_bytes];

void put16(std::uint8_t* p, unsigned v) {
    p[0] = static_cast<std::uint8_t>(v >> 8);
    p[1] = static_cast<std::uint8_t>(v);
}

void put_record(std::uint8_t* p, unsigned type, unsigned data_length, unsigned n) {
    put16(p, 0xc00c);
    put16(p + 2, type);
    put16(p + 4, 1);
    put16(p + 6, 0);
    put16(p + 8, 3600);
    put16(p + 10, data_length);
    for (unsigned i = 0; i < data_length; ++i) p[12 + i] = static_cast<std::uint8_t>(n >> (8 * (3 - i % 4)));
}

// The record count that the first label asks for; 0 when it is no number.
std::size_t asked_count(const std::uint8_t* query, std::size_t length) {
    if (length <= header_size) return 0;
    const std::size_t label = query[header_size];
    if (label == 0 || label > 9 || header_size + 1 + label > length) return 0;
    std::size_t count = 0;
    for (std::size_t i = 0; i < label; ++i) {
        const std::uint8_t c = query[header_size + 1 + i];
        if (c < '0' || c > '9') return 0;
        count = count * 10 + (c - '0');
    }
    return count;
}

// The reply to `query`: its ID and question, then the records. The length,
// or 0 if the query has no whole question.
std::size_t build_reply(const std::uint8_t* query, std::size_t length) {
    const std::size_t cap = asked_count(query, length);
    std::size_t end = header_size;
    while (end < length && query[end] != 0) end += query[end] + 1u;
    end += 1 + 4;  // the closing zero, type and class
    if (end > length || end > 512) return 0;
    std::memcpy(reply, query, end);
    reply[2] = 0x85;  // QR, AA, RD
    reply[3] = 0x80;  // RA
    put16(reply + 4, 1);
    put16(reply + 8, 0);
    put16(reply + 10, 0);

    const std::size_t room = most_bytes - end;
    std::size_t count = room / record_size;
    std::size_t spare = room % record_size;
    if (cap != 0 && cap < count) {
        count = cap;
        spare = 0;
    }
    std::uint8_t* p = reply + end;
    for (std::size_t n = 0; n < count; ++n) {
        // The last record takes the bytes that no whole A record fills
        // (type NULL), so the datagram is full to its last byte.
        const bool last = n + 1 == count;
        const unsigned data_length = 4 + static_cast<unsigned>(last ? spare : 0);
        put_record(p, last && spare != 0 ? 10 : 1, data_length, static_cast<unsigned>(n));
        p += 12 + data_length;
    }
    put16(reply + 6, static_cast<unsigned>(count));
    return static_cast<std::size_t>(p - reply);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const long seconds = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 600;
    sockaddr_in self{};
    self.sin_family = AF_INET;
    self.sin_port = htons(53);
    if (::inet_pton(AF_INET, argv[1], &self.sin_addr) != 1) return 2;
    const int fd = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&self), sizeof self) != 0) {
        std::perror("worst_responder");
        return 1;
    }
    int size = 1 << 20;
    ::setsockopt(fd, SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
    std::puts("ready");
    std::fflush(stdout);

    const std::time_t stop = std::time(nullptr) + seconds;
    std::uint8_t query[65536];
    while (std::time(nullptr) < stop) {
        pollfd p{fd, POLLIN, 0};
        if (::poll(&p, 1, 1000) <= 0) continue;
        sockaddr_in from{};
        socklen_t from_length = sizeof from;
        const ssize_t got =
            ::recvfrom(fd, query, sizeof query, 0, reinterpret_cast<sockaddr*>(&from), &from_length);
        if (got <= 0) continue;
        const std::size_t length = build_reply(query, static_cast<std::size_t>(got));
        if (length != 0) ::sendto(fd, reply, length, 0, reinterpret_cast<sockaddr*>(&from), from_length);
    }
    ::close(fd);
    return 0;
}
