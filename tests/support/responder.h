#pragma once
// A scripted DNS server for the end-to-end tests: a UDP socket on port 53 of a
// loopback address of its own, served by a thread. A handler gets each
// query's bytes and gives the datagrams to send back: none, several, any bytes.

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace test_support {

using datagram = std::vector<std::uint8_t>;
using reply_handler = std::function<std::vector<datagram>(const datagram& query)>;

// A loopback address that no responder of this process had before, so that
// a late datagram of one run never reaches the next.
std::string test_loopback_address();

class responder {
public:
    explicit responder(reply_handler handler, std::string address = test_loopback_address());
    ~responder();
    responder(const responder&) = delete;
    responder& operator=(const responder&) = delete;

    bool ready() const { return fd_ >= 0; }  // false when port 53 could not be bound; error() says why
    const std::string& error() const { return error_; }
    const std::string& address() const { return address_; }
    // Every query received so far, in order, once no datagram is left unread.
    std::vector<datagram> queries() const;

private:
    void serve();

    reply_handler handler_;
    std::string address_, error_;
    int fd_ = -1;
    std::atomic<bool> stopping_{false};
    mutable std::mutex mutex_;  // held from a query's read to its replies
    std::vector<datagram> queries_;
    std::thread thread_;
};

inline reply_handler silent() {
    return [](const datagram&) { return std::vector<datagram>{}; };
}

}  // namespace test_support
