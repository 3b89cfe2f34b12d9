# Cross-building vexa.exe for 64-bit Windows on Linux with mingw-w64. The
# posix thread model: its C++ runtime has std::thread and std::mutex, which
# the test support code uses. Linked statically, the .exe imports only
# system DLLs. Test programs run under Wine. The linker leaves the time
# stamp out of the PE header, so that a build can be repeated byte for byte.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
find_program(VEXA_WINE wine)
if(VEXA_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${VEXA_WINE})
endif()
