// vexa: direct questions to one DNS server, answers kept as a record.
// The entry on Windows: the arguments arrive wide and become UTF-8 text.
#include <cwchar>

#include "driver/run.h"
#include "platform/os.h"
#include "platform/text_convert.h"

int wmain(int argc, wchar_t** argv) {
    os::console_begin();
    if (argc < 1) return -1;
    arg_list args;
    args.reserve(static_cast<std::size_t>(argc));
    for (int i = 0; i < argc; ++i)
        args.push_back(argv[i] ? to_utf8(std::u16string(argv[i], argv[i] + std::wcslen(argv[i])))
                               : std::string());
    const int code = run_tool(args);
    os::console_end();
    return code;
}
