# handles, files, mappings, paths, directories
include(${CMAKE_CURRENT_LIST_DIR}/files.cmake OPTIONAL)
include(${CMAKE_CURRENT_LIST_DIR}/directories.cmake OPTIONAL)
include(${CMAKE_CURRENT_LIST_DIR}/messages.cmake)
