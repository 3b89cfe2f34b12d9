#!/usr/bin/env bash
# vexa.exe: cross-built with mingw-w64, then every test of it under Wine,
# inside a private network namespace (scripts/under-wine.sh). The end-to-end
# and interop tests are the Linux build's (build/), run against
# build-windows/vexa.exe.
# Usage: scripts/test-windows.sh (or scripts/test.sh windows)
set -euo pipefail
cd "$(dirname "$0")/.."
VEXA_WANT_WINDOWS=1 scripts/setup.sh
cmake --preset default >/dev/null
cmake --build --preset default
cmake --preset windows >/dev/null
cmake --build --preset windows
exec scripts/under-wine.sh ctest --preset windows
