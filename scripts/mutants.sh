#!/usr/bin/env bash
# Plants one plausible fault at a time in a copy of the product and runs the
# whole suite against it. A fault the suite lets through ("survived") is a
# hole in the tests; one whose exact text is no longer found once in its file
# ("not-applied") means the code moved and its row needs new text.
# Usage: scripts/mutants.sh [--list] [id ...]   (every fault unless ids given)
#   VEXA_MUTANT_DIR  the copy and its one build (default build-mutants/); kept,
#                    so a later run rebuilds only what changed
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

# id @@ file @@ exact text, found once @@ what it becomes @@ what a user would see.
# Each fault is picked by where it would hurt, not by where a test stands.
read -r -d '' table <<'EOF' || true
rdlength-width @@ dns/reply_parser.cpp @@ entry.data_length = wire.u16(); @@ entry.data_length = wire.u8(); @@ RDLENGTH read as one byte
pointer-mask @@ dns/name_decoder.cpp @@ (std::size_t{b & 0x3fu} << 8) @@ (std::size_t{b & 0x7fu} << 8) @@ a compression pointer keeps a flag bit in its offset
label-limit @@ dns/labels.h @@ if (label.size() > max_label) return false; @@ if (label.size() >= max_label) return false; @@ a label of 255 bytes is refused
id-byte-order @@ dns/message_header.h @@ return static_cast<std::uint16_t>(low | (wire.u8() << 8)); @@ return static_cast<std::uint16_t>((low << 8) | wire.u8()); @@ the reply's ID read high byte first
name-steps @@ dns/name_decoder.cpp @@ constexpr int max_steps = 99; @@ constexpr int max_steps = 98; @@ a name of 98 labels is refused
qr-bit @@ dns/reply_parser.cpp @@ if ((wire.u8() & 0x80) == 0) return 0; @@ if ((wire.u8() & 0x01) == 0) return 0; @@ QR looked for at the RD bit: a query taken for a reply
soa-serial-width @@ dns/record_data.cpp @@ soa.serial_num = wire.u32(); @@ soa.serial_num = wire.u16(); @@ the SOA serial read as 16 bits
id-range @@ dns/query_builder.cpp @@ const unsigned tens = draw_digit(1, 9); @@ const unsigned tens = draw_digit(0, 9); @@ packet IDs below 10 are drawn
rd-flag @@ dns/query_builder.cpp @@ message[2] = 0x01; @@ message[2] = 0x00; @@ queries go out without RD
reverse-first-piece @@ dns/reverse_name.cpp @@ if (end > 0 && @@ if (end > 1 && @@ a one-digit first octet is left out of the PTR name
foreign-id @@ transport/exchange.cpp @@ return reached != 0 && reply_id == query_entry.packet_id; @@ return reached != 0; @@ a reply with another query's ID ends the tries
receive-buffer @@ transport/exchange.h @@ receive_buffer_size = 65536; @@ receive_buffer_size = 4096; @@ a large reply is cut at 4 KiB
retry-count @@ driver/attempts.cpp @@ static_cast<std::int32_t>(params.retries + 1u) @@ static_cast<std::int32_t>(params.retries) @@ -retry N makes N tries, not N + 1
delay-unit @@ driver/attempts.cpp @@ os::sleep_ms(params.delay_secs * 1000u); @@ os::sleep_ms(params.delay_secs); @@ -delay counted in milliseconds
delay-after-good @@ driver/attempts.cpp @@ if (!good && params.delay_secs != 0) @@ if (params.delay_secs != 0) @@ the delay follows a good try too
csv-comma-substitute @@ driver/common_options.cpp @@ params.clash_subst = ' '; @@ params.clash_subst = ';'; @@ -csv puts ";" for a comma in a name
csv-pair-padding @@ driver/common_options.cpp @@ params.compact_columns = !params.pair_datetime; @@ params.compact_columns = true; @@ -csv -pair_datetime loses its padding
append-truncates @@ driver/run.cpp @@ results.open_results(params.output_file, false)) return true; @@ results.open_results(params.output_file, true)) return true; @@ -append replaces the results file
record-quote @@ driver/run_record.cpp @@ join_args(echo, args, '\''); @@ join_args(echo, args, '"'); @@ the run record quotes an argument with blanks in double quotes
timeout-default @@ driver/input_params.h @@ std::uint32_t timeout_secs = 1; @@ std::uint32_t timeout_secs = 0; @@ without -timeout a reply is not waited for
dump-printable @@ report/hex_dump.cpp @@ value >= 32 && value <= 126 @@ value >= 32 && value <= 127 @@ DEL shown as itself in the dump's text column
crlf @@ report/output_stream.cpp @@ if (c == '\n') put_raw('\r'); @@ if (c == '\r') put_raw('\r'); @@ a line end written by put leaves without its CR
header-once @@ report/text_report.cpp @@ header_due_ = false; @@ header_due_ = true; @@ a header line in front of every row
txt-cr @@ report/text_report.cpp @@ if (text[i] != '\r' && text[i] != '\n') continue; @@ if (text[i] != '\n') continue; @@ a CR in a TXT record breaks its row
ipv6-fold @@ report/xml_report.cpp @@ if (i == 0) text.push_back(':'); @@ if (i == 1) text.push_back(':'); @@ a leading zero run of an IPv6 address loses a colon
mx-preference-width @@ report/xml_report.cpp @@ cells::write_number(out, preference, 10, 3); @@ cells::write_number(out, preference); @@ the XML MX preference not padded to three
id-base @@ report/text_report.cpp @@ cells::write_number(out, entry.packet_id, 16, w[3], '0'); @@ cells::write_number(out, entry.packet_id, 10, w[3], '0'); @@ the ID cell in decimal
cname-invalid @@ report/result_dispatch.cpp @@ query.dns_type != rr_type::cname @@ query.dns_type != rr_type::ns @@ a CNAME query without answer reported invalid
month-off @@ timefmt/time_parts.cpp @@ fields.month = static_cast<std::uint16_t>(month + 1); @@ fields.month = static_cast<std::uint16_t>(month); @@ dates one month early
mdy-order @@ timefmt/formats.cpp @@ parts.month, 2, parts.day, 2, year, year_width @@ parts.day, 2, parts.month, 2, year, year_width @@ mm/dd/yyyy shows the day first
century-pivot @@ timefmt/time_parts.cpp @@ if (y < 31) { @@ if (y <= 31) { @@ a two-digit year 31 taken as 2031
leap-century @@ timefmt/time_parts.cpp @@ return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); @@ return year % 4 == 0; @@ 2100 counted as a leap year
fraction-digits @@ timefmt/formats.cpp @@ constexpr unsigned max_fraction_digits = 9; @@ constexpr unsigned max_fraction_digits = 6; @@ -timeformat stops at 6 fraction digits
filter-case @@ input/filter.cpp @@ to_lower(lowered); @@  @@ an upper-case -filter pattern never matches
line-limit @@ input/stdin_stream.cpp @@ constexpr std::size_t most = buffer_size - 1; @@ constexpr std::size_t most = buffer_size; @@ long list lines cut at 4096, not 4095
walk-depth @@ input/dir_walk.cpp @@ pending_dirs.back().second > max_depth @@ pending_dirs.back().second >= max_depth @@ -enumdir goes one level short
case-blind @@ platform/text.cpp @@ if (lower_ascii(a[i]) != lower_ascii(b[i])) return false; @@ if (a[i] != b[i]) return false; @@ options compared case-sensitively
octal-base @@ platform/text.cpp @@ value = to_unsigned(std::string_view(copy).substr(o + 1), 8); @@ value = to_unsigned(std::string_view(copy).substr(o + 1), 10); @@ -timeout o17 read as decimal
utf8-surrogate-bound @@ platform/text_convert.cpp @@ (code >= 0xD7FF && code <= 0xE000) @@ (code >= 0xD7FF && code < 0xE000) @@ U+E000 taken, where it is refused
timeout-unit @@ platform/posix/os_net.cpp @@ std::chrono::seconds(timeout_secs) @@ std::chrono::milliseconds(timeout_secs) @@ -timeout counted in milliseconds: a reply that comes late is missed
read-only-results @@ platform/posix/os_files.cpp @@ (facts.st_mode & 07777) | S_IWUSR) @@ facts.st_mode & 07777) @@ a read-only results file stays read-only
EOF

ids=() files=() origs=() repls=() whats=()
while IFS= read -r line; do
  [ -n "$line" ] || continue
  IFS=$'\x1f' read -r id file orig repl what <<<"${line// @@ /$'\x1f'}"
  ids+=("$id") files+=("$file") origs+=("$orig") repls+=("$repl") whats+=("$what")
done <<<"$table"

if [ "${1:-}" = --list ]; then
  for i in "${!ids[@]}"; do printf '%-22s %-28s %s\n' "${ids[$i]}" "${files[$i]}" "${whats[$i]}"; done
  exit 0
fi
chosen=()
for want in "$@"; do
  found=""
  for i in "${!ids[@]}"; do [ "${ids[$i]}" = "$want" ] && found=$i; done
  [ -n "$found" ] || { echo "mutants: no fault named $want (see --list)" >&2; exit 2; }
  chosen+=("$found")
done
[ $# -gt 0 ] || chosen=("${!ids[@]}")

VEXA_WANT_RSYNC=1 scripts/setup.sh
work=${VEXA_MUTANT_DIR:-$root/build-mutants}
tree=$work/tree logs=$work/logs
mkdir -p "$tree" "$logs"
# By content, and without the sources' times: a copied file is newer than any
# object built from a planted fault, so the build takes it again.
rsync -rlpD --checksum --delete --exclude='/build*/' --exclude=/.git "$root/" "$tree/"
cd "$tree"
build() { cmake --build --preset default -j 2 >"$1" 2>&1; }
# As the suite normally runs, with a bound on each test so a hung fault ends.
suite() { ctest --preset default --timeout 120 --stop-on-failure >>"$1" 2>&1; }
cmake --preset default >/dev/null
if ! build "$logs/baseline.log" || ! suite "$logs/baseline.log"; then
  echo "mutants: the suite fails without any fault; see $logs/baseline.log" >&2
  exit 1
fi

# Replaces the one occurrence of ORIG by REPL; exit 3 unless there is exactly one.
plant='my $t = do { local $/; <STDIN> }; my $o = $ENV{ORIG};
       my $n = () = $t =~ /\Q$o\E/g; exit 3 if $n != 1;
       substr($t, index($t, $o), length $o) = $ENV{REPL}; print $t;'

killed=0 survived=0 unapplied=0 unbuilt=0
results=()
for i in "${chosen[@]}"; do
  id=${ids[$i]} file=${files[$i]} log=$logs/${ids[$i]}.log
  cp "$file" "$work/original"
  if ! ORIG=${origs[$i]} REPL=${repls[$i]} perl -e "$plant" <"$work/original" >"$work/planted"; then
    result=not-applied
  else
    cp "$work/planted" "$file"
    if ! build "$log"; then
      result=build-failed
    elif suite "$log"; then
      result=survived
    else
      result=killed
    fi
    # A plain copy: its new time stamp makes the next build take the file again.
    cp "$work/original" "$file"
  fi
  case $result in
    killed) killed=$((killed + 1)) ;;
    survived) survived=$((survived + 1)) ;;
    not-applied) unapplied=$((unapplied + 1)) ;;
    build-failed) unbuilt=$((unbuilt + 1)) ;;
  esac
  results+=("$(printf '%-22s %-12s %s' "$id" "$result" "${whats[$i]}")")
  printf '%s\n' "${results[-1]}" >&2
done

printf '%-22s %-12s %s\n' id result fault
printf '%s\n' "${results[@]}"
echo "mutants: ${#chosen[@]} faults: $killed killed, $survived survived, $unapplied not applied, $unbuilt not built"
[ $((survived + unapplied + unbuilt)) -eq 0 ]
