#!/usr/bin/env bash
# The speed benchmark: vexa against the floor program, which does only what a
# sequential tool with a new socket per query cannot avoid. Inside a private
# network namespace it starts NSD on 127.0.0.53 with a zone of 10,000 names
# and the worst-case responder on 127.0.0.54, measures, prints a table and
# stops both by PID.
# Usage: bench/run.sh [ROUNDS]       (11 rounds unless told; two or three minutes)
# The vexa measured is the one that ships: the release preset's (build-release/,
# optimised, static, stripped, as in the Debian package). VEXA_BENCH_TOOL=FILE
# measures that vexa executable instead; VEXA_BENCH_BUILD=DIR builds the floor,
# the responder and the runners in DIR (default: build, the default preset's).
# As root the measuring runs at a raised priority (nice -15), so that other
# work on the machine disturbs the rounds less.
set -euo pipefail
cd "$(dirname "$0")/.."
rounds=${1:-11}
build=${VEXA_BENCH_BUILD:-build}

scripts/setup.sh
if ! command -v valgrind >/dev/null; then
  if [ "$(id -u)" -ne 0 ]; then echo "bench: please install valgrind" >&2; exit 1; fi
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq valgrind >/dev/null
fi
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVEXA_BENCH=ON >/dev/null
cmake --build "$build" -j 2 --target bench_floor bench_worst_responder bench_peak_rss bench_line_writes >/dev/null
if [ -z "${VEXA_BENCH_TOOL:-}" ]; then
  cmake --preset release >/dev/null
  cmake --build --preset release --target vexa >/dev/null
fi

# A CPU with nothing to run goes idle, and on a virtual machine waking it
# again can cost more than a query's round trip, for the floor and the tool
# alike. Idle-class spinners (they run only when nothing else wants a CPU)
# keep the CPUs awake, so the ratios tell the tool's own cost.
# VEXA_BENCH_SPIN=0 measures without them.
spinners=()
stop_spinners() {
  local pid
  for pid in "${spinners[@]}"; do kill "$pid" 2>/dev/null || true; done
}
trap stop_spinners EXIT
if [ "${VEXA_BENCH_SPIN:-1}" = 1 ] && command -v chrt >/dev/null; then
  for cpu in $(seq 0 $(( $(nproc) - 1 ))); do
    taskset -c "$cpu" chrt -i 0 sh -c 'while :; do :; done' &
    spinners+=($!)
  done
fi

echo "load average before: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores" >&2
tool=${VEXA_BENCH_TOOL:-build-release/vexa}
export rounds build tool
priority=()
if [ "$(id -u)" -eq 0 ]; then priority=(nice -n -15); fi
"${priority[@]}" scripts/in-private-net.sh bash -c '
  set -euo pipefail
  . scripts/nsd.sh
  work=$(mktemp -d)
  responder=
  stop_all() {
    if [ -n "$responder" ]; then kill "$responder" 2>/dev/null || true; wait "$responder" 2>/dev/null || true; fi
    nsd_stop "$work/nsd" || true
    rm -rf "$work"
  }
  trap stop_all EXIT
  python3 bench/measure.py zone "$work"
  nsd_start "$work/nsd" 127.0.0.53 bench.test "$work/bench.test.zone"
  "$build/bench/worst_responder" 127.0.0.54 > "$work/responder.out" &
  responder=$!
  for i in $(seq 1 50); do grep -q ready "$work/responder.out" && break; sleep 0.1; done
  # The servers get the last CPU and the measured programs the first, so a
  # server stands in for one on another host, and a round trip does not
  # depend on where the scheduler happens to put either side. The reader of
  # the piped report may run anywhere.
  client=()
  if [ "$(nproc)" -ge 2 ]; then
    last=$(( $(nproc) - 1 ))
    nsd_main=$(cat "$work/nsd/nsd.pid")
    for pid in "$nsd_main" $(pgrep -P "$nsd_main") "$responder"; do
      taskset -a -cp "$last" "$pid" >/dev/null
    done
    client=(taskset -c 0)
  fi
  "${client[@]}" python3 bench/measure.py run --vexa "$tool" --floor "$build/bench/floor" \
    --peak-rss "$build/bench/peak_rss" --line-writes "$build/bench/line_writes" \
    --names "$work/names.txt" --server 127.0.0.53 --worst 127.0.0.54 --work "$work" \
    --rounds "$rounds"
'
echo "load average after: $(cut -d' ' -f1-3 /proc/loadavg)" >&2
