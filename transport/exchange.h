#pragma once
// One attempt: one datagram out to port 53, at most one datagram in, decoded.

#include <cstddef>
#include <cstdint>
#include <string>

#include "dns/dns_entry.h"
#include "dns/dns_result.h"
#include "platform/os.h"

inline constexpr std::uint16_t dns_port = 53;
inline constexpr std::size_t receive_buffer_size = 65536;

// A socket made new for every attempt and closed at its end.
class udp_socket {
public:
    udp_socket();
    ~udp_socket();
    udp_socket(const udp_socket&) = delete;
    udp_socket& operator=(const udp_socket&) = delete;

    bool open();
    // True when every byte was accepted.
    bool send_to(const std::uint8_t* bytes, std::size_t length, std::uint32_t address, std::uint16_t port);
    // Waits for one datagram and reads it: its length, 0 for anything that brought no data.
    std::uint32_t receive_from(std::uint8_t* buffer, std::uint32_t timeout_secs);
    bool close();

private:
    os::socket_handle handle_ = os::invalid_socket;
};

// True only when a reply came, decoded without fault and carries the query's
// ID. The entries of the reply and the query hold a view of `server_text`,
// which must outlive them.
bool exchange_query(dns_result& result, dns_entry& query_entry, const std::string& server_text,
                    std::uint32_t timeout_secs);
