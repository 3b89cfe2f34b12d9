// vexa against a real authoritative server: NSD serves the zones of this
// folder on a loopback address of the test process's private network, and
// the report of each query command is compared with what the zones hold, in
// the padded, CSV and XML forms.
#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <set>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/e2e.h"

namespace {

using namespace test_support;
namespace fs = std::filesystem;

const std::string server_address = "127.53.53.53";
const char* const zones[] = {"interop.test", "2.0.192.in-addr.arpa"};

// ------------------------------------------------------------ the server --

std::string read_text(const fs::path& path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Debian puts nsd in /usr/sbin, which a user's PATH may lack.
std::string find_nsd() {
    std::string dirs = std::getenv("PATH") ? std::getenv("PATH") : "";
    dirs += ":/usr/sbin:/usr/local/sbin";
    for (std::size_t start = 0; start <= dirs.size();) {
        std::size_t end = std::min(dirs.find(':', start), dirs.size());
        std::string candidate = dirs.substr(start, end - start) + "/nsd";
        if (end > start && ::access(candidate.c_str(), X_OK) == 0) return candidate;
        start = end + 1;
    }
    return {};
}

// True when the server gives an authoritative NOERROR for the zone's SOA.
bool answers_soa(int fd) {
    const std::uint8_t probe[] = {
        0x4e, 0x53,                                                // ID
        0x00, 0x00,                                                // plain query, no RD
        0, 1, 0, 0, 0, 0, 0, 0,                                    // QD 1
        7, 'i', 'n', 't', 'e', 'r', 'o', 'p', 4, 't', 'e', 's', 't', 0,  // interop.test.
        0, 6, 0, 1,                                                // SOA IN
    };
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(53);
    ::inet_pton(AF_INET, server_address.c_str(), &to.sin_addr);
    if (::sendto(fd, probe, sizeof probe, 0, reinterpret_cast<sockaddr*>(&to), sizeof to) < 0)
        return false;
    pollfd wait{fd, POLLIN, 0};
    std::uint8_t reply[512];
    if (::poll(&wait, 1, 100) != 1) return false;
    ssize_t got = ::recv(fd, reply, sizeof reply, 0);
    return got >= 12 && reply[0] == 0x4e && reply[1] == 0x53 &&
           (reply[2] & 0x84) == 0x84 && (reply[3] & 0x0f) == 0;  // QR AA, NOERROR
}

// One NSD for the whole run, in the foreground as a child of this process,
// from a config in a temporary folder; stopped by its PID at the end.
class nsd_server : public testing::Environment {
public:
    void SetUp() override {
        const std::string nsd = find_nsd();
        ASSERT_FALSE(nsd.empty()) << "nsd not found (PATH, /usr/sbin, /usr/local/sbin): the "
                                     "interop tests need the nsd package; scripts/setup.sh installs it";
        std::string dir_template = (fs::temp_directory_path() / "vexa-interop-XXXXXX").string();
        ASSERT_NE(::mkdtemp(dir_template.data()), nullptr) << std::strerror(errno);
        dir_ = dir_template;
        write_config();
        start(nsd);
        ASSERT_GT(pid_, 0) << "fork failed";
        wait_until_answering();
    }

    void TearDown() override {
        if (pid_ > 0) {
            ::kill(pid_, SIGTERM);
            const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
            bool gone = false;
            while (!(gone = ::waitpid(pid_, nullptr, WNOHANG) != 0) && std::chrono::steady_clock::now() < deadline)
                ::usleep(10000);
            if (!gone) {
                ::kill(pid_, SIGKILL);
                ::waitpid(pid_, nullptr, 0);
            }
            pid_ = -1;
        }
        std::error_code ignored;
        if (!dir_.empty()) fs::remove_all(dir_, ignored);
    }

private:
    void write_config() {
        std::ofstream conf(dir_ / "nsd.conf");
        conf << "server:\n"
             << "    ip-address: " << server_address << "\n    port: 53\n"
             << "    username: \"\"\n    chroot: \"\"\n    database: \"\"\n"
             << "    zonesdir: \"" << dir_.string() << "\"\n"
             << "    xfrdir: \"" << dir_.string() << "\"\n"
             << "    pidfile: \"" << (dir_ / "nsd.pid").string() << "\"\n"
             << "    xfrdfile: \"" << (dir_ / "xfrd.state").string() << "\"\n"
             << "    zonelistfile: \"" << (dir_ / "zone.list").string() << "\"\n"
             << "    logfile: \"" << (dir_ / "nsd.log").string() << "\"\n"
             << "    server-count: 1\n    verbosity: 1\n"
             // No NS and glue behind every answer: the rows stay those of the question asked.
             << "    minimal-responses: yes\n"
             << "remote-control:\n    control-enable: no\n";
        for (const char* zone : zones) {
            const std::string file = std::string(zone) + ".zone";
            fs::copy_file(fs::path(VEXA_SOURCE_DIR) / "tests" / "interop" / file, dir_ / file);
            conf << "zone:\n    name: " << zone << "\n    zonefile: " << file << "\n";
        }
    }

    // What nsd says before its log file is open goes to this process's stderr.
    void start(const std::string& nsd) {
        const std::string conf = (dir_ / "nsd.conf").string();
        const char* argv[] = {nsd.c_str(), "-d", "-c", conf.c_str(), nullptr};
        const pid_t parent = ::getpid();
        pid_ = ::fork();
        if (pid_ != 0) return;
        // Only async-signal-safe calls here. The server goes when this process
        // goes, even if a crash skips TearDown.
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() != parent) ::_exit(126);
        ::execv(argv[0], const_cast<char* const*>(argv));
        ::_exit(127);
    }

    void wait_until_answering() {
        int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        ASSERT_GE(fd, 0) << std::strerror(errno);
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        bool up = false, exited = false;
        while (!up && !exited && std::chrono::steady_clock::now() < deadline) {
            exited = ::waitpid(pid_, nullptr, WNOHANG) == pid_;
            up = !exited && answers_soa(fd);
        }
        ::close(fd);
        if (exited) pid_ = -1;
        ASSERT_TRUE(up) << "nsd did not answer on " << server_address << " port 53"
                        << (exited ? " (it exited)" : " within 10 s") << "\n"
                        << read_text(dir_ / "nsd.log");
    }

    fs::path dir_;
    pid_t pid_ = -1;
};

testing::Environment* const nsd_environment = testing::AddGlobalTestEnvironment(new nsd_server);

// ------------------------------------------------------------ the report --

enum class form { padded, csv, xml };

// The server chooses how the names in a record's data are compressed, so the
// raw bytes of NS, CNAME, SOA, PTR and MX records aren't the zone's to tell.
bool name_bearing(std::string_view xml_line) {
    for (std::string_view type : {"2", "5", "6", "12", "15"})
        if (xml_line.find("<dns_type>" + std::string(type) + "</") != std::string_view::npos) return true;
    return false;
}

// Masks what changes from run to run in one line of a report: the ID becomes
// "{id}" (which fills the padded cell exactly), the XML date and time '#'
// (mask_date_time does the text forms), raw bytes of names "*". The IDs
// found go to `ids`.
std::string normalise(std::string line, form f, std::set<unsigned>& ids) {
    auto take_id = [&](std::size_t from, std::size_t to) {
        ids.insert(static_cast<unsigned>(std::strtoul(line.substr(from, to - from).c_str(), nullptr, 16)));
        line.replace(from, to - from, "{id}");
    };
    if (f != form::xml) {
        // Rows are the lines that name the server; the ID cell stands in front of it.
        const std::string sep = f == form::csv ? "," : " | ";
        const std::size_t to = line.find(sep + server_address + sep);
        const std::size_t before = to == std::string::npos ? to : line.rfind(sep, to - 1);
        if (before != std::string::npos) take_id(before + sep.size(), to);
        return line;
    }
    for (std::string_view tag : {"query_date_utc", "query_time_utc", "packet_id", "raw_data_hex"}) {
        std::size_t from = line.find("<" + std::string(tag) + ">");
        const std::size_t to = from == std::string::npos ? from : line.find("</", from);
        if (to == std::string::npos) continue;
        from += tag.size() + 2;
        if (tag == "packet_id") {
            take_id(from, to);
        } else if (tag == "raw_data_hex") {
            if (name_bearing(line) && to > from) line.replace(from, to - from, "*");
        } else {
            for (std::size_t i = from; i < to; ++i)
                if (std::isalnum(static_cast<unsigned char>(line[i]))) line[i] = '#';
        }
    }
    return line;
}

// One row as the zone predicts it. The status follows from the section.
struct row {
    const char* owner;
    const char* section;  // comment word: question, answer, authority, additions
    const char* type;     // type word
    unsigned ttl;
    unsigned size;
    const char* data;     // data cell of the padded layout
    const char* xml;      // attributes of translated_data
};

unsigned type_number(std::string_view word) {
    const std::pair<std::string_view, unsigned> numbers[] = {
        {"A", 1}, {"NS", 2}, {"CNAME", 5}, {"SOA", 6}, {"PTR", 12},
        {"MX", 15}, {"TXT", 16}, {"AAAA", 28}, {"DNAME", 39}};
    for (const auto& [name, number] : numbers)
        if (name == word) return number;
    return 0;
}

std::string pad(std::string text, std::size_t width, bool right) {
    if (text.size() < width) text.insert(right ? 0 : text.size(), width - text.size(), ' ');
    return text;
}

// raw_data_hex as the zone fixes it; "*" for the records with names.
std::string raw_hex(const row& r) {
    const std::string_view type = r.type;
    std::string bytes;
    if (std::string_view(r.section) == "question") return "";
    if (type == "DNAME") return r.data;
    if (type == "TXT") bytes = r.data;
    if (type == "A" || type == "AAAA") {
        bytes.resize(type == "A" ? 4 : 16);
        ::inet_pton(type == "A" ? AF_INET : AF_INET6, r.data, bytes.data());
    }
    if (bytes.empty()) return "*";
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (unsigned char b : bytes) text += {digits[b >> 4], digits[b & 15], ' '};
    text.pop_back();
    return text;
}

std::string expected_line(const row& r, form f) {
    const std::string status = std::string_view(r.section) == "question" ? "invalid" : "success";
    const std::string number = std::to_string(type_number(r.type));
    const std::string ttl = std::to_string(r.ttl), size = std::to_string(r.size);
    if (f == form::xml)
        return "<data_entry><query>" + std::string(r.owner) + "</query><status>" + status +
               "</status><packet_id>{id}</packet_id><dns_server>" + server_address +
               "</dns_server><query_date_utc>####-##-##</query_date_utc><query_time_utc>##:##:##.###"
               "</query_time_utc><dns_type>" + number + "</dns_type><dns_type_name>" + r.type +
               "</dns_type_name><dns_class>1</dns_class><ttl_secs>" + ttl + "</ttl_secs><data_length>" +
               size + "</data_length><raw_data_hex>" + raw_hex(r) + "</raw_data_hex><translated_data " +
               r.xml + "></translated_data></data_entry>";
    const bool padded = f == form::padded;
    auto cell = [&](std::string text, std::size_t width, bool right) {
        return (padded ? pad(std::move(text), width, right) : text) + (padded ? " | " : ",");
    };
    std::string data = r.data;
    for (std::size_t at; !padded && (at = data.find("; ")) != std::string::npos;) data.erase(at + 1, 1);
    return cell(r.owner, 40, false) + cell(r.section, 9, false) + cell(status, 7, false) + cell("{id}", 4, false) +
           cell(server_address, 0, true) + cell("####-##-##", 0, false) + " ##:##:##.###" +
           (padded ? " | " : ",") + cell(number, 4, true) + cell(r.type, 6, true) + cell("1", 5, true) +
           cell(ttl, 6, true) + cell(size, 4, true) + data;
}

// The whole report behind the run record, with the header line or the XML
// frame, and the empty line that follows every TXT row.
std::vector<std::string> expected_report(const std::vector<row>& rows, form f) {
    std::vector<std::string> lines;
    if (f == form::xml)
        lines = {"<?xml version=\"1.0\" encoding=\"utf-8\"?>", "",
                 "<logdata tool=\"vexa ver: 0.48\" cmdline=\"" VEXA_BINARY "\">"};
    else if (f == form::padded)
        lines = {"query                                    | comment   | status  | id   | " +
                 pad("DNSserv", server_address.size(), false) +
                 " | date       |  time-UTC     | type | tname  | class | ttl    | size | data"};
    else
        lines = {"query,comment,status,id,DNSserv,date, time-UTC,type,tname,class,ttl,size,data"};
    for (const row& r : rows) {
        lines.push_back(expected_line(r, f));
        if (f != form::xml && std::string_view(r.type) == "TXT") lines.emplace_back();
    }
    if (f == form::xml) lines.emplace_back("</logdata>");
    return lines;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

struct report {
    std::vector<std::string> lines;  // normalised, without CR LF
    std::set<unsigned> ids;
};

report query(std::vector<std::string> args, form f) {
    if (f == form::csv) args.push_back("-csv");
    if (f == form::xml) args.push_back("-xml");
    args.insert(args.end(), {"-server", server_address});
    const std::time_t before = std::time(nullptr);
    const vexa_run run = run_vexa(args);
    const std::time_t after = std::time(nullptr);
    EXPECT_EQ(run.exit_code, 0) << run.err;
    EXPECT_FALSE(run.timed_out);
    EXPECT_TRUE(lines_end_in_crlf(run.out));
    const std::string_view body = report_body(run.out);
    const char* const sep = f == form::csv ? "," : " | ";
    if (f != form::xml) {
        // time() reads a coarse clock, which may lag the tool's by a tick.
        EXPECT_TRUE(date_time_cells_valid(body, sep, before, after + 1));
    }
    report r;
    const std::string masked = f == form::xml ? std::string(body) : mask_date_time(body, sep);
    for (std::string& line : lines_of(masked)) r.lines.push_back(normalise(std::move(line), f, r.ids));
    // One ID per reply, the query's own: one of the 90 that the tool draws.
    EXPECT_EQ(r.ids.size(), 1u);
    for (unsigned id : r.ids) EXPECT_TRUE(id >= 10 && id <= 99) << id;
    return r;
}

// ------------------------------------------------------------------ tests --

struct query_case {
    std::vector<std::string> command;
    std::vector<row> rows;
};

const char* const soa_data =
    "ns1.interop.test.; hostmaster.interop.test.; 0x78c404c9; 0x00001c20; 0x00000384; 0x00127500; 0x0000012c";
const char* const soa_xml =
    " domain_name=\"ns1.interop.test.\" admin_mailbox=\"hostmaster.interop.test.\" serial_num=\"0x78c404c9\""
    " refresh_sec=\"7200\" retry_sec=\"900\" expire_sec=\"1209600\" min_sec=\"300\"";

TEST(Interop, EachCommandReportsWhatTheZoneHolds) {
    const query_case cases[] = {
        {{"-url", "www.interop.test"},
         {{"www.interop.test.", "answer", "A", 300, 4, "192.0.2.10", " ipv4_addr=\"192.0.2.10\""},
          {"www.interop.test.", "answer", "A", 300, 4, "192.0.2.11", " ipv4_addr=\"192.0.2.11\""},
          {"www.interop.test.", "answer", "A", 300, 4, "192.0.2.12", " ipv4_addr=\"192.0.2.12\""}}},
        // The DNAME has no reading of its own: hexadecimal bytes, no attribute.
        {{"-url", "host.old.interop.test"},
         {{"old.interop.test.", "answer", "DNAME", 3600, 18,
           "03 6e 65 77 07 69 6e 74 65 72 6f 70 04 74 65 73 74 00", ""},
          {"host.old.interop.test.", "answer", "CNAME", 3600, 11, "host.new.interop.test.",
           " domain_name=\"host.new.interop.test.\""},
          {"host.new.interop.test.", "answer", "A", 3600, 4, "192.0.2.40", " ipv4_addr=\"192.0.2.40\""}}},
        {{"-url", "nothere.interop.test"},
         {{"nothere.interop.test.", "question", "A", 0, 0, "  <none>", ""},
          {"interop.test.", "authority", "SOA", 300, 39, soa_data, soa_xml}}},
        {{"-ip", "192.0.2.25"},
         {{"25.2.0.192.in-addr.arpa.", "answer", "PTR", 3600, 19, "mail.interop.test.",
           " domain_name=\"mail.interop.test.\""}}},
        {{"-ip", "192.0.2.99"},
         {{"99.2.0.192.in-addr.arpa.", "question", "PTR", 0, 0, "  <none>", " domain_name=\"\""},
          {"2.0.192.in-addr.arpa.", "authority", "SOA", 300, 51,
           "ns1.interop.test.; hostmaster.interop.test.; 0x78c404ca; 0x00001c20; 0x00000384; 0x00127500; 0x0000012c",
           " domain_name=\"ns1.interop.test.\" admin_mailbox=\"hostmaster.interop.test.\" serial_num=\"0x78c404ca\""
           " refresh_sec=\"7200\" retry_sec=\"900\" expire_sec=\"1209600\" min_sec=\"300\""}}},
        {{"-mx", "interop.test"},
         {{"interop.test.", "answer", "MX", 3600, 9, "10; mail.interop.test.",
           " preference=\" 10\" mx_server=\"mail.interop.test.\""},
          {"interop.test.", "answer", "MX", 3600, 11, "20; backup.interop.test.",
           " preference=\" 20\" mx_server=\"backup.interop.test.\""}}},
        // The name servers' addresses, A first: a zero run is folded in XML only.
        {{"-ns", "interop.test"},
         {{"interop.test.", "answer", "NS", 3600, 6, "ns1.interop.test.", " domain_name=\"ns1.interop.test.\""},
          {"interop.test.", "answer", "NS", 3600, 6, "ns2.interop.test.", " domain_name=\"ns2.interop.test.\""},
          {"ns1.interop.test.", "additions", "A", 3600, 4, "192.0.2.53", " ipv4_addr=\"192.0.2.53\""},
          {"ns2.interop.test.", "additions", "A", 3600, 4, "192.0.2.54", " ipv4_addr=\"192.0.2.54\""},
          {"ns1.interop.test.", "additions", "AAAA", 3600, 16, "2001:db8:0:0:0:0:0:53",
           " ipv6_addr=\"2001:db8::53\""},
          {"ns2.interop.test.", "additions", "AAAA", 3600, 16, "2001:db8:1:2:3:4:5:6",
           " ipv6_addr=\"2001:db8:1:2:3:4:5:6\""}}},
        {{"-cname", "alias.interop.test"},
         {{"alias.interop.test.", "answer", "CNAME", 0, 6, "www.interop.test.",
           " domain_name=\"www.interop.test.\""}}},
        // No CNAME there: a CNAME query shows no question row.
        {{"-cname", "www.interop.test"}, {{"interop.test.", "authority", "SOA", 300, 39, soa_data, soa_xml}}},
        // TXT: the raw data, length bytes included.
        {{"-txt", "interop.test"},
         {{"interop.test.", "answer", "TXT", 3600, 15, "\x0ev=spf1 mx -all", ""}}},
        {{"-txt", "notes.interop.test"},
         {{"notes.interop.test.", "answer", "TXT", 3600, 14, "\x03one\x03two\x05three", ""}}},
        {{"-txt", "odd.interop.test"},
         {{"odd.interop.test.", "answer", "TXT", 2147483647, 9, "\x08" "a b, c|d", ""}}},
    };
    for (const query_case& c : cases) {
        for (form f : {form::padded, form::csv, form::xml}) {
            const std::string what = c.command[0] + " " + c.command[1] +
                                     (f == form::xml ? " -xml" : f == form::csv ? " -csv" : "");
            report r = query(c.command, f);
            EXPECT_EQ(joined(r.lines), joined(expected_report(c.rows, f))) << what;
        }
    }
}

// Hex of byte `index` (0 to 7) in the first row of a dump: "0000 0000:  2a 00 ...".
unsigned dump_byte(const std::string& line, std::size_t index) {
    const std::size_t at = 12 + 3 * index;
    return line.size() >= at + 2 ? static_cast<unsigned>(std::stoul(line.substr(at, 2), nullptr, 16)) : 256;
}

TEST(Interop, TruncatedReplyIsReportedAsItCameWithoutRetry) {
    // bulk's forty addresses leave the 512 bytes: the server drops that whole
    // set and sets TC. What came is reported; a good reply ends the tries.
    const query_case cases[] = {
        {{"-url", "big.interop.test"},
         {{"big.interop.test.", "answer", "CNAME", 3600, 7, "bulk.interop.test.",
           " domain_name=\"bulk.interop.test.\""}}},
        {{"-url", "bulk.interop.test"}, {{"bulk.interop.test.", "question", "A", 0, 0, "  <none>", ""}}},
    };
    for (const query_case& c : cases) {
        std::vector<std::string> args = c.command;
        args.insert(args.end(), {"-verbose", "-retry", "2"});
        report r = query(args, form::csv);
        const std::vector<std::string> rows = expected_report(c.rows, form::csv);
        ASSERT_GT(r.lines.size(), rows.size()) << c.command[1];
        EXPECT_EQ(joined({r.lines.begin(), r.lines.begin() + static_cast<long>(rows.size())}), joined(rows))
            << c.command[1];
        std::size_t sent = 0, received = 0;
        for (std::size_t i = 0; i + 1 < r.lines.size(); ++i) {
            sent += r.lines[i] == "packet that was sent";
            if (r.lines[i] != "packet that was recv'd") continue;
            ++received;
            const std::string& first = r.lines[i + 1];
            EXPECT_EQ(dump_byte(first, 0), r.ids.empty() ? 0u : *r.ids.begin()) << "reply ID";
            EXPECT_EQ(dump_byte(first, 2) & 0x82, 0x82u) << "QR and TC: " << first;
            const auto answers = std::count_if(c.rows.begin(), c.rows.end(), [](const row& each) {
                return std::string_view(each.section) == "answer";
            });
            EXPECT_EQ(dump_byte(first, 7), static_cast<unsigned>(answers)) << "ANCOUNT: " << first;
        }
        EXPECT_EQ(sent, 1u) << c.command[1];
        EXPECT_EQ(received, 1u) << c.command[1];
    }
}

}  // namespace
