// The test runner's entry. Before any test runs, the process moves into a
// private network namespace with only loopback up: the responders bind port
// 53 on loopback addresses of their own, and a fault that would send a query
// anywhere else fails on the spot instead of leaving the machine. The
// processes the tests start inherit the namespace.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <net/if.h>
#include <sched.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

// A network namespace of its own (this needs root), with loopback up. Returns why not.
std::string enter_private_network() {
    if (::unshare(CLONE_NEWNET) != 0) return std::string("network namespace: ") + std::strerror(errno);
    const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strncpy(request.ifr_name, "lo", IFNAMSIZ - 1);
    bool up = fd >= 0 && ::ioctl(fd, SIOCGIFFLAGS, &request) == 0;
    request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
    up = up && ::ioctl(fd, SIOCSIFFLAGS, &request) == 0;
    const std::string why = up ? "" : std::string("loopback up: ") + std::strerror(errno);
    if (fd >= 0) ::close(fd);
    return why;
}

}  // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // A program run through a launcher (vexa.exe under Wine) has its sockets
    // where the launcher's server is: the caller puts both into one private
    // network first (scripts/test.sh windows), and this process stays there.
    const char* launcher = std::getenv("VEXA_TEST_LAUNCHER");
    std::string why;
    if (launcher && *launcher) {
        if (const char* inside = std::getenv("VEXA_IN_PRIVATE_NET"); !inside || std::string(inside) != "1")
            why = "VEXA_IN_PRIVATE_NET is not 1";
    } else if (!GTEST_FLAG_GET(list_tests)) {
        why = enter_private_network();
    }
    if (!why.empty())
        std::fprintf(stderr, "warning: not in a private network (%s); tests use the host's loopback\n", why.c_str());
    return RUN_ALL_TESTS();
}
