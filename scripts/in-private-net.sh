#!/usr/bin/env bash
# Runs a command in a private network namespace with only loopback up, so
# nothing it sends can leave the machine and port 53 can be bound without root.
set -euo pipefail
if [ "${VEXA_IN_PRIVATE_NET:-}" = 1 ]; then exec "$@"; fi
export VEXA_IN_PRIVATE_NET=1
exec unshare -rn bash -c 'ip link set lo up && exec "$@"' bash "$@"
