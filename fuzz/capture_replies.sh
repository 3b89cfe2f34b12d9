#!/usr/bin/env bash
# Captures real replies for the reply target's seed corpus: starts NSD on
# loopback with the demo zone (in a private network), asks it with vexa
# -verbose, and turns each dump of a received packet back into its bytes.
# Usage: fuzz/capture_replies.sh [vexa binary]   (default build/vexa)
set -euo pipefail
cd "$(dirname "$0")/.."
if [ "${VEXA_IN_PRIVATE_NET:-}" != 1 ]; then exec scripts/in-private-net.sh "$0" "$@"; fi
vexa=${1:-build/vexa}
out=fuzz/corpus/reply
. scripts/nsd.sh
work=$(mktemp -d)
trap 'nsd_stop "$work"; rm -rf "$work"' EXIT
nsd_start "$work" 127.0.0.2 demo.test examples/demo.test.zone

# name of the seed, then the query options
queries=(
  "a-two-answers   -url www.demo.test"
  "a-nxdomain-soa  -url missing.demo.test"
  "a-nodata-soa    -url demo.test"
  "a-cname-chain   -url shop.demo.test"
  "a-mixed-case    -url WwW.DeMo.TeSt"
  "mx-additions    -mx demo.test"
  "ns-apex         -ns demo.test"
  "txt-apex        -txt demo.test"
  "cname-alias     -cname shop.demo.test"
  "ptr-refused     -ip 127.0.0.2"
  "a-refused       -url example.invalid"
)
mkdir -p "$out"
for line in "${queries[@]}"; do
  read -r name options <<<"$line"
  # shellcheck disable=SC2086
  "$vexa" -verbose -server 127.0.0.2 $options |
    perl -ne '
      if (/^packet that was recv/) { $on = 1; next }
      $on = 0 if /^\s*$/;
      print pack("H*", join("", split / /, $1)) if $on && /^[0-9a-f]{4} [0-9a-f]{4}:  ((?:[0-9a-f]{2} ){1,8}(?: (?:[0-9a-f]{2} ){1,8})?)/;
    ' > "$out/nsd-$name.bin"
  [ -s "$out/nsd-$name.bin" ] || { echo "no reply for $name" >&2; exit 1; }
done
ls -l "$out"/nsd-*
