#include "report/row_workspace.h"

#include "timefmt/formats.h"
#include "timefmt/time_parts.h"

instant_texts::texts instant_texts::render(std::uint64_t ticks, std::uint32_t format_word) {
    if (!filled_ || ticks_ != ticks || word_ != format_word) {
        render_date_time(date_, time_, time_parts(ticks), format_word);
        ticks_ = ticks;
        word_ = format_word;
        filled_ = true;
    }
    return {date_, time_};
}
