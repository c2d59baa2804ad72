# doctest is one header; a private include folder with nothing but it keeps a host's headers away from a cross compiler.
find_path(KELCORE_DOCTEST_DIR doctest/doctest.h PATHS /usr/include /usr/local/include
          NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(kelcore_doctest_include ${CMAKE_BINARY_DIR}/doctest-include)
file(MAKE_DIRECTORY ${kelcore_doctest_include})
file(CREATE_LINK ${KELCORE_DOCTEST_DIR}/doctest ${kelcore_doctest_include}/doctest SYMBOLIC)

# The runner is compiled once for all test programs.
set(kelcore_test_platform $<IF:$<BOOL:${WIN32}>,Windows,Native>)
add_library(kelcore_test_main OBJECT
  ${PROJECT_SOURCE_DIR}/tests/support/main.cpp
  ${PROJECT_SOURCE_DIR}/tests/support/Faults${kelcore_test_platform}.cpp
  ${PROJECT_SOURCE_DIR}/tests/support/MessageBoxes${kelcore_test_platform}.cpp
  ${PROJECT_SOURCE_DIR}/tests/support/SecondProcess${kelcore_test_platform}.cpp
  ${PROJECT_SOURCE_DIR}/tests/support/Threads${kelcore_test_platform}.cpp)
if(NOT WIN32)
  target_sources(kelcore_test_main PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/PrivateRegistryNative.cpp)
endif()
target_include_directories(kelcore_test_main SYSTEM PUBLIC ${kelcore_doctest_include})
target_include_directories(kelcore_test_main PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(kelcore_test_main PUBLIC kelcore_settings kelcore)
# Tests may be slow; the library is compiled as its users get it.
target_compile_options(kelcore_test_main PUBLIC $<$<CONFIG:Release>:-O0>)

# kelcore_test(NAME SOURCES file... [LIBRARIES target...])
# One test program of a folder, NAME_test, run as the test NAME. KELCORE_TEST_DATA is the folder of the stored files.
function(kelcore_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name}_test ${ARG_SOURCES} $<TARGET_OBJECTS:kelcore_test_main>)
  target_link_libraries(${name}_test PRIVATE kelcore_test_main ${ARG_LIBRARIES})
  target_compile_definitions(${name}_test PRIVATE KELCORE_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
  add_test(NAME ${name} COMMAND ${name}_test)
endfunction()
