#!/usr/bin/env bash
# Installs what building, testing and the demo need on a fresh Debian machine.
# Does nothing for what is already there.
set -euo pipefail

need=()
command -v cmake >/dev/null || need+=(cmake)
command -v ninja >/dev/null || need+=(ninja-build)
command -v g++ >/dev/null || need+=(g++)
command -v nsd >/dev/null || need+=(nsd)
command -v unshare >/dev/null || need+=(util-linux)
command -v ip >/dev/null || need+=(iproute2)
[ -f /usr/include/gtest/gtest.h ] || need+=(libgtest-dev)
if [ "${VEXA_WANT_CLANG:-}" = 1 ]; then
  command -v clang++ >/dev/null || need+=(clang)
  ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a >/dev/null 2>&1 || need+=(libclang-rt-dev)
fi

if [ ${#need[@]} -gt 0 ]; then
  if [ "$(id -u)" -ne 0 ]; then
    echo "setup: please install: ${need[*]}" >&2
    exit 1
  fi
  echo "setup: installing ${need[*]}" >&2
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${need[@]}" >/dev/null
fi

# The packaged server starts itself on install; the project runs its own.
if command -v systemctl >/dev/null 2>&1; then systemctl stop nsd >/dev/null 2>&1 || true; fi
pkill -x nsd >/dev/null 2>&1 || true
exit 0
