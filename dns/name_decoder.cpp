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

std::uint32_t read_name(std::span<const std::uint8_t> message, std::uint32_t offset, std::string& out) {
    out.clear();
    const std::size_t end = message.size();
    if (end < header_size || offset == 0 || offset > end) return 0;
    wire_reader wire(message);
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

    wire.seek(offset);
    for (int steps = max_steps; steps > 0; --steps) {
        // Each byte is tested against the end before it is read: a name
        // never borrows the zeros behind the message.
        if (wire.pos() >= end) return 0;
        const std::uint8_t b = wire.u8();
        if (is_pointer(b)) {
            if (wire.pos() >= end) return 0;
            const std::size_t target = (std::size_t{b & 0x3fu} << 8) | wire.u8();
            if (target > end) return 0;
            // Only the first pointer takes room here; the rest lies elsewhere.
            if (!jumped) consumed += 2;
            jumped = true;
            wire.seek(target);
        } else if (b == 0) {
            out.resize(text_size);
            char* text = out.data();
            for (std::size_t i = 0; i < label_count; ++i) {
                std::memcpy(text, message.data() + labels[i].pos, labels[i].size);
                text += labels[i].size;
                *text++ = '.';
            }
            return jumped ? consumed : consumed + 1;
        } else {
            // Lengths of 64 to 191 are taken as they stand, not as other label forms.
            if (wire.pos() + b > end) return 0;
            if (!jumped) consumed += b + 1u;
            labels[label_count++] = {static_cast<std::uint32_t>(wire.pos()), b};
            text_size += b + 1u;
            wire.skip(b);
        }
    }
    return 0;
}
