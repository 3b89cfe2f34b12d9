# Cross-building vexa for 64-bit Arm Linux (Debian's arm64) on an x86-64
# machine with g++-aarch64-linux-gnu. Programs of the build (try_run, tests)
# run under qemu-user; the libraries of a dynamic build are found under
# /usr/aarch64-linux-gnu, where the cross packages put them. `char` is
# unsigned there: the code must not care.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
find_program(VEXA_QEMU_AARCH64 qemu-aarch64)
if(VEXA_QEMU_AARCH64)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${VEXA_QEMU_AARCH64} -L /usr/aarch64-linux-gnu)
endif()
