#include "platform/os.h"

#include <cerrno>
#include <ctime>

namespace os {

void clock_now(std::uint64_t& unix_seconds, std::uint32_t& milliseconds) {
    timespec ts{};
    ::clock_gettime(CLOCK_REALTIME, &ts);
    unix_seconds = static_cast<std::uint64_t>(ts.tv_sec);
    milliseconds = static_cast<std::uint32_t>(ts.tv_nsec / 1000000);
}

void clock_precise(std::uint64_t& unix_seconds, std::uint32_t& nanoseconds) {
    timespec ts{};
    ::clock_gettime(CLOCK_REALTIME, &ts);
    unix_seconds = static_cast<std::uint64_t>(ts.tv_sec);
    nanoseconds = static_cast<std::uint32_t>(ts.tv_nsec);
}

void sleep_ms(std::uint32_t milliseconds) {
    timespec left{static_cast<time_t>(milliseconds / 1000),
                  static_cast<long>(milliseconds % 1000) * 1000000L};
    while (::nanosleep(&left, &left) != 0 && errno == EINTR) {}
}

}  // namespace os
