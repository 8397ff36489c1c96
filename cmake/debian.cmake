# What `cpack` makes in the folder `package` of the build: three Debian packages, whatever the build's own prefix is.
#   libkestrunexml-4      the library
#   libkestrunexml-4-dev  headers, CMake package, pkg-config file, documents and examples
#   kestrune-data         the command-line program, its manual page and its completion for bash

find_program(GZIP gzip)
mark_as_advanced(GZIP)
if(NOT GZIP)
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/package) # and not the folder that cpack is called in
set(CPACK_PACKAGE_NAME kestrune-xml)
set(CPACK_PACKAGE_CONTACT "The Kestrune XML developers <developers@kestrune.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE none) # finish.cmake compresses
set(CPACK_DEBIAN_PACKAGE_SOURCE kestrune-xml)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian/finish.cmake)

set(library_package libkestrunexml-${PROJECT_VERSION_MAJOR})
set(about "The Kestrune device network describes its hardware in XML files: chip models
with their clocks and memories, transceivers, manufacturers, device classes
and channel types. KestruneXML-4 turns these files into C++ objects and back
without losing a text, searches them, and resolves the macros and Windows
paths that name them.")

set(CPACK_COMPONENTS_ALL library development)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "data layer for Kestrune hardware description files
${about}
.
This package holds the shared library.")

# Two versions would share the folder of the headers, so only one can be there.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${library_package}-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_PROVIDES libkestrunexml-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_CONFLICTS libkestrunexml-dev)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "data layer for Kestrune hardware description files (development)
${about}
.
This package holds what programs are built with: headers, a CMake package
and a pkg-config file, and documents, examples and a sample installation.")

cmake_path(APPEND debian_libdir lib "${CMAKE_LIBRARY_ARCHITECTURE}")
install_library(${debian_libdir} debian IN_COMPONENTS)
set(documents ${CMAKE_INSTALL_DATADIR}/doc)
set(of_development COMPONENT development EXCLUDE_FROM_ALL)
file(GLOB pages CONFIGURE_DEPENDS docs/*.md docs/*.svg)
install(FILES README.md CHANGELOG.md DESTINATION ${documents}/${library_package}-dev ${of_development})
install(FILES ${pages} DESTINATION ${documents}/${library_package}-dev/docs ${of_development})
install(DIRECTORY examples DESTINATION ${documents}/${library_package}-dev ${of_development})

# Compresses a text in the way that is the same at every time.
function(compress from to)
  add_custom_command(OUTPUT ${to} DEPENDS ${from} VERBATIM
    COMMAND ${CMAKE_COMMAND} -E copy ${from} ${to}.text
    COMMAND ${GZIP} -9n --force ${to}.text
    COMMAND ${CMAKE_COMMAND} -E rename ${to}.text.gz ${to})
endfunction()
set(compressed ${CMAKE_CURRENT_BINARY_DIR}/debian/changelog.gz)
compress(${CMAKE_CURRENT_LIST_DIR}/debian/changelog ${compressed})

if(KESTRUNE_MANUAL_PAGE)
  list(APPEND CPACK_COMPONENTS_ALL program)
  set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME kestrune-data)
  set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
  # dpkg-shlibdeps looks up installed packages, and the library's is not.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_CURRENT_BINARY_DIR}/kestrune)
  set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${library_package} (>= ${PROJECT_VERSION})")
  set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "reader of Kestrune hardware description files
${about}
.
This package holds kestrune-data, a command-line program that lists, checks
and searches such files.")

  set(of_program COMPONENT program EXCLUDE_FROM_ALL)
  install(TARGETS kestrune-data RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} ${of_program})
  # The system finds the library of the packages by itself.
  install(CODE "file(RPATH_REMOVE FILE \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/kestrune-data\")"
          ${of_program})
  set(manual_page ${CMAKE_CURRENT_BINARY_DIR}/debian/kestrune-data.1.gz)
  compress(${KESTRUNE_MANUAL_PAGE} ${manual_page})
  list(APPEND compressed ${manual_page})
  install(FILES ${manual_page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 ${of_program})
  install(FILES tools/kestrune-data.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kestrune-data
          ${of_program})
endif()
add_custom_target(packaged_texts ALL DEPENDS ${compressed})

# The licence in the form that Debian's tools read: an indented line for each line, and a dot for an empty one.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS LICENSE)
file(READ LICENSE licence)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]*)\n+(.*)" matched "${licence}")
set(copyright "${CMAKE_MATCH_1}")
string(STRIP "${CMAKE_MATCH_2}" licence)
string(REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REPLACE "\n" "\n " licence " ${licence}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/copyright.in debian/copyright @ONLY)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} name)
  set(package ${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/debian/copyright ${CMAKE_CURRENT_BINARY_DIR}/debian/changelog.gz
          DESTINATION ${documents}/${package} COMPONENT ${component} EXCLUDE_FROM_ALL)
  if(EXISTS ${CMAKE_CURRENT_LIST_DIR}/debian/${package}.lintian-overrides)
    install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/${package}.lintian-overrides RENAME ${package}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component} EXCLUDE_FROM_ALL)
  endif()
endforeach()

include(CPack)
