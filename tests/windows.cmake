# The tests of vexa.exe: the Linux build's end-to-end and interop suites
# (VEXA_HOST_BUILD_DIR, the default preset's build/) run it through Wine, so
# that one suite pins both executables. The modules' own tests are the same
# code's on every system and run in the Linux build.

# A second Windows program: waits for the event of -signal.
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
