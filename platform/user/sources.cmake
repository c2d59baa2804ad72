# accelerators, message boxes, windows, system colours
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Accelerators.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DrawTexts.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Frames.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MessageBoxes.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PaintCycle.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Placing.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SystemColours.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TabbedTexts.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TextLayout.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TextStates.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Updates.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Window.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WindowCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WindowClasses.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WindowContexts.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WindowLife.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WindowPictures.cpp)
