target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/CriticalSections.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Semaphores.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SystemTimes.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ThreadObject.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Threads.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Waitable.cpp)
