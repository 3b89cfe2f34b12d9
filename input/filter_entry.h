#pragma once
// One test of the input filter (-filter, -filter_sig).

#include <cstdint>
#include <string>

struct filter_entry {
    // Filled in with the input filter.
};
