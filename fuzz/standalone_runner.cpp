// Replays fuzz inputs without libFuzzer, so any compiler and the ordinary
// test run can use the checked-in corpus: every file named on the command
// line, and every file in each directory named, goes once through the target.
// Fails when an input can't be read or when there was no input at all.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

bool collect(const fs::path& path, std::vector<fs::path>& files) {
    std::error_code error;
    if (fs::is_directory(path, error)) {
        for (const fs::directory_entry& entry : fs::directory_iterator(path, error))
            if (entry.is_regular_file(error)) files.push_back(entry.path());
        return !error;
    }
    if (!fs::is_regular_file(path, error)) return false;
    files.push_back(path);
    return true;
}

// A buffer of exactly the file's size, so a sanitizer sees any read past it.
bool replay(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad()) return false;
    const auto copy = std::make_unique<std::uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), copy.get());
    LLVMFuzzerTestOneInput(copy.get(), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (!collect(argv[i], files)) {
            std::fprintf(stderr, "cannot read %s\n", argv[i]);
            return 1;
        }
    }
    // The same order on every machine, so a failure shows up the same way.
    std::sort(files.begin(), files.end());
    for (const fs::path& path : files) {
        if (!replay(path)) {
            std::fprintf(stderr, "cannot read %s\n", path.string().c_str());
            return 1;
        }
    }
    if (files.empty()) {
        std::fprintf(stderr, "no inputs to replay\n");
        return 1;
    }
    std::printf("replayed %zu inputs\n", files.size());
    return 0;
}
