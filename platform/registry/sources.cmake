# The registry over SQLite, the reference among embedded databases: whole after a crash, shared by processes.
find_package(SQLite3 REQUIRED)
target_sources(kelplatform PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/Hive.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HiveFile.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HiveSchema.cpp
  ${CMAKE_CURRENT_LIST_DIR}/KeyChanges.cpp
  ${CMAKE_CURRENT_LIST_DIR}/KeyHandles.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Registry.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RegistryCache.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RegistryEnumeration.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RegistryKeys.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RegistrySession.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RegistryText.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RegistryValues.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Sqlite.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WalIndex.cpp)
target_link_libraries(kelplatform PRIVATE SQLite::SQLite3)
