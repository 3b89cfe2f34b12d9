#include "support/e2e.h"

#include <cerrno>
#include <csignal>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test_support {

namespace {

// The standard streams are in-memory files: nothing blocks on a full pipe,
// and what the child wrote is all there once it has ended.
int memory_file(std::string_view bytes) {
    const int fd = ::memfd_create("vexa_stream", MFD_CLOEXEC);
    if (fd >= 0 && ::pwrite(fd, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        ::close(fd);
        return -1;
    }
    return fd;
}

std::string contents(int fd) {
    std::string text;
    char chunk[65536];
    for (ssize_t got; fd >= 0 && (got = ::pread(fd, chunk, sizeof chunk, static_cast<off_t>(text.size()))) > 0;)
        text.append(chunk, static_cast<std::size_t>(got));
    if (fd >= 0) ::close(fd);
    return text;
}

}  // namespace

vexa_run run_vexa(const std::vector<std::string>& args, std::string_view input, std::chrono::milliseconds limit) {
    std::vector<std::string> words{VEXA_BINARY};
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    const int fds[3] = {memory_file(input), memory_file({}), memory_file({})};
    const pid_t pid = fds[0] < 0 || fds[1] < 0 || fds[2] < 0 ? -1 : ::fork();
    if (pid == 0) {  // only async-signal-safe calls here: the parent has threads
        for (int i = 0; i < 3; ++i) ::dup2(fds[i], i);
        ::execv(VEXA_BINARY, argv.data());
        ::_exit(127);
    }
    vexa_run run;
    int status = 0;
    pid_t got = 0;
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (pid > 0 && (got = ::waitpid(pid, &status, WNOHANG)) != pid && (got == 0 || errno == EINTR)) {
        if (std::chrono::steady_clock::now() >= deadline && !run.timed_out) run.timed_out = ::kill(pid, SIGKILL) == 0;
        ::usleep(1000);
    }
    if (got == pid && WIFEXITED(status)) run.exit_code = WEXITSTATUS(status);
    if (got == pid && WIFSIGNALED(status)) run.signal = WTERMSIG(status);
    if (fds[0] >= 0) ::close(fds[0]);
    run.out = contents(fds[1]);
    run.err = contents(fds[2]);
    if (pid < 0) run.err = "fork or stream files failed";
    return run;
}

}  // namespace test_support
