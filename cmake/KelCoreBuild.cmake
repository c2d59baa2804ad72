# Settings that every target shares, and the functions that declare the library's subsystems and the tests.

include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Installed libraries find each other, and programs find them, wherever the installation is moved.
set(CMAKE_INSTALL_RPATH $ORIGIN $ORIGIN/../${CMAKE_INSTALL_LIBDIR})

# What all of our own code is compiled with; not exported to clients.
add_library(kelcore_settings INTERFACE)
target_compile_options(kelcore_settings INTERFACE -Wall -Wextra -Wpedantic)
if(KELCORE_WERROR)
  target_compile_options(kelcore_settings INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in its own std::string where there are none.
  target_compile_options(kelcore_settings INTERFACE -Wno-restrict)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # A loop that sanitizers keep from becoming vectors is still a good loop.
  target_compile_options(kelcore_settings INTERFACE -Wno-pass-failed)
endif()
if(WIN32)
  # Windows headers name their own extensions; __int64 is one of them.
  target_compile_options(kelcore_settings INTERFACE -Wno-long-long -Wno-pedantic)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Doubles round alike on every target, and callbacks from the system may arrive with a stack aligned to 4 bytes only.
    target_compile_options(kelcore_settings INTERFACE -msse2 -mfpmath=sse -mstackrealign)
  endif()
endif()

# kelcore_subsystem(NAME SOURCES file...)
# One folder of the library as an OBJECT library, kelcore_NAME.
function(kelcore_subsystem name)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_library(kelcore_${name} OBJECT ${ARG_SOURCES})
  target_compile_definitions(kelcore_${name} PRIVATE KELCORE_BUILDING)
  target_include_directories(kelcore_${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(kelcore_${name} PRIVATE $<BUILD_INTERFACE:kelcore_settings> kelplatform)
endfunction()

# kelcore_library(SUBSYSTEMS name...)
# The shared library from its subsystems: libkelcore.so, kelcore.dll.
function(kelcore_library)
  cmake_parse_arguments(ARG "" "" "SUBSYSTEMS" ${ARGN})
  list(TRANSFORM ARG_SUBSYSTEMS PREPEND kelcore_)
  add_library(kelcore SHARED)
  add_library(KelCore::kelcore ALIAS kelcore)
  target_include_directories(kelcore PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_compile_features(kelcore PUBLIC cxx_std_17)
  target_link_libraries(kelcore PRIVATE ${ARG_SUBSYSTEMS} PUBLIC kelplatform)
  set_target_properties(kelcore PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} DEFINE_SYMBOL KELCORE_BUILDING)
  if(WIN32)
    set_target_properties(kelcore PROPERTIES PREFIX "" VERSION "" SOVERSION "")
  endif()
endfunction()
