# The tests of the Windows build. The unit tests are cross-built and run
# under Wine, which CMake puts in front of them. The end-to-end and interop
# tests are those of a Linux build (VEXA_HOST_BUILD_DIR, the default preset's
# build/): they run vexa.exe through Wine, so that one suite pins both
# executables.

# No GoogleTest is packaged for mingw: it is built from the sources that
# libgtest-dev ships.
set(VEXA_GTEST_SOURCE_DIR /usr/src/googletest CACHE PATH "GoogleTest sources, built for Windows")
if(NOT EXISTS ${VEXA_GTEST_SOURCE_DIR}/CMakeLists.txt)
  message(FATAL_ERROR "No GoogleTest sources in ${VEXA_GTEST_SOURCE_DIR}: install libgtest-dev, "
                      "set VEXA_GTEST_SOURCE_DIR, or configure with -DVEXA_TESTS=OFF")
endif()
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory(${VEXA_GTEST_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
include(GoogleTest)

file(GLOB unit_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*_test.cpp)
# These run the tool or talk to a responder: the Linux build's part.
list(FILTER unit_sources EXCLUDE REGEX "/(e2e_[a-z_]*|exchange)_test\\.cpp$")
add_executable(vexa_unit_tests ${unit_sources}
  ${CMAKE_CURRENT_SOURCE_DIR}/support/host_win32.cpp ${CMAKE_CURRENT_SOURCE_DIR}/support/report_lines.cpp)
target_link_libraries(vexa_unit_tests PRIVATE vexa_core gtest gtest_main)
target_include_directories(vexa_unit_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_options(vexa_unit_tests PRIVATE ${VEXA_WARNINGS})
# Listed when the tests run, not at build time: a Wine server started by the
# build would stand outside the tests' private network.
gtest_discover_tests(vexa_unit_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)

# A second Windows program: waits for the event of -signal, makes a named stream.
add_executable(vexa_test_helper ${CMAKE_CURRENT_SOURCE_DIR}/support/helper_win32.cpp)
target_compile_options(vexa_test_helper PRIVATE ${VEXA_WARNINGS})

set(VEXA_HOST_BUILD_DIR "" CACHE PATH "A Linux build of vexa whose end-to-end tests run vexa.exe")
if(VEXA_HOST_BUILD_DIR)
  set(target_environment
    VEXA_TEST_PROGRAM=$<TARGET_FILE:vexa>
    VEXA_TEST_LAUNCHER=${CMAKE_CROSSCOMPILING_EMULATOR}
    VEXA_TEST_HELPER=$<TARGET_FILE:vexa_test_helper>)
  add_test(NAME vexa_exe_e2e COMMAND ${VEXA_HOST_BUILD_DIR}/tests/vexa_tests --gtest_filter=E2e*)
  add_test(NAME vexa_exe_interop COMMAND ${VEXA_HOST_BUILD_DIR}/tests/vexa_interop_tests)
  set_tests_properties(vexa_exe_e2e vexa_exe_interop PROPERTIES ENVIRONMENT "${target_environment}" TIMEOUT 600)
endif()
