# What is installed, in four components:
#
#   runtime       the shared libraries
#   development   headers, static libraries, the CMake package (find_package(styles CONFIG) gives styles::styles and
#                 styles::platform), the pkg-config files (styles, styles-platform), and what debuggers show values by
#   tools         styles-inspect, when the examples are built
#   docs          the pages
#
# With the usual library folder, relative to the prefix, all of it may be moved afterwards. An absolute
# CMAKE_INSTALL_LIBDIR is kept as it is, and the prefix is the one given when configuring.
include(CMakePackageConfigHelpers)

set(styles_package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/styles)

install(TARGETS platform styles EXPORT stylesTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY include/ platform/include/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN "*.h")
install(EXPORT stylesTargets NAMESPACE styles:: DESTINATION ${styles_package_folder} COMPONENT development)

configure_package_config_file(cmake/stylesConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/stylesConfig.cmake
  INSTALL_DESTINATION ${styles_package_folder}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/stylesConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/stylesConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/stylesConfigVersion.cmake
  DESTINATION ${styles_package_folder} COMPONENT development)

# styles_install_pkgconfig(<name> DESCRIPTION <text> LIBRARY <file name> DEFINES_STATIC <macro> [REQUIRES <name>]
#                          [PRIVATE <libraries>])
#
# Installs <name>.pc. A file that stands below the prefix finds everything from where it stands itself.
function(styles_install_pkgconfig name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "DESCRIPTION;LIBRARY;DEFINES_STATIC;REQUIRES;PRIVATE" "")
  set(folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
    set(prefix ${CMAKE_INSTALL_PREFIX})
    set(libdir ${CMAKE_INSTALL_LIBDIR})
  else()
    file(RELATIVE_PATH up /prefix/${folder} /prefix)
    string(REGEX REPLACE "/$" "" up ${up})
    set(prefix "\${pcfiledir}/${up}")
    set(libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
  endif()
  if(IS_ABSOLUTE ${CMAKE_INSTALL_INCLUDEDIR})
    set(includedir ${CMAKE_INSTALL_INCLUDEDIR})
  else()
    set(includedir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
  endif()

  # A static library tells its users so, and leaves to them what it needs itself.
  if(BUILD_SHARED_LIBS)
    set(cflags "")
    set(libs "")
  else()
    set(cflags " -D${arg_DEFINES_STATIC}")
    set(libs " ${arg_PRIVATE}")
  endif()
  string(CONCAT text
    "prefix=${prefix}\n"
    "libdir=${libdir}\n"
    "includedir=${includedir}\n"
    "\n"
    "Name: ${name}\n"
    "Description: ${arg_DESCRIPTION}\n"
    "Version: ${PROJECT_VERSION}\n"
    "Requires: ${arg_REQUIRES}\n"
    "Cflags: -I\${includedir}${cflags}\n"
    "Libs: -L\${libdir} -l${arg_LIBRARY}${libs}\n")
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc CONTENT "${text}" @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${folder} COMPONENT development)
endfunction()

styles_install_pkgconfig(styles-platform
  DESCRIPTION "Text, streams and JSON under the styles library"
  LIBRARY styles-platform DEFINES_STATIC VEL_STATIC PRIVATE "-pthread")
styles_install_pkgconfig(styles
  DESCRIPTION "${PROJECT_DESCRIPTION}"
  LIBRARY styles DEFINES_STATIC STYLES_STATIC REQUIRES "styles-platform = ${PROJECT_VERSION}")

# What debuggers show values by. gdb looks for the scripts of a shared library in a folder of scripts, under the whole
# path that the library has on the disk: that is known when installing, and by CPack only as what it packs for.
install(FILES debugging/gdb/styles_printers.py debugging/gdb/styles_reading.py
  DESTINATION ${CMAKE_INSTALL_DATADIR}/styles/gdb COMPONENT development)
install(FILES debugging/styles.natvis DESTINATION ${CMAKE_INSTALL_DATADIR}/styles COMPONENT development)
if(BUILD_SHARED_LIBS AND UNIX AND NOT APPLE)
  install(CODE "
    set(library_folder \"${CMAKE_INSTALL_LIBDIR}\")
    if(NOT IS_ABSOLUTE \"\${library_folder}\")
      set(prefix \"\${CMAKE_INSTALL_PREFIX}\")
      if(prefix MATCHES \"/_CPack_Packages/\")
        set(prefix /usr)
      endif()
      set(library_folder \"\${prefix}/\${library_folder}\")
    endif()
    file(REAL_PATH \"\${library_folder}\" library_folder)
    foreach(library IN ITEMS styles styles-platform)
      file(INSTALL DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/gdb/auto-load\${library_folder}\"
        TYPE FILE RENAME \"lib\${library}.so.${PROJECT_VERSION}-gdb.py\"
        FILES \"${PROJECT_SOURCE_DIR}/debugging/gdb/load_styles_printers.py\")
    endforeach()"
    COMPONENT development)
endif()

install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT docs)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT docs PATTERN Doxyfile EXCLUDE)
