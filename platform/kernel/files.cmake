target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/ByteRangeLocks.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Faults.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FileFacts.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FileObject.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FileOpen.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FilePosition.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FileTransfer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/GlobalMemory.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HandleCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Handles.cpp
  ${CMAKE_CURRENT_LIST_DIR}/LastError.cpp
  ${CMAKE_CURRENT_LIST_DIR}/LockCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Mappings.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MulDiv.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ShareModes.cpp
  ${CMAKE_CURRENT_LIST_DIR}/StandardHandles.cpp
  ${CMAKE_CURRENT_LIST_DIR}/System.cpp)
