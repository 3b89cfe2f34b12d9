#include "support/run_tool.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef VEXA_BINARY
#error "VEXA_BINARY must name the built vexa executable"
#endif

namespace test_support {

namespace {

struct pipe_pair {
    int read_end = -1;
    int write_end = -1;
    bool open() {
        int fds[2];
        if (::pipe2(fds, O_CLOEXEC) != 0) return false;
        read_end = fds[0];
        write_end = fds[1];
        return true;
    }
};

void close_fd(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
}

// Only async-signal-safe calls between fork and exec: the parent has threads.
[[noreturn]] void exec_child(const pipe_pair& in, const pipe_pair& out, const pipe_pair& err,
                             char* const* argv) {
    ::dup2(in.read_end, 0);
    ::dup2(out.write_end, 1);
    ::dup2(err.write_end, 2);
    ::signal(SIGPIPE, SIG_DFL);  // the parent ignores it; an ignored signal survives exec
    ::execv(VEXA_BINARY, argv);
    ::_exit(127);
}

bool read_into(int& fd, std::string& text) {
    char chunk[65536];
    ssize_t got = ::read(fd, chunk, sizeof chunk);
    if (got > 0) {
        text.append(chunk, static_cast<std::size_t>(got));
        return true;
    }
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) return true;
    close_fd(fd);
    return false;
}

}  // namespace

vexa_run run_vexa(const std::vector<std::string>& args, std::string_view input,
                  std::chrono::milliseconds limit) {
    vexa_run run;
    // A child that stops reading its input must not kill the test process.
    ::signal(SIGPIPE, SIG_IGN);

    std::vector<std::string> words;
    words.reserve(args.size() + 1);
    words.emplace_back(VEXA_BINARY);
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    pipe_pair in, out, err;
    if (!in.open() || !out.open() || !err.open()) {
        run.err = "pipe failed";
        return run;
    }
    const pid_t pid = ::fork();
    if (pid == 0) exec_child(in, out, err, argv.data());
    close_fd(in.read_end);
    close_fd(out.write_end);
    close_fd(err.write_end);
    if (pid < 0) {
        close_fd(in.write_end);
        close_fd(out.read_end);
        close_fd(err.read_end);
        run.err = "fork failed";
        return run;
    }
    ::fcntl(in.write_end, F_SETFL, O_NONBLOCK);
    if (input.empty()) close_fd(in.write_end);

    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::size_t written = 0;
    while (out.read_end >= 0 || err.read_end >= 0) {
        auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            run.timed_out = true;
            ::kill(pid, SIGKILL);
            break;
        }
        pollfd fds[3] = {{out.read_end, POLLIN, 0}, {err.read_end, POLLIN, 0},
                         {in.write_end, POLLOUT, 0}};
        if (::poll(fds, 3, static_cast<int>(left.count())) < 0 && errno != EINTR) break;
        if (fds[0].revents) read_into(out.read_end, run.out);
        if (fds[1].revents) read_into(err.read_end, run.err);
        if (in.write_end >= 0 && fds[2].revents) {
            ssize_t put = ::write(in.write_end, input.data() + written, input.size() - written);
            if (put > 0) written += static_cast<std::size_t>(put);
            if ((put < 0 && errno != EAGAIN && errno != EINTR) || written == input.size())
                close_fd(in.write_end);
        }
    }
    close_fd(in.write_end);
    close_fd(out.read_end);
    close_fd(err.read_end);

    // A child that closed its streams early still gets no more than the limit.
    int status = 0;
    bool reaped = false;
    for (;;) {
        pid_t done = ::waitpid(pid, &status, WNOHANG);
        reaped = done == pid;
        if (reaped || (done < 0 && errno != EINTR)) break;
        if (done == 0 && std::chrono::steady_clock::now() >= deadline && !run.timed_out) {
            run.timed_out = true;
            ::kill(pid, SIGKILL);
        }
        if (done == 0) ::usleep(1000);
    }
    if (reaped && WIFEXITED(status)) run.exit_code = WEXITSTATUS(status);
    if (reaped && WIFSIGNALED(status)) run.signal = WTERMSIG(status);
    return run;
}

}  // namespace test_support
