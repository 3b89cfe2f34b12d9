#!/usr/bin/env bash
# vexa.exe: cross-built with mingw-w64, then every test of it under Wine,
# inside a private network namespace. The end-to-end and interop tests are
# the Linux build's (build/), run against build-windows/vexa.exe.
# Usage: scripts/test-windows.sh (or scripts/test.sh windows)
set -euo pipefail
cd "$(dirname "$0")/.."
VEXA_WANT_WINDOWS=1 scripts/setup.sh
cmake --preset default >/dev/null
cmake --build --preset default
cmake --preset windows >/dev/null
cmake --build --preset windows

# Wine's files stay in the build directory, never in the home directory.
export WINEPREFIX="$PWD/build-windows/wineprefix" WINEDEBUG=-all LANG=C.UTF-8 \
       WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  wineboot -i </dev/null >/dev/null 2>&1
  # A new prefix poses as Windows 7; as Windows 10 the program sees what a
  # program without a manifest sees there (the version check says 6.2).
  wine winecfg -v win10 </dev/null >/dev/null 2>&1
fi
# Sockets live in the network namespace of the Wine server, not of the
# program: no server of this prefix may still run out here. Inside, one
# persistent server (and Wine's own services) start first with their output
# on /dev/null, or each test would wait for them to let go of its stderr.
wineserver -w
VEXA_IN_PRIVATE_NET=1 unshare -rn bash -c '
  ip link set lo up
  wineserver -p </dev/null >/dev/null 2>&1
  trap "wineserver -k" EXIT
  wine cmd /c exit </dev/null >/dev/null 2>&1
  ctest --preset windows'
