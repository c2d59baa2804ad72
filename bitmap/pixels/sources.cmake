# The pixel loops and their roads.
target_sources(kelcore_bitmap PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Avx2.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Pixels.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Portable.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Sse41.cpp)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86|x86)$")
  # The two define nothing but their road's loops, so that no other code is compiled for a processor that may be absent.
  set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/Sse41.cpp PROPERTIES COMPILE_OPTIONS -msse4.1)
  set(avx2_options -mavx2)
  if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 8)
    # GCC keeps the stack of 64-bit Windows aligned to 16 bytes only, yet saves 32-byte registers there by aligned moves.
    list(APPEND avx2_options -Wa,-muse-unaligned-vector-move)
  endif()
  set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/Avx2.cpp PROPERTIES COMPILE_OPTIONS "${avx2_options}")
endif()
