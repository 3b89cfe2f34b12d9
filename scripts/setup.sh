#!/usr/bin/env bash
# Installs what building, testing and the demo need on a fresh Debian machine.
# Does nothing for what is already there, and nothing at all when the caller
# has run it for the whole job already (VEXA_SETUP_DONE=1).
set -euo pipefail
[ "${VEXA_SETUP_DONE:-}" = 1 ] && exit 0

# Installs must not start a service: the server package would otherwise start
# the machine's own server, and the project runs its own instances, in private
# network namespaces. For the length of the install a policy-rc.d forbids every
# start; a policy-rc.d the machine has is put back as it was afterwards, and a
# lock keeps two setups from swapping it at once.
policy=/usr/sbin/policy-rc.d
policy_saved=""
policy_marker="# vexa setup: no service starts during its install"
put_policy_back() {
  if [ -n "$policy_saved" ]; then mv -f "$policy_saved" "$policy"; else rm -f "$policy"; fi
}
forbid_service_starts() {
  exec 9>"${TMPDIR:-/tmp}/vexa-setup.lock"
  flock 9
  # One of ours can only be left over from a setup that was killed: not kept.
  if { [ -e "$policy" ] || [ -L "$policy" ]; } && ! grep -qxF "$policy_marker" "$policy" 2>/dev/null; then
    policy_saved=$(mktemp "$policy.vexa-saved.XXXXXX")
    cp -a "$policy" "$policy_saved"
  fi
  trap put_policy_back EXIT
  trap 'exit 130' INT TERM
  printf '#!/bin/sh\n%s\nexit 101\n' "$policy_marker" >"$policy.vexa-new"
  chmod 755 "$policy.vexa-new"
  mv -f "$policy.vexa-new" "$policy"
}

need=()
command -v cmake >/dev/null || need+=(cmake)
command -v ninja >/dev/null || need+=(ninja-build)
command -v g++ >/dev/null || need+=(g++)
command -v nsd >/dev/null || need+=(nsd)
command -v unshare >/dev/null || need+=(util-linux)
command -v ip >/dev/null || need+=(iproute2)
[ -f /usr/include/gtest/gtest.h ] || need+=(libgtest-dev)
# The Windows build: mingw-w64 of the posix thread model, and Wine to run
# what it makes (without the recommended extras: a console program needs none).
lean=()
if [ "${VEXA_WANT_WINDOWS:-}" = 1 ]; then
  command -v x86_64-w64-mingw32-g++-posix >/dev/null || lean+=(g++-mingw-w64-x86-64-posix)
  command -v wine >/dev/null || lean+=(wine64 wine)
fi
# The release: the arm64 cross compiler and qemu-user to run what it makes,
# and lintian to check the Debian packages.
if [ "${VEXA_WANT_RELEASE:-}" = 1 ]; then
  command -v aarch64-linux-gnu-g++ >/dev/null || need+=(g++-aarch64-linux-gnu)
  command -v qemu-aarch64 >/dev/null || need+=(qemu-user)
  command -v lintian >/dev/null || lean+=(lintian)
fi
if [ "${VEXA_WANT_CLANG:-}" = 1 ]; then
  command -v clang++ >/dev/null || need+=(clang)
  ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a >/dev/null 2>&1 || need+=(libclang-rt-dev)
fi
if [ "${VEXA_WANT_RSYNC:-}" = 1 ]; then command -v rsync >/dev/null || need+=(rsync); fi
if [ "${VEXA_WANT_MAN:-}" = 1 ]; then command -v man >/dev/null || need+=(man-db); fi
if [ $((${#need[@]} + ${#lean[@]})) -gt 0 ] && [ "$(id -u)" -eq 0 ]; then forbid_service_starts; fi

if [ $((${#need[@]} + ${#lean[@]})) -gt 0 ]; then
  if [ "$(id -u)" -ne 0 ]; then
    echo "setup: please install: ${need[*]} ${lean[*]}" >&2
    exit 1
  fi
  echo "setup: installing ${need[*]} ${lean[*]}" >&2
  apt-get update -qq
  [ ${#need[@]} -eq 0 ] || DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${need[@]}" >/dev/null
  [ ${#lean[@]} -eq 0 ] ||
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${lean[@]}" >/dev/null
fi
exit 0
