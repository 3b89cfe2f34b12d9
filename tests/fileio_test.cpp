// The results file's stream; replacing a file, its CR LF and the diagnostics file are the end-to-end tests'.
#include "platform/fileio.h"

#include <optional>

#include "report/fileio_output.h"
#include "support/fixtures.h"
#include "support/host.h"

namespace {

constexpr std::size_t block = uni::fileio_output::block_size;

TEST(Fileio, ResultsStreamWritesWholeBlocks) {
    // A line end stays in the buffer; a block goes out when its last byte comes in, be it the LF of a line end or
    // the last of a run of padding, and the end of the stream writes the rest.
    for (bool line_end_last : {true, false}) {
        for (std::size_t total : {block - 1, block, block + 1, 2 * block}) {
            test_support::temp_dir dir;
            uni::fileio results;
            ASSERT_TRUE(results.open_results(dir / "r.txt", true));
            std::optional<uni::fileio_output> out(std::in_place, results);
            const std::string padding(total - 2, 'f'), what = std::to_string(total) + (line_end_last ? " LF last" : "");
            if (line_end_last) {
                out->fill('f', padding.size());
                out->end_line();
            } else {
                out->end_line();
                out->fill('f', padding.size());
            }
            EXPECT_EQ(std::filesystem::file_size(dir / "r.txt"), total / block * block) << what;
            out.reset();
            EXPECT_EQ(results.known_size(), static_cast<std::int64_t>(total)) << what;
            results.close();
            std::ifstream written(dir / "r.txt", std::ios::binary);
            EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}), line_end_last ? padding + "\r\n" : "\r\n" + padding) << what;
        }
    }
}

TEST(Fileio, StreamOnARefusingDeviceFails) {
    const std::string device = test_support::full_device();
    if (device.empty()) GTEST_SKIP() << "no device that refuses writes";
    uni::fileio full;
    ASSERT_TRUE(full.open_results(device, true));
    uni::fileio_output out(full);
    out.fill('f', block + 1);
    EXPECT_TRUE(out.failed());
    EXPECT_FALSE(out.flush_buffer());
}

}  // namespace
