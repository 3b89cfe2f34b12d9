#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "support/host.h"

namespace test_support {

void set_env(const char* name, const char* value) {
    if (value) {
        ::setenv(name, value, 1);
    } else {
        ::unsetenv(name);
    }
}

void with_stdin(std::string_view bytes, const std::function<void()>& body) {
    const int saved = ::dup(0), fd = ::memfd_create("stdin", 0);
    EXPECT_EQ(::pwrite(fd, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
    ::dup2(fd, 0), ::close(fd);
    body();
    ::dup2(saved, 0), ::close(saved);
}

std::string full_device() { return "/dev/full"; }

}  // namespace test_support
