# Every fuzz target replays its checked-in corpus as an ordinary test, built
# by whatever compiler builds the tests. Each runs in an empty directory of
# its own: the filter target may open files named by its inputs there.
include(${PROJECT_SOURCE_DIR}/fuzz/targets.cmake)

foreach(name IN LISTS VEXA_FUZZ_TARGETS)
  add_executable(fuzz_replay_${name}
    ${PROJECT_SOURCE_DIR}/fuzz/fuzz_${name}.cpp
    ${PROJECT_SOURCE_DIR}/fuzz/standalone_runner.cpp)
  target_link_libraries(fuzz_replay_${name} PRIVATE vexa_core)
  target_compile_options(fuzz_replay_${name} PRIVATE ${VEXA_WARNINGS})
  set(run_dir ${CMAKE_CURRENT_BINARY_DIR}/fuzz_replay_${name}.run)
  file(MAKE_DIRECTORY ${run_dir})
  add_test(NAME fuzz_replay.${name}
    COMMAND fuzz_replay_${name} ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}
    WORKING_DIRECTORY ${run_dir})
  set_tests_properties(fuzz_replay.${name} PROPERTIES TIMEOUT 120)
endforeach()
