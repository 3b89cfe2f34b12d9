#pragma once
// What the row writers keep from one row to the next, so that a row
// allocates nothing once the longest row of a run has been written. One
// per run, owned by whoever runs the queries and lent to every report.

#include <cstdint>
#include <string>
#include <string_view>

#include "dns/dns_entry.h"
#include "report/cells.h"

// The date and time texts of the last instant rendered. The rows of one
// reply share one instant, so its texts are made once and serve again.
class instant_texts {
public:
    struct texts {
        std::string_view date;
        std::string_view time;
    };
    // The views hold until the next call.
    texts render(std::uint64_t ticks, std::uint32_t format_word);

private:
    std::uint64_t ticks_ = 0;
    std::uint32_t word_ = 0;
    bool filled_ = false;
    std::string date_;
    std::string time_;
};

struct row_workspace {
    cells::row_text row;  // a row is put together here and handed on in one piece
    std::string text;     // a decoded name, or the text of an address
    soa_data soa;
    instant_texts when;
};
