# The Debian package: "cpack -G DEB" in the build folder (./cw package) makes
# callwarden-reports_<version>_<arch>.deb from what "cmake --install" puts
# under /usr. Its Depends are the packages of the shared libraries the
# programs load (dpkg-shlibdeps) and the fonts the reports are measured with.
set(CW_PACKAGE_MAINTAINER "The Callwarden Reports maintainers <maintainers@callwarden.invalid>"
  CACHE STRING "Maintainer field of the Debian package")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME callwarden-reports)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${CW_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-liberation2")
# Printing goes through CUPS, and --print names printers as lpstat shows them.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cups-client")
set(CPACK_DEBIAN_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "call log reports of the office's telephone lines")
# CPack puts the summary first and indents these lines as the control file
# wants them; the empty line separates the paragraphs.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "The office's logging program appends one fixed-column line per call to a
call log. Callwarden Reports reads that log and turns it into paginated
reports: a daily call analysis, line usage, all-lines-busy stretches,
abandoned calls, calls by name, number or line, and the call history, some
with bar charts.

The desktop program callwarden-reports previews, prints and exports them;
cwreport makes the same reports headless, as text, PDF or PNG or on a
printer, for scripts and scheduled jobs.")

# The files every Debian package carries beside its programs.
include(GNUInstallDirs)
find_program(CW_GZIP gzip REQUIRED)
set(doc_folder ${CMAKE_INSTALL_DATADIR}/doc/callwarden-reports)
set(changelog ${PROJECT_BINARY_DIR}/debian/changelog.gz)
add_custom_command(OUTPUT ${changelog}
  COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/data/debian/changelog ${PROJECT_BINARY_DIR}/debian/changelog
  COMMAND ${CW_GZIP} -9nf ${PROJECT_BINARY_DIR}/debian/changelog
  DEPENDS ${PROJECT_SOURCE_DIR}/data/debian/changelog
  VERBATIM)
add_custom_target(cw_debian_changelog ALL DEPENDS ${changelog})
install(FILES ${PROJECT_SOURCE_DIR}/data/debian/copyright ${changelog} DESTINATION ${doc_folder})

include(CPack)
