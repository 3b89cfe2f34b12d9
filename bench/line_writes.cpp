// What one report line costs on standard output by itself: the time spent
// in write for a line of a row's length, written the way the tool writes
// them in list mode: a few lines at a time, with a pause of about one
// loopback round trip between the groups, so that a reader on the other
// end of a pipe has emptied it and gone back to waiting each time.
//
//   line_writes [GROUPS] [LINES] [PAUSE_US]     (10000 3 50)
//
// Standard output is the stream measured, so the microseconds per write
// are printed on standard error.
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

double now_us() {
    timespec t{};
    ::clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<double>(t.tv_sec) * 1e6 + static_cast<double>(t.tv_nsec) / 1e3;
}

// The pause watches the clock rather than sleeping, so that only the
// writes and what they wake take part.
void pause_us(double length) {
    const double until = now_us() + length;
    while (now_us() < until) {}
}

}  // namespace

int main(int argc, char** argv) {
    const long groups = argc > 1 ? std::atol(argv[1]) : 10000;
    const long lines = argc > 2 ? std::atol(argv[2]) : 3;
    const double pause = argc > 3 ? std::atof(argv[3]) : 50;
    if (groups <= 0 || lines <= 0 || pause < 0) return 2;
    char line[180];
    std::memset(line, 'x', sizeof line);
    line[sizeof line - 2] = '\r';
    line[sizeof line - 1] = '\n';
    double in_write = 0;
    for (long g = 0; g < groups; ++g) {
        pause_us(pause);
        const double start = now_us();
        for (long l = 0; l < lines; ++l)
            if (::write(1, line, sizeof line) != static_cast<ssize_t>(sizeof line)) return 1;
        in_write += now_us() - start;
    }
    std::fprintf(stderr, "%.2f\n", in_write / static_cast<double>(groups * lines));
    return 0;
}
