#!/usr/bin/env bash
# Builds the release preset and makes its Debian package; prints the path.
# Usage: scripts/package.sh [--check]
#   --check  also installs the package with dpkg, runs /usr/bin/vexa (the help
#            text, exit 0) and looks up its manual page, then removes it again.
set -euo pipefail
cd "$(dirname "$0")/.."
check=${1:-}
[ "$check" = --check ] && export VEXA_WANT_MAN=1
scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release >&2
rm -f build-release/vexa_*.deb
(cd build-release && cpack -G DEB >/dev/null)
deb=$(ls build-release/vexa_*.deb)
echo "$deb"
[ "$check" = --check ] || exit 0

# Only a package this script installed is removed again.
if [ "$(dpkg-query -W -f='${Status}' vexa 2>/dev/null || true)" = "install ok installed" ]; then
  echo "package: a vexa package is installed on this machine already; not replacing it" >&2
  exit 1
fi
trap 'dpkg -r vexa >/dev/null' EXIT
dpkg -i "$deb" >/dev/null
status=0
help=$(/usr/bin/vexa -help 2>&1) || status=$?
if [ "$status" -ne 0 ] || [[ $help != *"vexa ver: 0.48"*"usage:"* ]]; then
  echo "package: /usr/bin/vexa -help gave exit $status:" >&2
  echo "$help" >&2
  exit 1
fi
if ! page=$(man -w vexa); then
  echo "package: man -w vexa finds no manual page" \
    "(does a path-exclude in /etc/dpkg/dpkg.cfg.d keep manual pages out?)" >&2
  exit 1
fi
echo "package: $deb installs, runs from /usr/bin and has its manual page $page" >&2
