# What an installation holds: the libraries, the headers, a CMake package and a pkg-config file. All of it may be moved.

include(CMakePackageConfigHelpers)

set(kelcore_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KelCore)
install(TARGETS kelcore kelplatform EXPORT KelCoreTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/kelcore DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h" PATTERN platform EXCLUDE)
install(EXPORT KelCoreTargets NAMESPACE KelCore:: DESTINATION ${kelcore_package_dir})

configure_file(${CMAKE_CURRENT_LIST_DIR}/KelCoreConfig.cmake.in ${CMAKE_BINARY_DIR}/KelCoreConfig.cmake @ONLY)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/KelCoreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/KelCoreConfig.cmake ${CMAKE_BINARY_DIR}/KelCoreConfigVersion.cmake
              ${CMAKE_CURRENT_LIST_DIR}/KelCoreResources.cmake
        DESTINATION ${kelcore_package_dir})

set(kelcore_pc_libraries "-lkelcore")
if(WIN32)
  include(KelCoreRuntimeDlls)
  kelcore_runtime_dlls()
else()
  # The platform layer's headers stand in for the system's own; on Windows there is nothing to stand in for.
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/kelcore/platform DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelcore)
  string(APPEND kelcore_pc_libraries " -lkelplatform")
endif()

# The file names its prefix by its own place, so that the installation may be moved.
file(RELATIVE_PATH kelcore_pc_up /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" kelcore_pc_up ${kelcore_pc_up})
configure_file(${CMAKE_CURRENT_LIST_DIR}/kelcore.pc.in ${CMAKE_BINARY_DIR}/kelcore.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kelcore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Last: it runs what has been installed.
if(DEFINED KELCORE_REGISTER_SCRIPT)
  install(SCRIPT ${KELCORE_REGISTER_SCRIPT})
endif()
