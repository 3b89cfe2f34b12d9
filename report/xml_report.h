#pragma once
// One data_entry line of the XML report.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "dns/dns_entry.h"
#include "report/output_stream.h"
#include "report/row_workspace.h"

// `format_word` holds the compiled date and time forms.
void write_xml_entry(const dns_entry& entry, uni::output_stream& out, std::uint32_t format_word,
                     std::string_view status, row_workspace& work);
// IPv6 text with the first run of zero groups folded. False (text untouched)
// when data is missing or length is 0.
bool format_ipv6(const std::uint8_t* data, std::size_t length, std::string& text);
