#!/usr/bin/env bash
# The main job, from a fresh machine: builds vexa, starts a DNS server of its
# own on loopback with the zone in examples/, and pipes the host list in
# examples/hosts.txt through vexa. Nothing leaves the machine.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset default >/dev/null
cmake --build --preset default --target vexa >/dev/null
exec scripts/in-private-net.sh scripts/demo-run.sh "$@"
