#include <string>

#include "driver/messages.h"
#include "driver/run_record.h"

void show_usage() {
    std::string text;
    text.reserve(2048);
    text += "-----------------------------------------------------------------------------\n\n";
    text += tool_banner();
    text += "\n\n";
    text +=
        "usage:\n"
        " \n"
        " vexa -url <domain to lookup> -server <dns srv ip>\n"
        " vexa -ip <ip addr to lookup> -server <dns srv ip>\n"
        " vexa -mx <mail host to lookup> -server <dns srv ip>\n"
        " vexa -ns <domain to lookup> -server <dns srv ip>\n"
        " vexa -cname <domain to lookup> -server <dns srv ip>\n"
        " vexa -txt <url to query> -server <dns srv ip>\n"
        "\n"
        "These versions use STDIN for piping in input:\n"
        " vexa -url_pipe -server <dns srv ip>  \n"
        " vexa -ip_pipe -server <dns srv ip>   \n"
        " vexa -mx_pipe -server <dns srv ip>   \n"
        " vexa -ns_pipe -server <dns srv ip>   \n"
        " vexa -cname_pipe -server <dns srv ip>\n"
        " vexa -txt_pipe -server <dns srv ip>  \n"
        "\n"
        "Available options:\n"
        "  -timeout <in secs>\n"
        "  -retry <num>           = if we timeout, num of retries\n"
        "  -delay <secs>          = delay in secs between each query\n"
        "  -xml                   = output the data in xml format\n"
        "  -csv                   = output in comma separated value format\n"
        "  -verbose               = shows std::hex dump of packets (not in xml mode)\n"
        "  -no_whitespace         = remove whitespace between csv delimiter\n"
        "  -csv_separator \"|\"     = use a pipe char for csv separator\n"
        "  -dateformat mm/dd/yyyy = \"yyyy-mm-dd\" is the default\n"
        "  -timeformat hh:mm:ss   = \"hh:mm:ss.xxx\" is the default\n"
        "  -filter <*partial*>    = filters data from stdin using pipe\n"
        "\n"
        "example of using std input and redirecting the output to a file\n"
        " type hosts.txt | vexa -url_pipe -server 8.8.8.8 > results.txt\n"
        "\n";
    write_error(text);
}
