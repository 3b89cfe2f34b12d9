#!/usr/bin/env bash
# Builds and runs every test. Usage: scripts/test.sh [default|asan|windows]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-default}
if [ "$preset" = windows ]; then exec scripts/test-windows.sh; fi
scripts/setup.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
