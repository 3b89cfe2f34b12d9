#include "support/e2e.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test_support {

namespace {

std::string from_environment(const char* name, const char* otherwise = "") {
    const char* value = std::getenv(name);
    return value && *value ? value : otherwise;
}

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

// Every LF preceded by a CR, as text mode writes it; the CRs of those pairs go.
testing::AssertionResult from_text_mode(std::string& text) {
    std::ptrdiff_t pairs = 0;
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos; ++pairs) text.erase(at, 1);
    if (pairs == std::count(text.begin(), text.end(), '\n')) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "a LF without CR in text mode:\n" << text;
}

}  // namespace

int spawn(const std::vector<std::string>& words, const int fds[3]) {
    std::vector<std::string> copy = words;
    std::vector<char*> argv;
    for (std::string& word : copy) argv.push_back(word.data());
    argv.push_back(nullptr);
    const pid_t pid = ::fork();
    if (pid == 0) {  // only async-signal-safe calls here: the parent has threads
        for (int i = 0; i < 3; ++i)
            if (fds[i] >= 0) ::dup2(fds[i], i);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    return pid;
}

const target_program& target() {
    static const target_program program = [] {
        target_program t{from_environment("VEXA_TEST_PROGRAM", VEXA_BINARY), from_environment("VEXA_TEST_LAUNCHER"),
                         from_environment("VEXA_TEST_HELPER"), false};
        t.windows = t.program.ends_with(".exe");
        return t;
    }();
    return program;
}

// The launcher, a path, may bring its own options (/usr/bin/qemu-aarch64 -L /usr/aarch64-linux-gnu):
// words split at blanks.
std::vector<std::string> command_for(const std::vector<std::string>& args, const std::string& program) {
    std::vector<std::string> words;
    const std::string& launcher = target().launcher;
    for (std::size_t at = 0; (at = launcher.find_first_not_of(' ', at)) != std::string::npos;) {
        const std::size_t end = std::min(launcher.find(' ', at), launcher.size());
        words.push_back(launcher.substr(at, end - at));
        at = end;
    }
    words.push_back(program);
    words.insert(words.end(), args.begin(), args.end());
    return words;
}

std::string on_drive_z(const std::filesystem::path& path) {
    std::string text = "Z:" + path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

// Wine hands a Windows program its own path as a DOS path of drive Z:, the root.
std::string program_seen() {
    const std::filesystem::path& program = target().program;
    return target().windows ? on_drive_z(std::filesystem::absolute(program).lexically_normal()) : target().program;
}

vexa_run run_vexa(const std::vector<std::string>& args, std::string_view input, std::chrono::milliseconds limit) {
    const int fds[3] = {memory_file(input), memory_file({}), memory_file({})};
    const pid_t pid = fds[0] < 0 || fds[1] < 0 || fds[2] < 0 ? -1 : spawn(command_for(args), fds);
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
    if (target().windows) { EXPECT_TRUE(from_text_mode(run.err)); }
    if (pid < 0) run.err = "fork or stream files failed";
    return run;
}

bool read_until(int fd, std::string& got, const std::string& text) {
    char chunk[4096];
    for (pollfd p{fd, POLLIN, 0}; text.empty() || got.find(text) == std::string::npos;) {
        const ssize_t n = ::poll(&p, 1, 10000) == 1 ? ::read(fd, chunk, sizeof chunk) : -1;
        if (n <= 0) return n == 0 && text.empty();
        got.append(chunk, static_cast<std::size_t>(n));
    }
    return true;
}

int run_helper(const std::vector<std::string>& args) {
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    const int fds[3] = {null, null, null};
    const pid_t pid = spawn(command_for(args, target().helper), fds);
    if (null >= 0) ::close(null);
    int status = 0;
    if (pid <= 0 || ::waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

event_watch::event_watch(std::string name) : name_(std::move(name)) {
    if (!target().windows) {
        ::sem_unlink(("/" + name_).c_str());
        return;
    }
    int in[2], out[2];
    if (::pipe2(in, O_CLOEXEC) != 0) return;
    if (::pipe2(out, O_CLOEXEC) != 0) {
        ::close(in[0]), ::close(in[1]);
        return;
    }
    const int fds[3] = {in[0], out[1], -1};
    pid_ = spawn(command_for({"event", name_}, target().helper), fds);
    ::close(in[0]), ::close(out[1]);
    to_probe_ = in[1];
    // It holds the event once it says so.
    std::string said;
    EXPECT_TRUE(read_until(out[0], said, "ready")) << "the test helper " << target().helper << " did not start";
    ::close(out[0]);
}

bool event_watch::was_set() {
    if (!target().windows) {
        sem_t* sem = ::sem_open(("/" + name_).c_str(), 0);
        const bool set = sem != SEM_FAILED && ::sem_trywait(sem) == 0;
        if (sem != SEM_FAILED) ::sem_close(sem);
        ::sem_unlink(("/" + name_).c_str());
        return set;
    }
    if (to_probe_ >= 0) ::close(to_probe_), to_probe_ = -1;
    int status = 0;
    const bool ended = pid_ > 0 && ::waitpid(pid_, &status, 0) == pid_;
    pid_ = -1;
    return ended && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

event_watch::~event_watch() {
    if (pid_ > 0) was_set();
}

}  // namespace test_support
