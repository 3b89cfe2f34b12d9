// The results file's stream; replacing a file, its CR LF and the diagnostics file are the end-to-end tests'.
#include "platform/fileio.h"

#include "report/fileio_output.h"
#include "support/fixtures.h"
#include "support/host.h"

namespace {

constexpr std::size_t block = uni::fileio_output::block_size;

TEST(Fileio, ResultsStreamWritesWholeBlocks) {
    // A report that exactly fills the buffer may go out at its last byte or at the close, but never in part.
    for (std::size_t total : {block - 1, block, block + 1}) {
        test_support::temp_dir dir;
        uni::fileio results;
        ASSERT_TRUE(results.open_results(dir / "r.txt", true));
        results.make_stream()->fill('f', total);
        const auto size_open = std::filesystem::file_size(dir / "r.txt");
        EXPECT_TRUE(size_open == (total < block ? 0 : block) || (total == block && size_open == 0)) << total;
        results.close();
        std::string bytes;
        EXPECT_TRUE(read_all(bytes, dir / "r.txt") && bytes == std::string(total, 'f')) << total;
        EXPECT_TRUE(results.known_size() == static_cast<std::int64_t>(total) && !results.is_open());
    }
    const std::string device = test_support::full_device();
    if (device.empty()) return;
    uni::fileio full;  // a device that refuses writes
    ASSERT_TRUE(full.open_results(device, true));
    uni::fileio_output& out = *full.make_stream();
    out.fill('f', block + 1);
    EXPECT_TRUE(out.failed() && !out.flush_buffer());
}

}  // namespace
