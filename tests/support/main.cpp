// The test runner's entry. Before any test runs, the process moves into a
// private network namespace with only loopback up: the end-to-end tests bind
// port 53 on loopback addresses of their own, and a fault that would send a
// query anywhere else fails on the spot instead of leaving the machine. The
// vexa processes the tests start inherit the namespace.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "support/netns.h"

namespace {

bool in_private_network = false;

bool write_file(const char* path, const std::string& text) {
    int fd = ::open(path, O_WRONLY | O_CLOEXEC);
    if (fd < 0) return false;
    bool ok = ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::close(fd);
    return ok;
}

// As root a plain new network namespace. Otherwise first a user namespace in
// which this user is root, so that loopback can be brought up and port 53
// bound; a failure there leaves the host's network in place.
bool enter_private_network(std::string& why) {
    if (::geteuid() != 0) {
        const uid_t uid = ::geteuid();
        const gid_t gid = ::getegid();
        if (::unshare(CLONE_NEWUSER) != 0) {
            why = std::string("user namespace: ") + std::strerror(errno);
            return false;
        }
        write_file("/proc/self/setgroups", "deny");  // absent on old kernels: not needed there
        if (!write_file("/proc/self/uid_map", "0 " + std::to_string(uid) + " 1\n") ||
            !write_file("/proc/self/gid_map", "0 " + std::to_string(gid) + " 1\n")) {
            why = std::string("uid/gid map: ") + std::strerror(errno);
            return false;
        }
    }
    if (::unshare(CLONE_NEWNET) != 0) {
        why = std::string("network namespace: ") + std::strerror(errno);
        return false;
    }
    return true;
}

bool bring_loopback_up(std::string& why) {
    int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        why = std::string("socket: ") + std::strerror(errno);
        return false;
    }
    ifreq request{};
    std::strncpy(request.ifr_name, "lo", IFNAMSIZ - 1);
    bool ok = ::ioctl(fd, SIOCGIFFLAGS, &request) == 0;
    if (ok) {
        request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
        ok = ::ioctl(fd, SIOCSIFFLAGS, &request) == 0;
    }
    if (!ok) why = std::string("loopback up: ") + std::strerror(errno);
    ::close(fd);
    return ok;
}

}  // namespace

bool test_support::private_network() { return in_private_network; }

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!GTEST_FLAG_GET(list_tests)) {
        std::string why;
        if (!enter_private_network(why))
            std::fprintf(stderr,
                         "warning: no private network namespace (%s); tests use the host's "
                         "loopback, and binding port 53 needs root\n",
                         why.c_str());
        else if (!bring_loopback_up(why))
            std::fprintf(stderr, "warning: private network namespace without loopback (%s)\n",
                         why.c_str());
        else
            in_private_network = true;
    }
    return RUN_ALL_TESTS();
}
