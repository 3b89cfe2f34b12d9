#!/usr/bin/env bash
# Peak RSS of a list run for 1,000 and for 100,000 piped names against a
# DNS server on loopback: memory must not grow with the list's length.
# Usage: scripts/measure-memory.sh [vexa-binary]   (builds build/vexa if none given)
# FORMS="padded -csv -xml -verbose" measures those report forms (default: padded).
set -euo pipefail
cd "$(dirname "$0")/.."
bin=${1:-build/vexa}
if [ $# -eq 0 ]; then
  scripts/setup.sh
  cmake --preset default >/dev/null
  cmake --build --preset default --target vexa peak_rss >/dev/null
fi
export FORMS
exec scripts/in-private-net.sh bash -c '
  set -euo pipefail
  . scripts/nsd.sh
  work=$(mktemp -d)
  trap "nsd_stop $work; rm -rf $work" EXIT
  nsd_start "$work" 127.0.0.2 demo.test examples/demo.test.zone
  for n in 1000 100000; do
    # Names cycle through the demo list: answers, a CNAME, NXDOMAIN.
    awk -v n=$n "BEGIN { split(\"www mail shop missing ns1\", h, \" \"); for (i = 0; i < n; i++) print h[i % 5 + 1] \".demo.test\" }" > "$work/names-$n.txt"
    for form in ${FORMS:-padded}; do
      [ "$form" = padded ] && form=""
      kib=$(build/bench/peak_rss "$work/names-$n.txt" /dev/null "$0" -url_pipe -server 127.0.0.2 -timeout 1 -quiet $form)
      printf "%-8s names=%-7s peak_rss_kib=%s\n" "${form:-padded}" "$n" "$kib"
    done
  done
' "$bin"
