# accelerators, message boxes
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Accelerators.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MessageBoxes.cpp)
