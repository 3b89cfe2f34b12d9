// vexa against a real authoritative server: NSD serves the zones of this
// folder on a loopback address of the test process's private network, and
// the report of each query command is compared with what the zones hold, in
// the padded, CSV and XML forms.
#include <csignal>
#include <fstream>
#include <optional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "support/tool.h"

namespace {

using namespace test_support;
namespace fs = std::filesystem;

const std::string server_address = "127.53.53.53";

// One NSD for the whole run, in the foreground as a child of this process,
// from a config in a temporary folder; stopped at the end.
class nsd_server : public testing::Environment {
public:
    void SetUp() override {
        const std::string dir = temp_.emplace().root.string();
        std::ofstream conf(dir + "/nsd.conf");
        conf << "server:\n    ip-address: " << server_address << "\n    port: 53\n    username: \"\"\n"
             << "    chroot: \"\"\n    database: \"\"\n    zonesdir: \"" << dir << "\"\n    xfrdir: \"" << dir
             << "\"\n    pidfile: \"" << dir << "/nsd.pid\"\n    xfrdfile: \"" << dir << "/xfrd.state\"\n"
             << "    zonelistfile: \"" << dir << "/zone.list\"\n    logfile: \"" << dir << "/nsd.log\"\n"
             << "    server-count: 1\n    verbosity: 1\n"
             << "    minimal-responses: yes\n"  // no NS and glue behind every answer
             << "remote-control:\n    control-enable: no\n";
        for (const std::string zone : {"interop.test", "2.0.192.in-addr.arpa"}) {
            fs::copy_file(fs::path(VEXA_SOURCE_DIR) / "tests/interop" / (zone + ".zone"), dir + "/" + zone + ".zone");
            conf << "zone:\n    name: " << zone << "\n    zonefile: " << zone << ".zone\n";
        }
        conf.close();
        // Debian puts nsd in /usr/sbin, which a user's PATH may lack.
        const int fds[3] = {-1, -1, -1};
        pid_ = spawn({::access("/usr/sbin/nsd", X_OK) == 0 ? "/usr/sbin/nsd" : "nsd", "-d", "-c", dir + "/nsd.conf"}, fds);
        // Up once the tool gets an answer from it; a bounded wait.
        bool up = false;
        for (int tries = 0; tries < 20 && !up && ::waitpid(pid_, nullptr, WNOHANG) == 0; ++tries) {
            up = run_vexa({"-txt", "odd.interop.test", "-server", server_address, "-csv"}).out.find(",success,") !=
                 std::string::npos;
            if (!up) std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        ASSERT_TRUE(up) << "nsd did not answer on " << server_address << " port 53 (scripts/setup.sh installs it)\n"
                        << read_file(dir + "/nsd.log");
    }
    void TearDown() override {
        if (pid_ > 0 && ::kill(pid_, SIGTERM) == 0) ::waitpid(pid_, nullptr, 0);
        temp_.reset();
    }

private:
    std::optional<temp_dir> temp_;
    int pid_ = -1;
};

testing::Environment* const nsd_environment = testing::AddGlobalTestEnvironment(new nsd_server);

enum form { padded, csv, xml };

std::string trimmed(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
    return std::string(text.substr(first, text.find_last_not_of(' ') + 1 - first));
}

std::string between(std::string_view line, const std::string& open, const std::string& close) {
    const std::size_t from = line.find(open), to = line.find(close, from);
    return to == std::string::npos ? "" : trimmed(line.substr(from + open.size(), to - from - open.size()));
}

// What each row of a report tells: "query comment status type ttl size | data"; in XML without the comment and
// with the translated data's attributes for the data.
std::vector<std::string> query(std::vector<std::string> args, form f) {
    args.insert(args.end(), {"-server", server_address});
    if (f != padded) args.push_back(f == csv ? "-csv" : "-xml");
    const vexa_run run = run_vexa(args);
    EXPECT_EQ(run.exit_code, 0) << run.err;
    EXPECT_TRUE(lines_end_in_crlf(run.out));
    const std::string sep = f == csv ? "," : " | ", body(report_body(run.out));
    std::vector<std::string> rows;
    int headers = 0;  // one in front of the rows of a text form
    for (const std::string& line : lines_of(body)) {
        headers += line.starts_with("query");
        const auto tag = [&](const std::string& name) { return between(line, "<" + name + ">", "</" + name + ">"); };
        const auto cells = f == xml ? std::vector<std::string_view>{} : cells_of(line, sep);
        if (f == xml && line.starts_with("<data_entry>")) {
            rows.push_back(tag("query") + " " + tag("status") + " " + tag("dns_type_name") + " " + tag("ttl_secs") +
                           " " + tag("data_length") + " | " + between(line, "<translated_data ", "></"));
        } else if (!cells.empty()) {
            rows.push_back(trimmed(cells[0]) + " " + trimmed(cells[1]) + " " + trimmed(cells[2]) + " " +
                           trimmed(cells[8]) + " " + trimmed(cells[10]) + " " + trimmed(cells[11]) + " | " +
                           std::string(cells[12]));
        }
    }
    EXPECT_EQ(headers, f == xml ? 0 : 1) << args[1];
    return rows;
}

// One row as the zone predicts it: the words of query(), the data cell of the
// padded form (CSV has no blank behind ";"), and the XML attributes.
struct row {
    std::string words, data, attributes = {};
    std::string in(form f) const {
        const std::size_t comment = words.find(' ');  // XML has none
        if (f == xml) return words.substr(0, comment) + words.substr(words.find(' ', comment + 1)) + " | " + attributes;
        std::string cell = data;
        for (std::size_t at; f == csv && (at = cell.find("; ")) != std::string::npos;) cell.erase(at + 1, 1);
        return words + " | " + cell;
    }
};

const row soa = {
    "interop.test. authority success SOA 300 39",
    "ns1.interop.test.; hostmaster.interop.test.; 0x78c404c9; 0x00001c20; 0x00000384; 0x00127500; 0x0000012c",
    "domain_name=\"ns1.interop.test.\" admin_mailbox=\"hostmaster.interop.test.\" serial_num=\"0x78c404c9\" "
    "refresh_sec=\"7200\" retry_sec=\"900\" expire_sec=\"1209600\" min_sec=\"300\""};

TEST(Interop, EachCommandReportsWhatTheZoneHolds) {
    const std::pair<std::vector<std::string>, std::vector<row>> cases[] = {
        {{"-ip", "192.0.2.25"},
         {{"25.2.0.192.in-addr.arpa. answer success PTR 3600 19", "mail.interop.test.",
           "domain_name=\"mail.interop.test.\""}}},
        // The DNAME has no reading of its own: hexadecimal bytes, no attribute.
        {{"-url", "host.old.interop.test"},
         {{"old.interop.test. answer success DNAME 3600 18", "03 6e 65 77 07 69 6e 74 65 72 6f 70 04 74 65 73 74 00"},
          {"host.old.interop.test. answer success CNAME 3600 11", "host.new.interop.test.",
           "domain_name=\"host.new.interop.test.\""},
          {"host.new.interop.test. answer success A 3600 4", "192.0.2.40", "ipv4_addr=\"192.0.2.40\""}}},
        {{"-mx", "interop.test"},
         {{"interop.test. answer success MX 3600 9", "10; mail.interop.test.",
           "preference=\" 10\" mx_server=\"mail.interop.test.\""},
          {"interop.test. answer success MX 3600 11", "20; backup.interop.test.",
           "preference=\" 20\" mx_server=\"backup.interop.test.\""}}},
        // The name servers' addresses, A first: a zero run is folded in XML only.
        {{"-ns", "interop.test"},
         {{"interop.test. answer success NS 3600 6", "ns1.interop.test.", "domain_name=\"ns1.interop.test.\""},
          {"interop.test. answer success NS 3600 6", "ns2.interop.test.", "domain_name=\"ns2.interop.test.\""},
          {"ns1.interop.test. additions success A 3600 4", "192.0.2.53", "ipv4_addr=\"192.0.2.53\""},
          {"ns2.interop.test. additions success A 3600 4", "192.0.2.54", "ipv4_addr=\"192.0.2.54\""},
          {"ns1.interop.test. additions success AAAA 3600 16", "2001:db8:0:0:0:0:0:53", "ipv6_addr=\"2001:db8::53\""},
          {"ns2.interop.test. additions success AAAA 3600 16", "2001:db8:1:2:3:4:5:6",
           "ipv6_addr=\"2001:db8:1:2:3:4:5:6\""}}},
        // TXT: the raw data, length bytes included.
        {{"-txt", "odd.interop.test"}, {{"odd.interop.test. answer success TXT 2147483647 9", "\010a b, c|d"}}},
        // bulk's long strings leave the 512 bytes: the server drops that whole set and sets TC. What came is
        // reported, and a reply, cut or not, ends the tries.
        {{"-txt", "big.interop.test", "-retry", "2"},
         {{"big.interop.test. answer success CNAME 3600 7", "bulk.interop.test.",
           "domain_name=\"bulk.interop.test.\""}}},
        {{"-txt", "bulk.interop.test", "-retry", "2"}, {{"bulk.interop.test. question invalid TXT 0 0", "  <none>"}}},
        // A CNAME query often has no answer: no row says invalid.
        {{"-cname", "nothere.interop.test"}, {soa}},
    };
    for (const auto& [command, rows] : cases)
        for (form f : {padded, csv, xml}) {
            std::vector<std::string> expected;
            for (const row& each : rows) expected.push_back(each.in(f));
            EXPECT_EQ(query(command, f), expected) << command[1] << " in form " << f;
        }
}

}  // namespace
