# Exceptions cross the border between programs and the library, so both use the compiler's runtime as shared libraries.
# Windows finds them beside the programs: they are copied there and installed with the library.
function(kelcore_runtime_dlls)
  set(unwinder libgcc_s_seh-1.dll)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(unwinder libgcc_s_dw2-1.dll)
  endif()
  foreach(name ${unwinder} libstdc++-6.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
                    OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT EXISTS ${found})
      message(FATAL_ERROR "${CMAKE_CXX_COMPILER} does not know where ${name} is")
    endif()
    configure_file(${found} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name} COPYONLY)
    install(FILES ${found} DESTINATION ${CMAKE_INSTALL_BINDIR})
  endforeach()
endfunction()
