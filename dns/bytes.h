#pragma once
// Byte lists of DNS messages, and the shared, immutable copy of a received
// message that every entry decoded from it holds.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

using byte_list = std::vector<std::uint8_t>;

// One message, held by all the entries of one reply: each entry can read the
// whole message at any time without a copy of its own. Never changed once made.
class shared_packet {
public:
    shared_packet() = default;
    shared_packet(const std::uint8_t* bytes, std::size_t count)
        : bytes_(std::make_shared<const byte_list>(bytes, bytes + count)) {}
    explicit shared_packet(byte_list bytes) : bytes_(std::make_shared<const byte_list>(std::move(bytes))) {}

    const std::uint8_t* data() const { return bytes_ ? bytes_->data() : nullptr; }
    std::size_t size() const { return bytes_ ? bytes_->size() : 0; }
    bool empty() const { return size() == 0; }
    std::span<const std::uint8_t> bytes() const { return {data(), size()}; }
    void clear() { bytes_.reset(); }

private:
    std::shared_ptr<const byte_list> bytes_;
};
