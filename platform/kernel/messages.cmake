target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/LocalMemory.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Message.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MessageInserts.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MessageLanguage.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MessageTable.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MessageText.cpp)
