#include "dns/type_names.h"

#include <algorithm>
#include <array>

namespace {

struct type_word {
    std::uint16_t type;
    std::string_view word;
};

// Sorted by number for the binary search.
constexpr std::array<type_word, 61> type_words{{
    {1, "A"},       {2, "NS"},      {3, "MD"},     {4, "MF"},      {5, "CNAME"},       {6, "SOA"},
    {7, "MB"},      {8, "MG"},      {9, "MR"},     {10, "NULL"},   {11, "WKS"},        {12, "PTR"},
    {13, "HINFO"},  {14, "MINFO"},  {15, "MX"},    {16, "TXT"},    {17, "RP"},         {18, "AFSDB"},
    {19, "X25"},    {20, "ISDN"},   {21, "RT"},    {22, "NSAP"},   {23, "NSAP_PTR"},   {24, "SIG"},
    {25, "KEY"},    {26, "PX"},     {27, "GPOS"},  {28, "AAAA"},   {29, "LOC"},        {31, "EID"},
    {32, "NIMLOC"}, {33, "SRV"},    {35, "NAPTR"}, {36, "KX"},     {37, "CERT"},       {39, "DNAME"},
    {40, "SINK"},   {41, "OPT"},    {42, "APL"},   {44, "SSHFP"},  {45, "IPSECKEY"},   {46, "RRSIG"},
    {47, "NSEC"},   {48, "DNSKEY"}, {49, "DHCID"}, {50, "NSEC3"},  {51, "NSEC3PARAM"}, {55, "HIP"},
    {99, "SPF"},    {100, "UINFO"}, {101, "UID"},  {102, "GID"},   {103, "UNSPEC"},    {249, "TKEY"},
    {250, "TSIG"},  {251, "IXFR"},  {252, "AXFR"}, {254, "MAILA"}, {255, "ANY"},       {32768, "TA"},
    {32769, "DLV"},
}};

constexpr bool by_number(const type_word& a, const type_word& b) { return a.type < b.type; }
static_assert(std::is_sorted(type_words.begin(), type_words.end(), by_number));

// The words of types below 256 by direct index: a report row asks for one
// each, and nearly all types are there.
constexpr std::size_t direct_count = 256;
constexpr std::array<std::string_view, direct_count> direct_words = [] {
    std::array<std::string_view, direct_count> words{};
    words.fill("unk");
    for (const type_word& entry : type_words)
        if (entry.type < direct_count) words[entry.type] = entry.word;
    return words;
}();

}  // namespace

std::string_view record_type_name(std::uint16_t type) {
    if (type < direct_count) return direct_words[type];
    const auto* found =
        std::lower_bound(type_words.begin(), type_words.end(), type,
                         [](const type_word& entry, std::uint16_t value) { return entry.type < value; });
    if (found != type_words.end() && found->type == type) return found->word;
    return "unk";
}
