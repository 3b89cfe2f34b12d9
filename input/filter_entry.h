#pragma once
// One test of the input filter (-filter, -filter_sig).

#include <cstdint>
#include <string>
#include <vector>

struct filter_entry {
    std::u16string pattern;               // lower case, stars removed
    std::vector<std::uint8_t> signature;  // bytes the named file must hold; -filter_sig only
    std::uint64_t signature_offset = 0;   // where in the file they must stand
    bool is_path = false;                 // pattern begins with "\": also looked for in the directory
    bool match_all = false;               // passes every text
    bool star_front = false;              // "*text": the name ends with it
    bool star_back = false;               // "text*": the name begins with it
    std::string filter_path;              // lower-cased -filter_path value; kept, never read
};
