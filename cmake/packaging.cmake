# What `cmake --install` puts under the prefix, and the packages CPack makes
# of it: a Debian package on Linux, a zip on Windows. Made from the `release`
# preset: cd build-release && cpack -G DEB (or -G ZIP in the Windows build).

include(GNUInstallDirs)

if(WIN32)
  # The zip holds the program and the README side by side, nothing else.
  install(TARGETS vexa RUNTIME DESTINATION .)
  install(FILES README.md DESTINATION .)
else()
  install(TARGETS vexa RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES dist/vexa.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES dist/vexa.bash DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions
          RENAME vexa)
  install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()

set(CPACK_PACKAGE_NAME vexa)
set(CPACK_PACKAGE_VENDOR "vexa developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "query one DNS server directly and keep the answers as a report")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
  "vexa puts direct questions to one DNS server, named by its IPv4 address:\n"
  "A, PTR, MX, NS, CNAME and TXT, for one name or for each line of a list\n"
  "on the standard input. Every question is one UDP datagram to port 53,\n"
  "and every record of the reply becomes a report row (status, packet ID,\n"
  "server, UTC date and time, type, class, TTL, data) in padded text, CSV\n"
  "or XML, headed by a run record that says when, where and with which\n"
  "command line it was made.")
set(CPACK_RESOURCE_FILE_README "${PROJECT_SOURCE_DIR}/README.md")
set(CPACK_STRIP_FILES ON)

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
else()
  set(CPACK_GENERATOR DEB)
  set(VEXA_PACKAGE_MAINTAINER "vexa developers <vexa@example.org>"
      CACHE STRING "Maintainer field of the Debian package")
  set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${VEXA_PACKAGE_MAINTAINER}")
  set(CPACK_DEBIAN_PACKAGE_SECTION net)
  set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
  # vexa_0.48_amd64.deb: name, version, the architecture dpkg reports.
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  # A static executable needs nothing; a dynamic one (where the system can't
  # link statically) gets its libraries' packages from dpkg-shlibdeps.
  if(NOT VEXA_CAN_LINK_STATIC)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  endif()
  # Debian keeps manual pages gzipped, without a time stamp in the header.
  find_program(VEXA_GZIP gzip)
  set(CPACK_VEXA_GZIP "${VEXA_GZIP}")
  set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/gzip_man_pages.cmake")
endif()

include(CPack)
