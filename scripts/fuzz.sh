#!/usr/bin/env bash
# Builds the libFuzzer targets (clang) and lets each one explore for a bounded
# time, starting from a copy of its seed corpus. Fails on any finding; the
# input that caused it is kept in build-fuzz/findings/.
# Usage: scripts/fuzz.sh [target ...]   (default: every target)
#   VEXA_FUZZ_SECONDS  time per target, default 30
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
seconds=${VEXA_FUZZ_SECONDS:-30}

VEXA_WANT_CLANG=1 scripts/setup.sh
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j 2

# Every target unless named: the list of fuzz/targets.cmake, written nowhere else.
if [ $# -gt 0 ]; then
  targets=("$@")
else
  read -ra targets <<<"$(sed -n 's/^set(VEXA_FUZZ_TARGETS \(.*\))$/\1/p' fuzz/targets.cmake)"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
findings=$root/build-fuzz/findings
mkdir -p "$findings"
passed=0 failed=0
printf '%-10s %12s %8s %8s  %s\n' target executions cov ft result
for name in "${targets[@]}"; do
  # Each target runs in an empty directory of its own, on a copy of its
  # seeds: the checked-in corpus never changes, and nothing lands elsewhere.
  mkdir -p "$work/$name/corpus" "$work/$name/run"
  cp "fuzz/corpus/$name/"* "$work/$name/corpus/"
  log=$work/$name/log
  # A reply may point anywhere in its first 16 KiB; texts need less room.
  max_len=4096
  [ "$name" = reply ] && max_len=16384
  result=clean
  if ! (cd "$work/$name/run" &&
        "$root/build-fuzz/fuzz/fuzz_$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
          -max_len="$max_len" -close_fd_mask=3 -print_final_stats=1 \
          -artifact_prefix="$findings/$name-" "$work/$name/corpus") >"$log" 2>&1; then
    result=FINDING
  fi
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  stats=$(grep -E '^#[0-9]+.*cov: ' "$log" | tail -1 || true)
  cov=$(sed -n 's/.* cov: \([0-9]*\).*/\1/p' <<<"$stats")
  ft=$(sed -n 's/.* ft: \([0-9]*\).*/\1/p' <<<"$stats")
  printf '%-10s %12s %8s %8s  %s\n' "$name" "${runs:-?}" "${cov:-?}" "${ft:-?}" "$result"
  if [ "$result" = clean ]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    tail -n 60 "$log" >&2
  fi
done
echo "fuzz: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
