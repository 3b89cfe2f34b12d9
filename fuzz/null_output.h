#pragma once
// The report's destination in the fuzz targets: everything is written and
// dropped, so the writers run in full without filling memory.

#include <cstddef>

#include "report/output_stream.h"

class null_output final : public uni::output_stream {
public:
    null_output() : output_stream(256) {}

protected:
    void sync() override {}
    bool write_bytes(const char*, std::size_t) override { return true; }
};
