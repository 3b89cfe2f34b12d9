#pragma once
// One question or resource record. The built query is one too, so that a
// report can treat a query that got no reply like any record.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "dns/bytes.h"

struct dns_entry {
    shared_packet packet;    // the query, or the whole reply it came from
    std::string_view dns_server;  // server address text, held by the run for all its entries
    std::string query;       // query text, or owner name with its trailing dot
    std::uint16_t dns_type = 0;
    std::uint16_t dns_class = 0;
    std::uint32_t ttl_secs = 0;
    std::uint16_t data_length = 0;  // RDLENGTH; 0 in the question section
    std::uint32_t data_offset = 0;  // where RDATA starts in packet
    std::uint64_t query_time = 0;   // 100 ns ticks since 1601-01-01 UTC
    std::uint16_t packet_id = 0;    // low byte = first byte of the message
    bool has_raw_data = false;      // answer section: RDATA is the entry's raw data

    // The record's data inside its packet: data_length bytes from data_offset,
    // clipped to the packet so that nothing reads past it.
    std::span<const std::uint8_t> data() const {
        const std::span<const std::uint8_t> bytes = packet.bytes();
        if (data_offset >= bytes.size()) return {};
        const std::size_t left = bytes.size() - data_offset;
        return bytes.subspan(data_offset, data_length < left ? data_length : left);
    }

    // RDATA of an answer record; empty in the other sections and in a query.
    std::span<const std::uint8_t> raw_data() const {
        if (!has_raw_data || std::uint64_t{data_offset} + data_length > packet.size()) return {};
        return {packet.data() + data_offset, data_length};
    }
};

// The seven fields of an SOA record.
struct soa_data {
    std::string domain_name;
    std::string admin_mailbox;
    std::uint32_t serial_num = 0;
    std::uint32_t refresh_sec = 0;
    std::uint32_t retry_sec = 0;
    std::uint32_t expire_sec = 0;
    std::uint32_t min_sec = 0;
};
