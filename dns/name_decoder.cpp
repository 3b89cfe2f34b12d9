#include "dns/name_decoder.h"

#include <cstring>

#include "dns/wire_reader.h"

namespace {

constexpr std::uint32_t header_size = 12;
// One step is a label, a pointer or the closing zero. The limit alone is what
// ends a pointer loop, so pointers may go forwards as well as backwards.
constexpr int max_steps = 99;

bool is_pointer(std::uint8_t b) { return (b & 0xc0) == 0xc0; }

}  // namespace

std::uint32_t read_name(const std::uint8_t* message, std::int32_t length, std::uint32_t offset,
                        std::string& out) {
    out.clear();
    if (message == nullptr || length < static_cast<std::int32_t>(header_size) || offset == 0 ||
        offset > static_cast<std::uint32_t>(length)) {
        return 0;
    }
    const wire_reader wire(message, static_cast<std::size_t>(length));
    const std::size_t end = wire.length();
    std::size_t pos = offset;
    std::uint32_t consumed = 0;
    bool jumped = false;

    // The walk notes where each label lies; the text is made in one piece
    // afterwards, so a name costs one sized string instead of growing it
    // label by label. There can be no more labels than steps.
    struct label_at {
        std::uint32_t pos;
        std::uint8_t size;
    };
    label_at labels[max_steps];
    std::size_t label_count = 0;
    std::size_t text_size = 0;

    for (int steps = max_steps; steps > 0; --steps) {
        if (pos >= end) return 0;
        const std::uint8_t b = wire.byte_at(pos);
        if (is_pointer(b)) {
            if (pos + 1 >= end) return 0;
            const std::size_t target = (std::size_t{b & 0x3fu} << 8) | wire.byte_at(pos + 1);
            if (target > end) return 0;
            // Only the first pointer takes room here; the rest lies elsewhere.
            if (!jumped) consumed += 2;
            jumped = true;
            pos = target;
        } else if (b == 0) {
            out.resize(text_size);
            char* text = out.data();
            for (std::size_t i = 0; i < label_count; ++i) {
                std::memcpy(text, wire.data() + labels[i].pos, labels[i].size);
                text += labels[i].size;
                *text++ = '.';
            }
            return jumped ? consumed : consumed + 1;
        } else {
            // Lengths of 64 to 191 are taken as they stand, not as other label forms.
            if (pos + b >= end) return 0;
            if (!jumped) consumed += b + 1u;
            labels[label_count++] = {static_cast<std::uint32_t>(pos + 1), b};
            text_size += b + 1u;
            pos += b + 1u;
        }
    }
    return 0;
}
