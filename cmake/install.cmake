# What `cmake --install` puts in place. Nothing installed knows the folder it was built in or installed to, so that the
# whole can be moved: the library finds its plug-ins beside itself, the demo host its library, find_package the rest.
include(CMakePackageConfigHelpers)

set(LEDGERTREE_COMPONENTS ${CMAKE_INSTALL_LIBDIR}/ledgertree/components)
set(LEDGERTREE_SQL ${CMAKE_INSTALL_DATADIR}/ledgertree/sql)
set(LEDGERTREE_DOCS ${CMAKE_INSTALL_DATADIR}/doc/ledgertree)
set(LEDGERTREE_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/LedgerTree)

# Runtime: what a product on LedgerTree needs on the machine of an accountant, and the demo host.
file(RELATIVE_PATH libraries_from_programs ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(ledgertree-demo PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
install(TARGETS ledgertree EXPORT LedgerTreeTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS SheetKit PactKit LIBRARY DESTINATION ${LEDGERTREE_COMPONENTS} COMPONENT runtime)
install(TARGETS ledgertree-demo ledgertree-schema RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
install(FILES host/ledgertree-demo.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT runtime)
install(FILES host/ledgertree-demo.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT runtime)
install(DIRECTORY src/db/ DESTINATION ${LEDGERTREE_SQL} COMPONENT runtime FILES_MATCHING PATTERN "*.sql")
install(FILES README.md DESTINATION ${LEDGERTREE_DOCS} COMPONENT runtime)
install(DIRECTORY docs/ DESTINATION ${LEDGERTREE_DOCS}/docs COMPONENT runtime)

# Development: what a host is built with.
install(DIRECTORY include/ledgertree DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_BINARY_DIR}/include/ledgertree/version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ledgertree COMPONENT development)
install(EXPORT LedgerTreeTargets NAMESPACE LedgerTree:: DESTINATION ${LEDGERTREE_PACKAGE} COMPONENT development)
configure_package_config_file(cmake/LedgerTreeConfig.cmake.in ${PROJECT_BINARY_DIR}/LedgerTreeConfig.cmake
  INSTALL_DESTINATION ${LEDGERTREE_PACKAGE} PATH_VARS LEDGERTREE_COMPONENTS LEDGERTREE_SQL)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/LedgerTreeConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/LedgerTreeConfig.cmake ${PROJECT_BINARY_DIR}/LedgerTreeConfigVersion.cmake
  DESTINATION ${LEDGERTREE_PACKAGE} COMPONENT development)
# For a host that isn't built by CMake; like find_package it finds the rest from where it stands itself.
set(LEDGERTREE_PKGCONFIG ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH LEDGERTREE_PREFIX_FROM_PC /${LEDGERTREE_PKGCONFIG} /)
configure_file(cmake/ledgertree.pc.in ${PROJECT_BINARY_DIR}/ledgertree.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ledgertree.pc DESTINATION ${LEDGERTREE_PKGCONFIG} COMPONENT development)
install(DIRECTORY examples DESTINATION ${LEDGERTREE_DOCS} COMPONENT development)
