// Peak resident set size of one command, in KiB, from wait4.
//
//   peak_rss INPUT OUTPUT COMMAND [ARG...]
//
// The command reads INPUT and writes OUTPUT (standard error goes nowhere).
// The kernel's high-water mark of a process also takes in the memory it had
// before exec, which after a fork is a copy of its parent's: a small parent
// like this one keeps that share negligible, where an interpreter's would not.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 4) return 2;
    const pid_t pid = ::fork();
    if (pid < 0) return 2;
    if (pid == 0) {
        const int in = ::open(argv[1], O_RDONLY);
        const int out = ::open(argv[2], O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const int null = ::open("/dev/null", O_WRONLY);
        if (in < 0 || out < 0 || null < 0) ::_exit(127);
        ::dup2(in, 0);
        ::dup2(out, 1);
        ::dup2(null, 2);
        ::execv(argv[3], argv + 3);
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    if (::wait4(pid, &status, 0, &usage) != pid) return 2;
    std::printf("%ld\n", usage.ru_maxrss);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 2;
}
