# What `cmake --install` puts in place (the programs and their manual pages,
# nothing else) and the Debian package that `cpack -G DEB` builds from it.
include(GNUInstallDirs)

set(ZYNTEL_PROGRAMS zyntelbin2json zyntelbin2trace)

# Debian ships manual pages compressed; gzip -n leaves the name and time
# stamp out, so the same page always gives the same bytes.
find_program(GZIP gzip REQUIRED)
set(ZYNTEL_MAN_PAGES)
foreach(program ${ZYNTEL_PROGRAMS})
  set(page ${CMAKE_CURRENT_BINARY_DIR}/man/${program}.1)
  add_custom_command(OUTPUT ${page}.gz
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_SOURCE_DIR}/man/${program}.1 ${page}
    COMMAND ${GZIP} -9nf ${page}
    DEPENDS man/${program}.1 VERBATIM)
  list(APPEND ZYNTEL_MAN_PAGES ${page}.gz)
endforeach()
add_custom_target(man_pages ALL DEPENDS ${ZYNTEL_MAN_PAGES})

install(TARGETS ${ZYNTEL_PROGRAMS} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${ZYNTEL_MAN_PAGES} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# The package carries the version the tool prints and writes into its files.
file(STRINGS ${CMAKE_CURRENT_SOURCE_DIR}/src/json/document.h version_line REGEX "kToolVersion = [0-9]+")
if(NOT version_line MATCHES "kToolVersion = ([0-9]+)")
  message(FATAL_ERROR "kToolVersion not found in src/json/document.h")
endif()
set(CPACK_PACKAGE_VERSION ${CMAKE_MATCH_1})

set(ZYNTEL_PACKAGE_MAINTAINER "zyntelbin2json developers <zyntelbin2json@example.org>"
  CACHE STRING "Maintainer line of the Debian package")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zyntelbin2json)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "convert captures of GPU performance events into JSON")
set(CPACK_PACKAGE_DESCRIPTION
  "zyntelbin2json converts binary captures of GPU performance events (Zyntel\n"
  "packets of the firmware, kernel-driver and API-driver streams) into JSON\n"
  "text files. zyntelbin2trace writes the captures of one session as a single\n"
  "trace in the Trace Event Format for timeline viewers.")
string(JOIN "" CPACK_PACKAGE_DESCRIPTION ${CPACK_PACKAGE_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${ZYNTEL_PACKAGE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
# The runtime the programs link, as dpkg-shlibdeps reports it on the build
# machine of record. Not computed at packaging time: dpkg-shlibdeps fails to
# map some of the libraries to their package on merged-/usr systems, at
# random, and then leaves them out of the list without failing.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.34), libgcc-s1 (>= 3.0), libstdc++6 (>= 11)")
include(CPack)
