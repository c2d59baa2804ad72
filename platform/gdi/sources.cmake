# objects, contexts, bitmaps, drawing
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Clip.cpp)
