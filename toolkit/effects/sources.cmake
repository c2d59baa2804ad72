# The effects, objects of their own: the tests and the benchmarks call them past the control, too.
add_library(imagxpr5_effects OBJECT
  ${CMAKE_CURRENT_LIST_DIR}/Geometry.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Mosaic.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Resample.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ResampleAvx2.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ResamplePortable.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Rework.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Tone.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Warps.cpp)
target_compile_definitions(imagxpr5_effects PRIVATE KELCORE_BUILDING)
target_include_directories(imagxpr5_effects PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(imagxpr5_effects PRIVATE kelcore_settings kelplatform)
target_link_libraries(imagxpr5 PRIVATE imagxpr5_effects)

if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86|x86)$")
  # It defines nothing but its road, so that no other code is compiled for a processor that may be absent.
  set(avx2_options -mavx2)
  if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 8)
    # GCC keeps the stack of 64-bit Windows aligned to 16 bytes only, yet saves 32-byte registers there by aligned moves.
    list(APPEND avx2_options -Wa,-muse-unaligned-vector-move)
  endif()
  set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/ResampleAvx2.cpp PROPERTIES COMPILE_OPTIONS "${avx2_options}")
endif()

# The filters, over OpenCV's; on Windows the module brings no library along and does without them. OpenCV's own package
# file asks for far more than the two libraries.
if(WIN32)
  target_sources(imagxpr5_effects PRIVATE ${CMAKE_CURRENT_LIST_DIR}/Unavailable.cpp)
else()
  find_path(KELCORE_OPENCV_INCLUDE opencv2/imgproc.hpp PATH_SUFFIXES opencv4 REQUIRED)
  find_library(KELCORE_OPENCV_CORE opencv_core REQUIRED)
  find_library(KELCORE_OPENCV_IMGPROC opencv_imgproc REQUIRED)
  target_sources(imagxpr5_effects PRIVATE ${CMAKE_CURRENT_LIST_DIR}/Filters.cpp)
  target_include_directories(imagxpr5_effects SYSTEM PRIVATE ${KELCORE_OPENCV_INCLUDE})
  target_link_libraries(imagxpr5_effects INTERFACE ${KELCORE_OPENCV_IMGPROC} ${KELCORE_OPENCV_CORE})
  # The threads that OpenCV starts live on, so its code must not go with the module.
  target_link_options(imagxpr5 PRIVATE LINKER:-z,nodelete)
endif()

if(NOT WIN32)
  # The pictures of docs/effects.md, made by the build; to renew those of the page: keleffects docs/effects.
  find_package(ZLIB REQUIRED)
  add_executable(keleffects ${CMAKE_CURRENT_LIST_DIR}/Gallery.cpp ${CMAKE_CURRENT_LIST_DIR}/../PackedDib.cpp)
  target_link_libraries(keleffects PRIVATE kelcore_settings kelplatform imagxpr5_effects ZLIB::ZLIB)
  add_custom_command(TARGET keleffects POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/effects
    COMMAND keleffects ${CMAKE_BINARY_DIR}/effects)
endif()
