#!/usr/bin/env bash
# Runs a command that starts Windows programs under Wine, inside a private
# network namespace with only loopback up. Wine's environment (prefix, debug
# channels, locale, DLL overrides) is the one the windows presets set in
# CMakePresets.json, the only place it is written down; the prefix is made
# on first use, in the build tree, never in the home directory.
# Usage: scripts/under-wine.sh COMMAND [ARG ...]   (run from the source root)
set -euo pipefail
cd "$(dirname "$0")/.."
while IFS= read -r setting; do
  export "${setting?}"
done < <(cmake -N --preset windows | sed -n '/^Preset environment variables:/,$ s/^  \([A-Za-z_][A-Za-z0-9_]*\)="\(.*\)"$/\1=\2/p')
if [ -z "${WINEPREFIX:-}" ]; then
  echo "under-wine: the windows preset sets no WINEPREFIX" >&2
  exit 1
fi
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  wineboot -i </dev/null >/dev/null 2>&1
  # A new prefix poses as Windows 7; as Windows 10 the program sees what a
  # program without a manifest sees there (the version check says 6.2).
  wine winecfg -v win10 </dev/null >/dev/null 2>&1
fi
# Sockets live in the network namespace of the Wine server, not of the
# program: no server of this prefix may still run out here. Inside, one
# persistent server (and Wine's own services) start first with their output
# on /dev/null, or each program would wait for them to let go of its stderr.
wineserver -w
VEXA_IN_PRIVATE_NET=1 unshare -rn bash -c '
  ip link set lo up
  wineserver -p </dev/null >/dev/null 2>&1
  trap "wineserver -k" EXIT
  wine cmd /c exit </dev/null >/dev/null 2>&1
  "$@"' bash "$@"
