# timers
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Timers.cpp)
