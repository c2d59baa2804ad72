# handles, files, mappings, paths, directories, messages, threads
include(${CMAKE_CURRENT_LIST_DIR}/files.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/directories.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/messages.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/threads.cmake)
