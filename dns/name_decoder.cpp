#include "dns/name_decoder.h"

#include <cstring>

#include "dns/message_header.h"

namespace {

// One step is a label, a pointer or the closing zero. The limit alone is what
// ends a pointer loop, so pointers may go forwards as well as backwards.
constexpr int max_steps = 99;

bool is_pointer(std::uint8_t b) { return (b & 0xc0) == 0xc0; }

}  // namespace

std::uint32_t read_name(wire_reader& wire, std::string& out) {
    out.clear();
    const std::span<const std::uint8_t> message = wire.message();
    if (message.size() < header_size || wire.pos() == 0 || wire.pos() > message.size()) return 0;
    // The walk follows pointers on a cursor of its own; `wire` moves only
    // past the bytes the name takes in its place.
    wire_reader walk = wire;
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
        // Each byte is tested against the end before it is read: a name
        // never borrows the zeros behind the message.
        if (walk.remaining() < 1) return 0;
        const std::uint8_t b = walk.u8();
        if (is_pointer(b)) {
            if (walk.remaining() < 1) return 0;
            const std::size_t target = (std::size_t{b & 0x3fu} << 8) | walk.u8();
            if (target > message.size()) return 0;
            // Only the first pointer takes room here; the rest lies elsewhere.
            if (!jumped) consumed += 2;
            jumped = true;
            walk.seek(target);
        } else if (b == 0) {
            out.resize(text_size);
            char* text = out.data();
            for (std::size_t i = 0; i < label_count; ++i) {
                std::memcpy(text, message.data() + labels[i].pos, labels[i].size);
                text += labels[i].size;
                *text++ = '.';
            }
            if (!jumped) consumed += 1;
            wire.skip(consumed);
            return consumed;
        } else {
            // Lengths of 64 to 191 are taken as they stand, not as other label forms.
            if (walk.remaining() < b) return 0;
            if (!jumped) consumed += b + 1u;
            labels[label_count++] = {static_cast<std::uint32_t>(walk.pos()), b};
            text_size += b + 1u;
            walk.skip(b);
        }
    }
    return 0;
}
