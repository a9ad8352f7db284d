# make install (prefix /usr, DESTDIR honoured) and make package (a .deb through CPack):
# the console, KONU's Linux host tools under /usr/libexec/konu (never /bin or /sbin), the
# simulated host, the systemd units, tmpfiles entry, PAM service and man pages.
set(KONU_TOOL_FOLDER ${CMAKE_INSTALL_LIBEXECDIR}/konu)
set(KONU_PRIVATE_FOLDER lib/konu)
set(pkg ${CMAKE_SOURCE_DIR}/packaging)
set(staged ${CMAKE_BINARY_DIR}/packaging)

install(TARGETS konu RUNTIME DESTINATION ${CMAKE_INSTALL_SBINDIR})

# One script per tool name, so that both "TOOL ARGS" and "sh TOOL ARGS" run it.
install(TARGETS konu-tools RUNTIME DESTINATION ${KONU_TOOL_FOLDER})
foreach(tool ${KONU_TOOL_NAMES})
  file(CONFIGURE OUTPUT ${staged}/tools/${tool}
       CONTENT "#!/bin/sh\nexec ${CMAKE_INSTALL_PREFIX}/${KONU_TOOL_FOLDER}/konu-tools ${tool} \"$@\"\n"
       NEWLINE_STYLE UNIX)
  install(PROGRAMS ${staged}/tools/${tool} DESTINATION ${KONU_TOOL_FOLDER})
endforeach()

# The simulated host: create copies the PAM module from beside the program.
install(TARGETS konu-hostsim RUNTIME DESTINATION ${KONU_PRIVATE_FOLDER})
install(TARGETS pam_konusim LIBRARY DESTINATION ${KONU_PRIVATE_FOLDER})
file(CREATE_LINK ../${KONU_PRIVATE_FOLDER}/konu-hostsim ${staged}/konu-hostsim SYMBOLIC)
install(FILES ${staged}/konu-hostsim DESTINATION ${CMAKE_INSTALL_BINDIR})

install(FILES ${pkg}/konu@.service ${pkg}/konu-serial@.service DESTINATION lib/systemd/system)
install(FILES ${pkg}/konu.tmpfiles DESTINATION lib/tmpfiles.d RENAME konu.conf)
# Staged in the build folder too: the PAM test installs this very file.
configure_file(${pkg}/konu.pam ${staged}/konu.pam COPYONLY)
install(FILES ${staged}/konu.pam DESTINATION ${CMAKE_INSTALL_FULL_SYSCONFDIR}/pam.d RENAME konu)
install(FILES ${pkg}/konu.conf DESTINATION ${CMAKE_INSTALL_FULL_SYSCONFDIR}/konu)
install(DIRECTORY DESTINATION ${CMAKE_INSTALL_FULL_SYSCONFDIR}/konu/support)

set(KONU_VERSION ${PROJECT_VERSION})
configure_file(${pkg}/konu.8 ${staged}/man/konu.8 @ONLY)
configure_file(${pkg}/konu-hostsim.1 ${staged}/man/konu-hostsim.1 @ONLY)
install(FILES ${staged}/man/konu.8 DESTINATION ${CMAKE_INSTALL_MANDIR}/man8)
install(FILES ${staged}/man/konu-hostsim.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

file(CONFIGURE OUTPUT ${staged}/conffiles
     CONTENT "${CMAKE_INSTALL_FULL_SYSCONFDIR}/pam.d/konu\n${CMAKE_INSTALL_FULL_SYSCONFDIR}/konu/konu.conf\n")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME konu)
set(CPACK_PACKAGE_VENDOR KONU)
set(CPACK_PACKAGE_CONTACT "KONU maintainers <root@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "local text console of a virtualization host")
set(CPACK_PACKAGE_DESCRIPTION "KONU runs on the host's virtual terminal or serial line in place of a getty.\n\
It shows the host's facts, logs operators in with the machine's accounts and\n\
changes the host through systemd, libvirt and the machine's own tools.")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_SET_DESTDIR ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
# The linked shared libraries' packages (libc6, libcrypt1, ...) are found by dpkg-shlibdeps;
# the rest is named here: the libraries konu loads at their first use (libpam0g, libaudit1;
# curses is linked in), and the C library that takes packed relocations, a version reference
# without a symbol that dpkg-shlibdeps does not see.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libpam0g, libaudit1, libpam-runtime, systemd")
if(KONU_LINKER_PACKS_RELOCATIONS)
  string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", libc6 (>= 2.36)")
endif()
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libvirt-clients, gdb, kbd, less, iputils-ping, openssh-server")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libvirt-daemon-system, pcscd")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${pkg}/postinst;${staged}/conffiles")
include(CPack)
