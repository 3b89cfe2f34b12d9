#!/usr/bin/env bash
# Builds and runs every test: the plain build, the same under the address and
# undefined-behaviour sanitizers, and vexa.exe with the same suite under Wine.
# Usage: scripts/test.sh [all|default|asan|windows]   (all unless told)
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-all}
if [ "$preset" = all ]; then
  # One setup for the three builds, the Windows packages included; the runs
  # below (scripts/test-windows.sh too) skip theirs.
  VEXA_WANT_WINDOWS=1 scripts/setup.sh
  export VEXA_SETUP_DONE=1
  for one in default asan windows; do scripts/test.sh "$one"; done
  exit 0
fi
if [ "$preset" = windows ]; then exec scripts/test-windows.sh; fi
scripts/setup.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
