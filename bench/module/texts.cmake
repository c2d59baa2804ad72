# The same 1,000 texts for all: a module and its language file, a catalogue of gettext, a bundle of ICU.
set(folder ${CMAKE_CURRENT_BINARY_DIR}/module)
set(version "1 VERSIONINFO\nPRODUCTVERSION 1, 2, 3, 4\nBEGIN\nEND\n")
set(own "${version}STRINGTABLE\nBEGIN\n")
set(german "${own}")
set(catalogue "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n")
set(bundle "de {\n texts {\n")
foreach(number RANGE 999)
  set(name "text number ${number} of the program, in its own language")
  set(text "Text Nummer ${number} des Programms, in seiner Sprache")
  string(APPEND own "${number} \"${name}\"\n")
  string(APPEND german "${number} \"${text}\"\n")
  string(APPEND catalogue "\nmsgid \"${name}\"\nmsgstr \"${text}\"\n")
  string(APPEND bundle "\"${text}\",\n")
endforeach()
file(CONFIGURE OUTPUT ${folder}/texts.rc CONTENT "${own}END\n" @ONLY)
file(CONFIGURE OUTPUT ${folder}/german.rc CONTENT "${german}END\n" @ONLY)
file(CONFIGURE OUTPUT ${folder}/texts.po CONTENT "${catalogue}" @ONLY)
file(CONFIGURE OUTPUT ${folder}/de.txt CONTENT "${bundle} }\n}\n" @ONLY)
target_compile_definitions(kelcore_bench PRIVATE KELCORE_BENCH_MODULES="${folder}")

foreach(file texts german)
  kelcore_add_language_file(bench_module_${file} ${folder}/${file}.rc OUTPUT ${folder}/${file}.dll)
  add_dependencies(kelcore_bench bench_module_${file})
endforeach()

# kelcore_bench_texts(NAME TOOL program OUTPUT file COMMAND argument... SOURCES file...)
# Those who look their texts up in a file that a tool of theirs makes.
function(kelcore_bench_texts name)
  cmake_parse_arguments(ARG "" "TOOL;OUTPUT" "COMMAND;SOURCES" ${ARGN})
  find_program(KELCORE_BENCH_${ARG_TOOL} ${ARG_TOOL})
  if(NOT KELCORE_BENCH_${ARG_TOOL})
    message(STATUS "kelcore_bench: ${name} is not installed and left out")
    return()
  endif()
  get_filename_component(place ${ARG_OUTPUT} DIRECTORY)
  add_custom_command(OUTPUT ${ARG_OUTPUT}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${place}
    COMMAND ${KELCORE_BENCH_${ARG_TOOL}} ${ARG_COMMAND} WORKING_DIRECTORY ${folder} VERBATIM)
  target_sources(kelcore_bench PRIVATE ${ARG_SOURCES} ${ARG_OUTPUT})
endfunction()

kelcore_bench_texts(gettext TOOL msgfmt OUTPUT ${folder}/de/LC_MESSAGES/texts.mo
  COMMAND -o de/LC_MESSAGES/texts.mo texts.po SOURCES module/gettext.cpp)
if(TARGET ICU::uc)
  kelcore_bench_texts(icu-bundles TOOL genrb OUTPUT ${folder}/icu/de.res
    COMMAND -q -d icu de.txt SOURCES module/icu.cpp)
endif()
