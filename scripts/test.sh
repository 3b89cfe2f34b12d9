#!/usr/bin/env bash
# Builds and runs every test: the plain build, the same under the address and
# undefined-behaviour sanitizers, and vexa.exe with the same suite under Wine.
# Usage: scripts/test.sh [all|default|asan|windows]   (all unless told)
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-all}
if [ "$preset" = all ]; then
  for one in default asan windows; do scripts/test.sh "$one"; done
  exit 0
fi
if [ "$preset" = windows ]; then exec scripts/test-windows.sh; fi
scripts/setup.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
