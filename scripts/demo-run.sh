#!/usr/bin/env bash
# Inside the private network: server up, the list through vexa, server down.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/nsd.sh
work=$(mktemp -d)
trap 'nsd_stop "$work"; rm -rf "$work"' EXIT
nsd_start "$work" 127.0.0.2 demo.test examples/demo.test.zone
"${VEXA_BIN:-build/vexa}" -url_pipe -server 127.0.0.2 "$@" < examples/hosts.txt
