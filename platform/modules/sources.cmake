# modules, resources, versions, languages
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Languages.cpp
  ${CMAKE_CURRENT_LIST_DIR}/LocaleLanguages.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Module.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ModuleCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ModuleSearch.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ModuleTable.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NativeModules.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PeImage.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ResourceCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ResourceTree.cpp
  ${CMAKE_CURRENT_LIST_DIR}/StringResources.cpp
  ${CMAKE_CURRENT_LIST_DIR}/VersionCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/VersionRecord.cpp)
target_link_libraries(kelplatform PRIVATE ${CMAKE_DL_LIBS})
