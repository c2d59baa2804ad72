# fonts and text
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/ContextFont.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FontCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FontFace.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FontMatching.cpp
  ${CMAKE_CURRENT_LIST_DIR}/FontObject.cpp
  ${CMAKE_CURRENT_LIST_DIR}/GlyphCache.cpp
  ${CMAKE_CURRENT_LIST_DIR}/GlyphInk.cpp
  ${CMAKE_CURRENT_LIST_DIR}/OutlineMask.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SizedFont.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TextCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TextDrawing.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TextRun.cpp)
