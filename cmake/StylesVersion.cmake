# Reads the version from the header that defines it, so that it is written down once.
#
#   styles_read_version(<out-variable> <header>)
#
# The header defines STYLES_VERSION_MAJOR, STYLES_VERSION_MINOR and STYLES_VERSION_PATCH.
function(styles_read_version out_variable header)
  set(parts)
  # Editing the version must reach the package files: configure again when the header changes.
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
  foreach(part IN ITEMS MAJOR MINOR PATCH)
    file(STRINGS ${header} line REGEX "^#[ ]*define[ ]+STYLES_VERSION_${part}[ ]+[0-9]+")
    if(NOT line MATCHES "STYLES_VERSION_${part}[ ]+([0-9]+)")
      message(FATAL_ERROR "${header} does not define STYLES_VERSION_${part} as a number")
    endif()
    list(APPEND parts ${CMAKE_MATCH_1})
  endforeach()
  list(JOIN parts "." version)
  set(${out_variable} ${version} PARENT_SCOPE)
endfunction()
