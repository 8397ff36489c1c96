# What `cmake --install` installs: the library with its headers, a CMake package, a pkg-config file, and the command-line
# program with its manual page and its completion for bash. The Debian packages install the same for their own layout, as
# components.

include(CMakePackageConfigHelpers)

# Installs the library and what programs are built with, the libraries in `libdir`. `layout` is a word for the files that
# are made for it. With `IN_COMPONENTS` these are the components `library` and `development`, which `cmake --install` leaves out.
function(install_library libdir layout)
  if("IN_COMPONENTS" IN_LIST ARGN)
    set(in_library COMPONENT library EXCLUDE_FROM_ALL NAMELINK_COMPONENT development)
    set(in_development COMPONENT development EXCLUDE_FROM_ALL)
  endif()
  set(made ${CMAKE_CURRENT_BINARY_DIR}/${layout})
  set(export_set KestruneXMLTargets-${layout})
  set(package_folder ${libdir}/cmake/KestruneXML)
  set(pkgconfig_folder ${libdir}/pkgconfig)

  install(TARGETS KestruneXML EXPORT ${export_set}
          LIBRARY DESTINATION ${libdir} ${in_library}
          FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${in_development})
  install(EXPORT ${export_set} FILE KestruneXMLTargets.cmake NAMESPACE Kestrune:: DESTINATION ${package_folder} ${in_development})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/KestruneXMLConfig.cmake.in ${made}/KestruneXMLConfig.cmake
                                INSTALL_DESTINATION ${package_folder})
  write_basic_package_version_file(${made}/KestruneXMLConfigVersion.cmake COMPATIBILITY SameMajorVersion)
  install(FILES ${made}/KestruneXMLConfig.cmake ${made}/KestruneXMLConfigVersion.cmake DESTINATION ${package_folder}
          ${in_development})

  # The file gives the prefix relative to its own folder, so that an installed tree can be moved.
  file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${pkgconfig_folder} /prefix)
  string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
  configure_file(${PROJECT_SOURCE_DIR}/cmake/KestruneXML-4.pc.in ${made}/KestruneXML-4.pc @ONLY)
  install(FILES ${made}/KestruneXML-4.pc DESTINATION ${pkgconfig_folder} ${in_development})
endfunction()

install_library(${CMAKE_INSTALL_LIBDIR} installed)
if(KESTRUNE_TOOLS)
  set_target_properties(kestrune-data PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS kestrune-data RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES tools/kestrune-data.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kestrune-data)
  if(KESTRUNE_MANUAL_PAGE)
    install(FILES ${KESTRUNE_MANUAL_PAGE} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
endif()

if(PROJECT_IS_TOP_LEVEL)
  include(cmake/debian.cmake)
endif()
