// POSIX sockets behind the seam. The time-out wait uses poll, which has no
// limit on descriptor numbers, and restarts after a signal with the time left.
#include "platform/os.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/clamp.h"

namespace os {

void net_startup() {}
void net_cleanup() {}

socket_handle udp_open() {
    int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_UDP);
    return fd < 0 ? invalid_socket : static_cast<socket_handle>(fd);
}

bool socket_close(socket_handle handle) {
    if (handle == invalid_socket) return true;
    return ::close(static_cast<int>(handle)) == 0;
}

void socket_shutdown_send(socket_handle handle) {
    if (handle != invalid_socket) ::shutdown(static_cast<int>(handle), SHUT_WR);
}

std::uint32_t ipv4_address(const char* text) { return text ? ::inet_addr(text) : INADDR_NONE; }

std::int64_t send_datagram(socket_handle handle, const std::uint8_t* bytes, std::size_t length,
                           std::uint32_t address, std::uint16_t port) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(port);
    to.sin_addr.s_addr = address;
    ssize_t sent;
    do {
        sent = ::sendto(static_cast<int>(handle), bytes, length, 0, reinterpret_cast<const sockaddr*>(&to),
                        sizeof to);
    } while (sent < 0 && errno == EINTR);
    return sent < 0 ? -1 : static_cast<std::int64_t>(sent);
}

bool wait_readable(socket_handle handle, std::uint32_t timeout_secs) {
    using clock = std::chrono::steady_clock;
    const auto deadline = clock::now() + std::chrono::seconds(timeout_secs);
    pollfd p{static_cast<int>(handle), POLLIN, 0};
    for (;;) {
        auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - clock::now());
        const long long ms = left.count() < 0 ? 0 : left.count();
        // A wait longer than poll takes is made in pieces.
        const int piece = clamp_to_int(static_cast<std::uint64_t>(ms));
        const int rc = ::poll(&p, 1, piece);
        if (rc > 0) return (p.revents & (POLLIN | POLLERR)) != 0;
        if (rc == 0 && piece == ms) return false;
        if (rc < 0 && errno != EINTR) return false;
    }
}

std::int64_t receive_datagram(socket_handle handle, std::uint8_t* buffer, std::size_t capacity) {
    sockaddr_in from{};
    socklen_t from_len = sizeof from;
    ssize_t got;
    do {
        got = ::recvfrom(static_cast<int>(handle), buffer, capacity, 0, reinterpret_cast<sockaddr*>(&from),
                         &from_len);
    } while (got < 0 && errno == EINTR);
    return got < 0 ? -1 : static_cast<std::int64_t>(got);
}

}  // namespace os
