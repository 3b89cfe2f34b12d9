#include "support/responder.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace test_support {

namespace {

// The serving thread ends by itself after this much, whatever the test does.
constexpr auto max_lifetime = std::chrono::seconds(120);
constexpr std::size_t max_queries = 1000;

std::uint32_t fnv1a(std::string_view text, std::uint32_t hash = 2166136261u) {
    for (unsigned char c : text) hash = (hash ^ c) * 16777619u;
    return hash;
}

}  // namespace

std::string test_loopback_address(std::string_view salt) {
    std::string name;
    if (const auto* info = ::testing::UnitTest::GetInstance()->current_test_info())
        name = std::string(info->test_suite_name()) + "." + info->name();
    const std::uint32_t h = fnv1a(salt, fnv1a(name));
    // Second byte 1..254 keeps clear of 127.0.0.x; last byte 1..254 of .0 and .255.
    return "127." + std::to_string(1 + h % 254) + "." + std::to_string((h >> 8) % 256) + "." +
           std::to_string(1 + (h >> 16) % 254);
}

responder::responder(reply_handler handler, std::string address)
    : handler_(std::move(handler)), address_(std::move(address)) {
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(53);
    const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_UDP);
    if (::inet_pton(AF_INET, address_.c_str(), &at.sin_addr) != 1)
        error_ = "not an IPv4 address: " + address_;
    else if (fd < 0 || ::bind(fd, reinterpret_cast<const sockaddr*>(&at), sizeof at) != 0)
        error_ = "socket/bind " + address_ + ":53: " + std::strerror(errno);
    if (!error_.empty()) {
        if (fd >= 0) ::close(fd);
        return;
    }
    fd_ = fd;
    thread_ = std::thread([this] { serve(); });
}

responder::~responder() {
    stopping_ = true;
    if (thread_.joinable()) thread_.join();
    if (fd_ >= 0) ::close(fd_);
}

void responder::serve() {
    const auto deadline = std::chrono::steady_clock::now() + max_lifetime;
    datagram buffer(65536);
    while (!stopping_ && std::chrono::steady_clock::now() < deadline) {
        pollfd p{fd_, POLLIN, 0};
        if (::poll(&p, 1, 20) <= 0) continue;
        {  // busy before the read: settle() sees either a pending datagram or busy
            std::lock_guard lock(mutex_);
            if (queries_.size() >= max_queries) break;
            busy_ = true;
        }
        sockaddr_in from{};
        socklen_t from_len = sizeof from;
        const ssize_t got = ::recvfrom(fd_, buffer.data(), buffer.size(), MSG_DONTWAIT,
                                       reinterpret_cast<sockaddr*>(&from), &from_len);
        std::size_t failed = 0;
        datagram query(buffer.begin(), buffer.begin() + std::max<ssize_t>(got, 0));
        for (const datagram& reply : got >= 0 ? handler_(query) : std::vector<datagram>{})
            failed += ::sendto(fd_, reply.data(), reply.size(), 0, reinterpret_cast<const sockaddr*>(&from),
                               from_len) != static_cast<ssize_t>(reply.size());
        std::lock_guard lock(mutex_);
        if (got >= 0) queries_.push_back(std::move(query));
        failed_sends_ += failed;
        busy_ = false;
    }
    std::lock_guard lock(mutex_);
    busy_ = false;
}

void responder::settle() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (fd_ >= 0 && std::chrono::steady_clock::now() < deadline) {
        int pending = 0;
        // The queue first, then busy: the thread marks itself busy before it reads.
        const bool queued = ::ioctl(fd_, FIONREAD, &pending) == 0 && pending > 0;
        {
            std::lock_guard lock(mutex_);
            if (!queued && !busy_) return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

std::vector<datagram> responder::queries() const {
    settle();
    std::lock_guard lock(mutex_);
    return queries_;
}

std::size_t responder::failed_sends() const {
    settle();
    std::lock_guard lock(mutex_);
    return failed_sends_;
}

}  // namespace test_support
