#pragma once
// The tool's parameter block: the common block plus the fields of a DNS query.

#include <cstdint>
#include <string>

#include "dns/record_types.h"
#include "driver/cmd_params.h"

struct input_params : cmd_params {
    input_params() {
        verbose = false;
        xml_output = false;
        pipe_input = false;
    }

    std::string server = "8.8.8.8";
    std::string url_value;
    std::string ip_value;
    std::string mx_value;
    std::string txt_value;
    std::string ns_value;      // -ns and -cname share it
    std::string query_target;  // the name the next query asks for
    std::uint32_t timeout_secs = 1;
    std::uint32_t retries = 0;
    std::uint32_t delay_secs = 0;
    std::uint32_t query_type = rr_type::a;
    bool ipv6 = false;
};
