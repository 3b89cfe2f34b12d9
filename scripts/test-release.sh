#!/usr/bin/env bash
# Tests a release made by scripts/release.sh, as it ships:
#   - the files: sums, archive members, owners, modes and times, the
#     executables' machine, static linking and stripping, the imports and
#     the version resource of vexa.exe (scripts/check-release.py);
#   - lintian on both Debian packages: no error, no warning;
#   - the end-to-end tests (build/'s vexa_tests, E2e*) against the shipped
#     executables: amd64 as it is, arm64 under qemu-user, vexa.exe under Wine;
#   - as root, the amd64 package installed with dpkg: /usr/bin/vexa runs, its
#     manual page and bash completion are in place; removed again.
# Usage: scripts/test-release.sh OUTDIR
set -euo pipefail
if [ $# -ne 1 ]; then
  echo "usage: scripts/test-release.sh OUTDIR" >&2
  exit 2
fi
out=$(cd "$1" && pwd)
cd "$(dirname "$0")/.."
root=$PWD
VEXA_WANT_WINDOWS=1 VEXA_WANT_RELEASE=1 VEXA_WANT_MAN=1 scripts/setup.sh
version=$(sed -n 's/^project(vexa VERSION \([0-9][0-9.]*\)[ )].*/\1/p' CMakeLists.txt)

python3 scripts/check-release.py "$out" "$version"

for arch in amd64 arm64; do
  # lintian warns when it runs as root; that line is not about the package.
  findings=$(lintian --fail-on none "$out/vexa_${version}_$arch.deb" 2>&1 | grep -v '^running with root privileges' || true)
  if grep -q '^[EW]:' <<<"$findings"; then
    echo "test-release: lintian on vexa_${version}_$arch.deb:" >&2
    echo "$findings" >&2
    exit 1
  fi
done
echo "test-release: lintian finds no error and no warning in either package" >&2

# The tests that run the tool, and the helper that watches vexa.exe's event.
cmake --preset default >/dev/null
cmake --build --preset default --target vexa_tests
cmake --preset windows >/dev/null
cmake --build --preset windows --target vexa_test_helper

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
dpkg-deb -x "$out/vexa_${version}_amd64.deb" "$work/amd64"
dpkg-deb -x "$out/vexa_${version}_arm64.deb" "$work/arm64"
python3 -c 'import sys, zipfile; zipfile.ZipFile(sys.argv[1]).extractall(sys.argv[2])' \
  "$out/vexa-${version}-win64.zip" "$work/win64"
chmod 755 "$work/win64/vexa.exe"

# The harness starts the launcher by its path, as execv does.
e2e=("$root/build/tests/vexa_tests" --gtest_filter='E2e*' --gtest_brief=1)
echo "test-release: end-to-end tests against usr/bin/vexa of the amd64 package" >&2
VEXA_TEST_PROGRAM=$work/amd64/usr/bin/vexa scripts/in-private-net.sh "${e2e[@]}"
echo "test-release: end-to-end tests against usr/bin/vexa of the arm64 package, under qemu-user" >&2
VEXA_TEST_PROGRAM=$work/arm64/usr/bin/vexa VEXA_TEST_LAUNCHER="$(command -v qemu-aarch64) -L /usr/aarch64-linux-gnu" \
  scripts/in-private-net.sh "${e2e[@]}"
echo "test-release: end-to-end tests against vexa.exe of the zip, under Wine" >&2
VEXA_TEST_PROGRAM=$work/win64/vexa.exe VEXA_TEST_LAUNCHER=$(command -v wine) \
  VEXA_TEST_HELPER=$root/build-windows/tests/vexa_test_helper.exe scripts/under-wine.sh "${e2e[@]}"

if [ "$(id -u)" -ne 0 ]; then
  echo "test-release: not root: the amd64 package is not installed" >&2
  exit 0
fi
# Only a package this script installed is removed again.
if [ "$(dpkg-query -W -f='${Status}' vexa 2>/dev/null || true)" = "install ok installed" ]; then
  echo "test-release: a vexa package is installed on this machine already; not replacing it" >&2
  exit 1
fi
trap 'dpkg -r vexa >/dev/null; rm -rf "$work"' EXIT
dpkg -i "$out/vexa_${version}_amd64.deb" >/dev/null
status=0
help=$(/usr/bin/vexa -help 2>&1) || status=$?
if [ "$status" -ne 0 ] || [[ $help != *"vexa ver: $version"*"usage:"* ]]; then
  echo "test-release: /usr/bin/vexa -help gave exit $status:" >&2
  echo "$help" >&2
  exit 1
fi
if ! page=$(man -w vexa); then
  echo "test-release: man -w vexa finds no manual page" \
    "(does a path-exclude in /etc/dpkg/dpkg.cfg.d keep manual pages out?)" >&2
  exit 1
fi
completion=/usr/share/bash-completion/completions/vexa
if ! bash -c ". $completion && complete -p vexa" >/dev/null; then
  echo "test-release: $completion does not set up the completion of vexa" >&2
  exit 1
fi
echo "test-release: the amd64 package installs; /usr/bin/vexa runs; manual page $page; completion $completion" >&2
