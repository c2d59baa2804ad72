# image lists
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/ImageList.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ImageListCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ImageListDragging.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ImageListDrawing.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ImageListMerging.cpp)
