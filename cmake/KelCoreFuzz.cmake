# The replay runner is compiled once for all targets that are not driven by a fuzzer.
if(NOT KELCORE_FUZZ)
  add_library(kelcore_fuzz_replay OBJECT ${PROJECT_SOURCE_DIR}/tests/support/replay.cpp)
  target_link_libraries(kelcore_fuzz_replay PRIVATE kelcore_settings)
endif()

# kelcore_fuzz(NAME SOURCES file... [LIBRARIES target...])
# One fuzz target, fuzz_NAME, around LLVMFuzzerTestOneInput. With KELCORE_FUZZ libFuzzer drives it; without, it replays
# its stored inputs, tests/data/fuzz/NAME, as the test fuzz_NAME.
function(kelcore_fuzz name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(fuzz_${name} ${ARG_SOURCES})
  target_include_directories(fuzz_${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(fuzz_${name} PRIVATE kelcore_settings kelcore ${ARG_LIBRARIES})
  if(KELCORE_FUZZ)
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
  else()
    target_sources(fuzz_${name} PRIVATE $<TARGET_OBJECTS:kelcore_fuzz_replay>)
    add_test(NAME fuzz_${name} COMMAND fuzz_${name} ${PROJECT_SOURCE_DIR}/tests/data/fuzz/${name})
  endif()
endfunction()
