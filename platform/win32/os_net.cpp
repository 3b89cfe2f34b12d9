// Winsock 2.2 behind the seam: started and released around each attempt.
#include "platform/win32/win32.h"

#include "platform/clamp.h"
#include "platform/os.h"

namespace os {

namespace {
SOCKET as_socket(socket_handle handle) { return static_cast<SOCKET>(handle); }
}  // namespace

void net_startup() {
    WSADATA data;
    WSAStartup(0x0202, &data);
}

void net_cleanup() { WSACleanup(); }

socket_handle udp_open() {
    const SOCKET handle = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    return handle == INVALID_SOCKET ? invalid_socket : static_cast<socket_handle>(handle);
}

bool socket_close(socket_handle handle) {
    if (handle == invalid_socket) return true;
    return ::closesocket(as_socket(handle)) == 0;
}

void socket_shutdown_send(socket_handle handle) {
    if (handle != invalid_socket) ::shutdown(as_socket(handle), SD_SEND);
}

std::uint32_t ipv4_address(const char* text) { return text ? ::inet_addr(text) : INADDR_NONE; }

std::int64_t send_datagram(socket_handle handle, const std::uint8_t* bytes, std::size_t length,
                           std::uint32_t address, std::uint16_t port) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = ::htons(port);
    to.sin_addr.s_addr = address;
    const int sent = ::sendto(as_socket(handle), reinterpret_cast<const char*>(bytes), clamp_to_int(length),
                              0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
    return sent == SOCKET_ERROR ? -1 : sent;
}

// One select with the whole time-out, then FD_ISSET: readable or not.
bool wait_readable(socket_handle handle, std::uint32_t timeout_secs) {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(as_socket(handle), &readable);
    timeval wait{clamp_to_int(timeout_secs), 0};
    // A failed select leaves the set as it was: that is no reply.
    if (::select(static_cast<int>(handle) + 1, &readable, nullptr, nullptr, &wait) == SOCKET_ERROR)
        return false;
    return FD_ISSET(as_socket(handle), &readable) != 0;
}

std::int64_t receive_datagram(socket_handle handle, std::uint8_t* buffer, std::size_t capacity) {
    sockaddr_in from{};
    int from_length = sizeof from;
    const int got = ::recvfrom(as_socket(handle), reinterpret_cast<char*>(buffer), clamp_to_int(capacity), 0,
                               reinterpret_cast<sockaddr*>(&from), &from_length);
    return got == SOCKET_ERROR ? -1 : got;
}

}  // namespace os
