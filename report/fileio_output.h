#pragma once
// The report stream over a results file. It writes in whole blocks: a line
// end doesn't reach the file, so the file grows one full buffer at a time and
// takes the rest when the stream is deleted.

#include <cstddef>

#include "report/output_stream.h"

namespace uni {

class fileio;

class fileio_output final : public output_stream {
public:
    static constexpr std::size_t block_size = 262144;

    explicit fileio_output(fileio& file);
    ~fileio_output() override;

protected:
    void sync() override {}
    bool write_bytes(const char* bytes, std::size_t count) override;

private:
    fileio& file_;
};

}  // namespace uni
