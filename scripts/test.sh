#!/usr/bin/env bash
# Builds and runs every test. Usage: scripts/test.sh [default|asan]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-default}
scripts/setup.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
