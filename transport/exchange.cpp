#include "transport/exchange.h"

#include <utility>

#include "dns/reply_parser.h"
#include "timefmt/time_parts.h"

udp_socket::udp_socket() { os::net_startup(); }

udp_socket::~udp_socket() {
    // Only a socket that close() could not release still needs its send side ended.
    if (handle_ != os::invalid_socket) os::socket_shutdown_send(handle_);
    close();
    os::net_cleanup();
}

bool udp_socket::open() {
    handle_ = os::udp_open();
    return handle_ != os::invalid_socket;
}

bool udp_socket::send_to(const std::uint8_t* bytes, std::size_t length, std::uint32_t address,
                         std::uint16_t port) {
    if (bytes == nullptr || length == 0 || handle_ == os::invalid_socket) return false;
    std::size_t done = 0;
    while (done < length) {
        std::int64_t taken = os::send_datagram(handle_, bytes + done, length - done, address, port);
        // A datagram goes whole or not at all; 0 taken would loop forever.
        if (taken <= 0) return false;
        done += static_cast<std::size_t>(taken);
    }
    return true;
}

std::uint32_t udp_socket::receive_from(std::uint8_t* buffer, std::uint32_t timeout_secs) {
    if (buffer == nullptr || handle_ == os::invalid_socket) return 0;
    if (!os::wait_readable(handle_, timeout_secs)) return 0;
    std::int64_t got = os::receive_datagram(handle_, buffer, receive_buffer_size);
    return got < 0 ? 0 : static_cast<std::uint32_t>(got);
}

bool udp_socket::close() {
    if (handle_ != os::invalid_socket && os::socket_close(handle_)) handle_ = os::invalid_socket;
    return handle_ == os::invalid_socket;
}

bool exchange_query(dns_result& result, dns_entry& query_entry, const std::string& server_text,
                    std::uint32_t timeout_secs) {
    clear_result(result);
    if (query_entry.packet.empty()) return false;

    // Zero-filled, so the header fields of a short reply read as 0 behind its end.
    byte_list buffer(receive_buffer_size, 0);
    {  // the socket lives only while the datagrams travel
        udp_socket socket;
        query_entry.query_time = now_ticks();
        query_entry.dns_server = server_text;
        if (socket.open()) {
            const std::size_t length = query_entry.packet.size();
            const std::uint32_t address = os::ipv4_address(server_text.c_str());
            result.sent_packet = query_entry.packet;
            if (socket.send_to(query_entry.packet.data(), length, address, dns_port)) {
                result.sent_size = static_cast<std::uint32_t>(length);
                result.recv_size = socket.receive_from(buffer.data(), timeout_secs);
            }
        }
        // Closed here, so the destructor has no send side left to shut down.
        socket.close();
    }
    if (result.recv_size == 0) return false;

    // The buffer itself becomes the message that every entry of the reply
    // shares: no copy of the datagram is made.
    buffer.resize(result.recv_size);
    result.recv_packet = shared_packet(std::move(buffer));
    result.recv_time = now_ticks();
    std::uint16_t reply_id = 0;
    std::uint32_t reached =
        parse_reply(server_text, result.recv_time, result.recv_packet, reply_id, result.question_list,
                    result.answer_list, result.authority_list, result.additions_list);
    return reached != 0 && reply_id == query_entry.packet_id;
}
