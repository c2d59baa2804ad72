# objects, contexts, bitmaps, drawing
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/BitmapBits.cpp
  ${CMAKE_CURRENT_LIST_DIR}/BitmapObject.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Bitmaps.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Brushes.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Clip.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ClipCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Colours.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ContextCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ContextState.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DeviceContext.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DibFormat.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DibRows.cpp
  ${CMAKE_CURRENT_LIST_DIR}/GdiObject.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ObjectCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PixelCopy.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Rectangles.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Screen.cpp
  ${CMAKE_CURRENT_LIST_DIR}/StockObjects.cpp)
