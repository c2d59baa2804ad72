target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Attributes.cpp
  ${CMAKE_CURRENT_LIST_DIR}/CompactPath.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FileCopy.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FileMoves.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Folders.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FullPath.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HostNames.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HostPath.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HostText.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Search.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Spelling.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TemporaryFiles.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Wildcards.cpp)
