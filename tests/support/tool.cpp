#include "support/tool.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <semaphore.h>
#include <sstream>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test_support {

namespace {

// The standard streams are in-memory files: nothing blocks on a full pipe,
// and what the child wrote is all there once it has ended.
int memory_file(std::string_view bytes) {
    const int fd = ::memfd_create("vexa_stream", MFD_CLOEXEC);
    return fd >= 0 && ::pwrite(fd, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()) ? fd : -1;
}

std::string contents(int fd) {
    std::string text(fd < 0 ? 0 : static_cast<std::size_t>(::lseek(fd, 0, SEEK_END)), '\0');
    if (fd >= 0 && ::pread(fd, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) text.clear();
    if (fd >= 0) ::close(fd);
    return text;
}

// Text mode writes every LF as CR LF; the CRs of those pairs go.
testing::AssertionResult from_text_mode(std::string& text) {
    std::ptrdiff_t pairs = 0;
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos; ++pairs) text.erase(at, 1);
    if (pairs == std::count(text.begin(), text.end(), '\n')) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "a LF without CR in text mode:\n" << text;
}

}  // namespace

const target_program& target() {
    static const target_program program = [] {
        const auto given = [](const char* name, const char* otherwise = "") {
            const char* value = std::getenv(name);
            return std::string(value && *value ? value : otherwise);
        };
        target_program t{given("VEXA_TEST_PROGRAM", VEXA_BINARY), given("VEXA_TEST_LAUNCHER"), given("VEXA_TEST_HELPER")};
        t.windows = t.program.ends_with(".exe");
        return t;
    }();
    return program;
}

// The launcher, a path, may bring its own options (qemu-aarch64 -L <root>): words split at blanks.
std::vector<std::string> command_for(const std::vector<std::string>& args, const std::string& program) {
    std::vector<std::string> words;
    std::istringstream launcher(target().launcher);
    for (std::string word; launcher >> word;) words.push_back(word);
    words.push_back(program);
    words.insert(words.end(), args.begin(), args.end());
    return words;
}

int spawn(const std::vector<std::string>& words, const int fds[3]) {
    std::vector<std::string> copy = words;
    std::vector<char*> argv;
    for (std::string& word : copy) argv.push_back(word.data());
    argv.push_back(nullptr);
    const pid_t parent = ::getpid();
    const pid_t pid = ::fork();
    if (pid == 0) {  // only async-signal-safe calls here: the parent has threads
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (int i = 0; i < 3; ++i)
            if (fds[i] >= 0) ::dup2(fds[i], i);
        if (::getppid() == parent) ::execvp(argv[0], argv.data());
        ::_exit(127);
    }
    return pid;
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

std::string read_file(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string on_drive_z(const std::filesystem::path& path) {
    std::string text = "Z:" + path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

std::string program_seen() {
    const std::filesystem::path& program = target().program;
    return target().windows ? on_drive_z(std::filesystem::absolute(program).lexically_normal()) : target().program;
}

event_watch::event_watch(std::string name) : name_(std::move(name)) {
    if (!target().windows) {
        ::sem_unlink(("/" + name_).c_str());
        return;
    }
    int in[2], out[2];
    if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0) return;
    const int fds[3] = {in[0], out[1], -1};
    pid_ = spawn(command_for({name_}, target().helper), fds);
    ::close(in[0]), ::close(out[1]);
    to_helper_ = in[1];
    std::string said;  // it holds the event once it says so
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
    if (to_helper_ >= 0) ::close(to_helper_), to_helper_ = -1;  // its standard input ends: it answers
    int status = 0;
    const bool ended = pid_ > 0 && ::waitpid(pid_, &status, 0) == pid_;
    pid_ = -1;
    return ended && WIFEXITED(status) && WEXITSTATUS(status) == 0;
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
    run.err = pid < 0 ? "fork or stream files failed" : contents(fds[2]);
    if (target().windows) { EXPECT_TRUE(from_text_mode(run.err)); }
    return run;
}

e2e_run run_against(const responder& server, std::vector<std::string> args, std::string_view input) {
    EXPECT_TRUE(server.ready()) << server.error();
    const bool csv = std::find(args.begin(), args.end(), "-csv") != args.end();
    args.insert(args.end(), {"-server", server.address()});
    e2e_run result{run_vexa(args, input), server.queries(), {}};
    EXPECT_FALSE(result.run.timed_out);
    EXPECT_EQ(result.run.signal, 0) << result.run.err;
    EXPECT_TRUE(lines_end_in_crlf(result.run.out));
    result.body = mask_date_time(report_body(result.run.out), csv ? "," : " | ");
    return result;
}

datagram with_id(const datagram& query, const datagram& rest) {
    datagram reply(query.begin(), query.begin() + std::min<std::size_t>(query.size(), 2));
    reply.insert(reply.end(), rest.begin(), rest.end());
    return reply;
}

reply_handler answer(datagram rest) {
    return [rest = std::move(rest)](const datagram& q) { return std::vector<datagram>{with_id(q, rest)}; };
}

std::string seen(const responder& server) {
    std::string text;
    for (const datagram& q : server.queries()) {
        std::string name;
        std::size_t at = 12;
        for (; at < q.size() && q[at] != 0; at += 1 + q[at])
            name.append(name.empty() ? "" : ".")
                .append(q.begin() + at + 1, q.begin() + std::min<std::size_t>(q.size(), at + 1 + q[at]));
        const unsigned type = at + 2 < q.size() ? (q[at + 1] << 8 | q[at + 2]) : 0;
        text += (text.empty() ? "" : " ") + name + "/" + std::to_string(type);
    }
    return text;
}

std::uint16_t id_of(const datagram& query) {
    return query.size() < 2 ? 0 : static_cast<std::uint16_t>(query[0] | (query[1] << 8));
}

std::string_view report_body(std::string_view out) {
    for (std::string_view blank : {"\r\n\r\n", "\n\n"})
        if (const std::size_t at = out.find(blank); at != std::string_view::npos) return out.substr(at + blank.size());
    return out;
}

std::vector<std::string> lines_of(std::string_view body) {
    std::vector<std::string> lines;
    while (!body.empty()) {
        const std::size_t end = std::min(body.find("\r\n"), body.size());
        lines.emplace_back(body.substr(0, end));
        body.remove_prefix(std::min(body.size(), end + 2));
    }
    return lines;
}

std::vector<std::string_view> cells_of(std::string_view line, std::string_view separator) {
    std::vector<std::string_view> cells;
    for (std::size_t at; cells.size() < 12 && (at = line.find(separator)) != std::string_view::npos;
         line.remove_prefix(at + separator.size()))
        cells.push_back(line.substr(0, at));
    cells.push_back(line);
    if (cells.size() < 13 || cells[1].find("comment") != std::string_view::npos) return {};
    return cells;
}

std::string mask_date_time(std::string_view report, std::string_view separator) {
    std::string masked(report);
    std::size_t line_at = 0;
    for (const std::string& line : lines_of(report)) {
        if (const auto cells = cells_of(line, separator); !cells.empty()) {
            const std::size_t from = line_at + (cells[5].data() - line.data()),
                              to = line_at + (cells[6].data() + cells[6].size() - line.data());
            for (std::size_t i = from; i < to; ++i)
                if (std::isalnum(static_cast<unsigned char>(masked[i]))) masked[i] = '#';
        }
        line_at += line.size() + 2;
    }
    return masked;
}

testing::AssertionResult lines_end_in_crlf(std::string_view text) {
    std::size_t cr = 0, lf = 0, crlf = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        cr += text[i] == '\r', lf += text[i] == '\n', crlf += text.substr(i, 2) == "\r\n";
    if (cr == crlf && lf == crlf && (text.empty() || text.ends_with('\n'))) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "lines not all ending in CR LF:\n" << text;
}

std::string expand(std::string_view text, std::uint16_t id, std::string_view server) {
    char id4[8], id1[8], xx[4];
    std::snprintf(id4, sizeof id4, "%04x", id);
    std::snprintf(id1, sizeof id1, "%x", id);
    std::snprintf(xx, sizeof xx, "%02x", id & 0xFF);
    std::string header = "DNSserv";
    header.resize(std::max(header.size(), server.size()), ' ');
    const char shown = (id & 0xFF) >= 32 && (id & 0xFF) <= 126 ? static_cast<char>(id & 0xFF) : '.';
    const std::pair<std::string_view, std::string> fills[] = {
        {"\n", "\r\n"}, {"{id4}", id4}, {"{id}", id1}, {"{xx}", xx}, {"{c}", std::string(1, shown)},
        {"{srvhdr}", header}, {"{srv}", std::string(server)}};
    std::string out(text);
    for (const auto& [from, to] : fills)
        for (std::size_t at = 0; (at = out.find(from, at)) != std::string::npos; at += to.size())
            out.replace(at, from.size(), to);
    return out;
}

}  // namespace test_support
