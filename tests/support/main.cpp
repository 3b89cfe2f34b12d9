// The test runner's entry. Before any test runs, the process moves into a
// private network namespace with only loopback up: the responders bind port
// 53 on loopback addresses of their own, and a fault that would send a query
// anywhere else fails on the spot instead of leaving the machine. The
// processes the tests start inherit the namespace.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <sched.h>
#include <string>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    // A program run through a launcher (vexa.exe under Wine) has its sockets
    // where the launcher's server is: the caller puts both into one private
    // network first (scripts/test.sh windows), and this process stays there.
    const char* launcher = std::getenv("VEXA_TEST_LAUNCHER");
    const char* inside = std::getenv("VEXA_IN_PRIVATE_NET");
    bool private_net = inside && std::string(inside) == "1";
    if (!launcher || !*launcher)  // a network namespace of its own needs root
        private_net = ::unshare(CLONE_NEWNET) == 0 && std::system("ip link set lo up") == 0;
    if (!private_net) std::fprintf(stderr, "warning: not in a private network; tests use the host's loopback\n");
    return RUN_ALL_TESTS();
}
