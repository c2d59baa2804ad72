# Resources of programs and libraries, and language files: libraries of nothing but resources. Both come from resource
# scripts (.rc) that MinGW's windres compiles, off Windows too.
#
#   kelcore_add_resources(app app.rc)
#   kelcore_add_language_file(app_german german.rc OUTPUT app.de.dll)
#   kelcore_install_resources(app DESTINATION bin)

# A PE file with resources and no code is the same for every machine that reads it as data; only one that Windows loads
# has to be of the program's width.
if(WIN32)
  set(kelcore_windres ${CMAKE_RC_COMPILER})
  set(kelcore_pe_link ${CMAKE_CXX_COMPILER} -nostdlib -shared -s -Wl,--entry=0,--no-insert-timestamp)
else()
  find_program(KELCORE_WINDRES NAMES x86_64-w64-mingw32-windres i686-w64-mingw32-windres
               DOC "Compiles resource scripts")
  find_program(KELCORE_PE_LINKER NAMES x86_64-w64-mingw32-ld i686-w64-mingw32-ld DOC "Links PE files")
  find_path(KELCORE_WINDOWS_HEADERS winresrc.h PATHS /usr/share/mingw-w64/include
            DOC "What resource scripts include; optional")
  set(kelcore_windres ${KELCORE_WINDRES})
  set(kelcore_pe_link ${KELCORE_PE_LINKER} --shared -s --entry=0 --no-insert-timestamp)
endif()

# kelcore_compile_resources(OUTPUT SCRIPT FILES...)
# A rule for OUTPUT, the script as an object file, made again when the script, what it includes, or FILES change.
function(kelcore_compile_resources output script)
  if(NOT kelcore_windres)
    message(FATAL_ERROR "${script} needs windres: install binutils-mingw-w64-x86-64")
  endif()
  set(preprocess --preprocessor=${CMAKE_CXX_COMPILER})
  foreach(argument -E -xc -DRC_INVOKED -MD -MF ${output}.d -MT ${output})
    list(APPEND preprocess --preprocessor-arg=${argument})
  endforeach()
  if(KELCORE_WINDOWS_HEADERS)
    foreach(argument -D_WIN32 -idirafter ${KELCORE_WINDOWS_HEADERS})
      list(APPEND preprocess --preprocessor-arg=${argument})
    endforeach()
  endif()
  get_filename_component(folder ${script} DIRECTORY)
  add_custom_command(
    OUTPUT ${output}
    COMMAND ${kelcore_windres} ${preprocess} -O coff -c 65001 -I ${folder} ${script} ${output}
    DEPENDS ${script} ${ARGN}
    DEPFILE ${output}.d
    COMMENT "Compiling resources ${output}"
    VERBATIM)
endfunction()

# kelcore_add_resources(TARGET script.rc [DEPENDS file...])
# Gives a program or library the resources of a script: linked in on Windows; elsewhere as TARGET_FILE.rsrc beside it,
# where the platform layer looks for them. Narrow texts of the script are UTF-8. DEPENDS names files that the script
# reads (bitmaps, ...).
function(kelcore_add_resources target script)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  get_filename_component(script ${script} ABSOLUTE)
  set(object ${CMAKE_CURRENT_BINARY_DIR}/${target}.rsrc.o)
  kelcore_compile_resources(${object} ${script} ${ARG_DEPENDS})
  if(WIN32)
    target_sources(${target} PRIVATE ${object})
    set_source_files_properties(${object} PROPERTIES EXTERNAL_OBJECT ON GENERATED ON)
    return()
  endif()
  set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${target}.rsrc.stamp)
  set(folder $<TARGET_FILE_DIR:${target}>)
  add_custom_command(
    OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
    COMMAND ${kelcore_pe_link} -o ${folder}/$<TARGET_FILE_NAME:${target}>.rsrc ${object}
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    DEPENDS ${object}
    COMMENT "Linking resources of ${target}"
    VERBATIM)
  add_custom_target(${target}_resources DEPENDS ${stamp})
  add_dependencies(${target} ${target}_resources)
endfunction()

# kelcore_install_resources(TARGET DESTINATION folder)
# Installs the resources beside TARGET, which is installed to the same folder. Nothing to do on Windows.
function(kelcore_install_resources target)
  cmake_parse_arguments(ARG "" "DESTINATION" "" ${ARGN})
  if(NOT WIN32)
    install(FILES $<TARGET_FILE:${target}>.rsrc DESTINATION ${ARG_DESTINATION})
  endif()
endfunction()

# kelcore_add_language_file(NAME script.rc OUTPUT file [DEPENDS file...])
# A library of resources alone, a real PE file on every system, made by the target NAME as part of the whole build.
# OUTPUT is taken from the folder of the programs; its path is the target's property KELCORE_FILE.
function(kelcore_add_language_file name script)
  cmake_parse_arguments(ARG "" "OUTPUT" "DEPENDS" ${ARGN})
  get_filename_component(script ${script} ABSOLUTE)
  set(folder ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
  if(NOT folder)
    set(folder ${CMAKE_CURRENT_BINARY_DIR})
  endif()
  get_filename_component(file ${ARG_OUTPUT} ABSOLUTE BASE_DIR ${folder})
  get_filename_component(folder ${file} DIRECTORY)
  set(object ${CMAKE_CURRENT_BINARY_DIR}/${name}.rsrc.o)
  kelcore_compile_resources(${object} ${script} ${ARG_DEPENDS})
  add_custom_command(
    OUTPUT ${file}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
    COMMAND ${kelcore_pe_link} -o ${file} ${object}
    DEPENDS ${object}
    COMMENT "Linking language file ${file}"
    VERBATIM)
  add_custom_target(${name} ALL DEPENDS ${file})
  set_target_properties(${name} PROPERTIES KELCORE_FILE ${file})
endfunction()
