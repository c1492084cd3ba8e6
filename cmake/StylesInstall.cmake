# Installs the libraries, their headers and a relocatable package: find_package(styles CONFIG) in another
# project gives it styles::styles and styles::platform.
include(CMakePackageConfigHelpers)

set(styles_package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/styles)

install(TARGETS platform styles EXPORT stylesTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/ platform/include/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")
install(EXPORT stylesTargets NAMESPACE styles:: DESTINATION ${styles_package_folder})

configure_package_config_file(cmake/stylesConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/stylesConfig.cmake
  INSTALL_DESTINATION ${styles_package_folder}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/stylesConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/stylesConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/stylesConfigVersion.cmake
  DESTINATION ${styles_package_folder})
