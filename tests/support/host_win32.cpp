#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <io.h>
#include <process.h>
#include <stdlib.h>

#include "platform/text_convert.h"
#include "support/host.h"

namespace test_support {

namespace {
std::wstring wide(std::string_view text) {
    const std::u16string converted = to_wide(text);
    return std::wstring(converted.begin(), converted.end());
}
}  // namespace

// Through the wide environment, which is the one the tool reads.
void set_env(const char* name, const char* value) {
    ::_wputenv_s(wide(name).c_str(), wide(value ? value : "").c_str());
}

void with_stdin(std::string_view bytes, const std::function<void()>& body) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("vexa_stdin_" + std::to_string(::_getpid()));
    if (std::FILE* f = ::_wfopen(file.c_str(), L"wb")) {
        EXPECT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), f), bytes.size());
        std::fclose(f);
    }
    const int saved = ::_dup(0), fd = ::_wopen(file.c_str(), _O_RDONLY | _O_BINARY);
    EXPECT_GE(fd, 0);
    ::_dup2(fd, 0), ::_close(fd);
    body();
    ::_dup2(saved, 0), ::_close(saved);
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
}

// Windows has no device that takes an open and refuses the writes.
std::string full_device() { return {}; }

}  // namespace test_support
