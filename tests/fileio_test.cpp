// The results file's stream writes whole blocks; replacing a file and its CR LF are the end-to-end tests'.
#include "platform/fileio.h"

#include <optional>

#include "report/fileio_output.h"
#include "support/tool.h"

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
            const std::string expected = line_end_last ? padding + "\r\n" : "\r\n" + padding;
            EXPECT_EQ(test_support::read_file(dir / "r.txt"), expected) << what;
        }
    }
}

}  // namespace
