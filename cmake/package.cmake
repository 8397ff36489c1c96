# What `cmake --install` and `cpack` install: the library with its headers, a CMake package, a pkg-config file, and the
# command-line program.

include(CMakePackageConfigHelpers)

install(TARGETS KestruneXML EXPORT KestruneXMLTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/KestruneXML)
install(EXPORT KestruneXMLTargets NAMESPACE Kestrune:: DESTINATION ${package_folder})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/KestruneXMLConfig.cmake.in KestruneXMLConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(KestruneXMLConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KestruneXMLConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/KestruneXMLConfigVersion.cmake
        DESTINATION ${package_folder})

# The file gives the prefix relative to its own folder, so that an installed tree can be moved.
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${pkgconfig_folder} /prefix)
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/KestruneXML-4.pc.in KestruneXML-4.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KestruneXML-4.pc DESTINATION ${pkgconfig_folder})

if(KESTRUNE_TOOLS)
  set_target_properties(kestrune-data PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS kestrune-data RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/package) # and not the folder that cpack is called in
set(CPACK_PACKAGE_NAME kestrune-xml)
set(CPACK_PACKAGE_CONTACT "The Kestrune XML developers <developers@kestrune.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_CURRENT_BINARY_DIR}/kestrune)
include(CPack)
