#include "report/fileio_output.h"

#include "platform/fileio.h"

namespace uni {

fileio_output::fileio_output(fileio& file) : output_stream(block_size), file_(file) {}

fileio_output::~fileio_output() { flush_buffer(); }

bool fileio_output::write_bytes(const char* bytes, std::size_t count) {
    return file_.append_bytes(bytes, count);
}

}  // namespace uni
