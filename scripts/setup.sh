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
# The Windows build: mingw-w64 of the posix thread model, and Wine to run
# what it makes (without the recommended extras: a console program needs none).
lean=()
if [ "${VEXA_WANT_WINDOWS:-}" = 1 ]; then
  command -v x86_64-w64-mingw32-g++-posix >/dev/null || lean+=(g++-mingw-w64-x86-64-posix)
  command -v wine >/dev/null || lean+=(wine64 wine)
fi
if [ "${VEXA_WANT_CLANG:-}" = 1 ]; then
  command -v clang++ >/dev/null || need+=(clang)
  ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a >/dev/null 2>&1 || need+=(libclang-rt-dev)
fi

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

# The packaged server starts itself on install; the project runs its own.
if command -v systemctl >/dev/null 2>&1; then systemctl stop nsd >/dev/null 2>&1 || true; fi
pkill -x nsd >/dev/null 2>&1 || true
exit 0
