// vexa: direct questions to one DNS server, answers kept as a record.
// The entry on POSIX systems: the arguments are UTF-8 bytes already, copied.
#include "driver/run.h"
#include "platform/os.h"

int main(int argc, char** argv) {
    if (argc < 1) return 255;
    os::console_begin();
    arg_list args;
    args.reserve(static_cast<std::size_t>(argc));
    for (int i = 0; i < argc; ++i) args.emplace_back(argv[i] ? argv[i] : "");
    int code = run_tool(args);
    os::console_end();
    return code;
}
