# What CPack cannot say of a Debian package: libraries of several architectures may be installed together, no script runs at
# installation, since the trigger of ldconfig does all that is needed, and all may enter its folders, whatever the umask.

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree ${package}.tree)
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
  if(package MATCHES "/lib[^/]*$")
    file(READ ${tree}/DEBIAN/control control)
    string(STRIP "${control}" control)
    file(WRITE ${tree}/DEBIAN/control "${control}\nMulti-Arch: same\n")
  endif()
  execute_process(COMMAND find ${tree} -type d -exec chmod 755 {} + COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND dpkg-deb --root-owner-group -Zxz --build ${tree} ${package}
                  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${tree})
endforeach()
