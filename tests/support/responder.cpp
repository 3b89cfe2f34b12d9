#include "support/responder.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace test_support {

std::string test_loopback_address() {
    static std::atomic<unsigned> made{0};
    const unsigned n = made++;
    return "127.1." + std::to_string(n / 254 % 256) + "." + std::to_string(1 + n % 254);
}

responder::responder(reply_handler handler, std::string address)
    : handler_(std::move(handler)), address_(std::move(address)) {
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(53);
    fd_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (::inet_pton(AF_INET, address_.c_str(), &at.sin_addr) != 1 ||
        ::bind(fd_, reinterpret_cast<const sockaddr*>(&at), sizeof at) != 0) {
        error_ = "bind " + address_ + ":53: " + std::strerror(errno);
        ::close(fd_);
        fd_ = -1;
        return;
    }
    thread_ = std::thread([this] { serve(); });
}

responder::~responder() {
    stopping_ = true;
    if (thread_.joinable()) thread_.join();
    if (fd_ >= 0) ::close(fd_);
}

// Ends by itself after two minutes or a thousand queries, whatever the test does.
void responder::serve() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    datagram buffer(65536);
    while (!stopping_ && std::chrono::steady_clock::now() < deadline) {
        pollfd p{fd_, POLLIN, 0};
        if (::poll(&p, 1, 20) <= 0) continue;
        std::lock_guard lock(mutex_);  // a query is queued or taken, never between
        sockaddr_in from{};
        socklen_t from_len = sizeof from;
        const ssize_t got =
            ::recvfrom(fd_, buffer.data(), buffer.size(), MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&from), &from_len);
        if (got < 0) continue;
        if (queries_.size() >= 1000) break;
        queries_.emplace_back(buffer.begin(), buffer.begin() + got);
        for (const datagram& reply : handler_(queries_.back()))
            ::sendto(fd_, reply.data(), reply.size(), 0, reinterpret_cast<const sockaddr*>(&from), from_len);
    }
}

std::vector<datagram> responder::queries() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    for (int queued = 0;; std::this_thread::sleep_for(std::chrono::milliseconds(1))) {
        std::lock_guard lock(mutex_);
        if (fd_ < 0 || ::ioctl(fd_, FIONREAD, &queued) != 0 || queued == 0 || std::chrono::steady_clock::now() > deadline)
            return queries_;
    }
}

}  // namespace test_support
