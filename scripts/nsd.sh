# Starts and stops an authoritative server (NSD) on a loopback address, for
# the demo, the benchmark and the capture of fuzz seeds (the interop tests
# start their own). Source this file, then:
#   nsd_start WORKDIR ADDRESS ZONE_NAME ZONE_FILE [ZONE_NAME ZONE_FILE ...]
#   nsd_stop WORKDIR
# It listens on ADDRESS port 53 only, so it needs root or a private network
# namespace (unshare -rn). It runs as a daemon; nsd_stop ends it by the PID in
# WORKDIR/nsd.pid (after 5 s with SIGKILL).

nsd_start() {
  local dir=$1 address=$2
  shift 2
  mkdir -p "$dir"
  {
    echo "server:"
    echo "    ip-address: $address"
    echo "    port: 53"
    echo "    username: \"\""
    echo "    chroot: \"\""
    echo "    zonesdir: \"$dir\""
    echo "    database: \"\""
    echo "    pidfile: \"$dir/nsd.pid\""
    echo "    xfrdfile: \"$dir/xfrd.state\""
    echo "    zonelistfile: \"$dir/zone.list\""
    echo "    logfile: \"$dir/nsd.log\""
    echo "    server-count: 1"
    echo "    verbosity: 0"
    # No response rate limiting: a benchmark or test asks far more than 200 a second.
    echo "    rrl-ratelimit: 0"
    echo "remote-control:"
    echo "    control-enable: no"
    while [ $# -ge 2 ]; do
      cp "$2" "$dir/$1.zone"
      echo "zone:"
      echo "    name: $1"
      echo "    zonefile: $1.zone"
      shift 2
    done
  } > "$dir/nsd.conf"
  nsd -c "$dir/nsd.conf" || return 1  # forks into the background
  # Ready once its PID file is written and its log says it started; at most 5 s.
  local i
  for i in $(seq 1 50); do
    if [ -s "$dir/nsd.pid" ] && grep -q "started" "$dir/nsd.log" 2>/dev/null; then return 0; fi
    sleep 0.1
  done
  echo "nsd did not start; see $dir/nsd.log" >&2
  return 1
}

nsd_stop() {
  local dir=$1 pid i
  [ -s "$dir/nsd.pid" ] || return 0
  pid=$(cat "$dir/nsd.pid")
  kill "$pid" 2>/dev/null || return 0
  for i in $(seq 1 50); do
    kill -0 "$pid" 2>/dev/null || return 0
    sleep 0.1
  done
  kill -9 "$pid" 2>/dev/null || true
}
