# What a host gets: the static libraries, their headers under include/refframe, the programs, and a
# package that find_package(refframe CONFIG REQUIRED) finds, with the targets refframe::core and,
# where it was built, refframe::editor.
include(CMakePackageConfigHelpers)

set(REFFRAME_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/refframe)

set(header_rooms platform database processors vertical forms assembly registry)
if(REFFRAME_GUI)
  list(APPEND header_rooms dialogs editor)
endif()
foreach(room IN LISTS header_rooms)
  install(
    DIRECTORY ${PROJECT_SOURCE_DIR}/${room}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/refframe
    FILES_MATCHING
    PATTERN "*.h"
    PATTERN "widgets" EXCLUDE)
endforeach()
if(REFFRAME_GUI)
  install(
    DIRECTORY ${PROJECT_SOURCE_DIR}/platform/widgets
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/refframe/platform
    FILES_MATCHING
    PATTERN "*.h")
endif()

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/refframe-config.cmake.in
  ${PROJECT_BINARY_DIR}/refframe-config.cmake
  INSTALL_DESTINATION ${REFFRAME_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/refframe-config-version.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/refframe-config.cmake
              ${PROJECT_BINARY_DIR}/refframe-config-version.cmake
        DESTINATION ${REFFRAME_PACKAGE_DIR})
install(
  EXPORT refframe
  FILE refframe-targets.cmake
  NAMESPACE refframe::
  DESTINATION ${REFFRAME_PACKAGE_DIR})
