target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/HostNames.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HostPath.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HostText.cpp)
