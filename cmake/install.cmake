# What `cmake --install` puts in place. Nothing installed knows the folder it was built in or installed to, so that the
# whole can be moved: the library finds its plug-ins beside itself, the demo host its library, find_package the rest.
include(CMakePackageConfigHelpers)

set(LEDGERTREE_COMPONENTS ${CMAKE_INSTALL_LIBDIR}/ledgertree/components)
set(LEDGERTREE_SQL ${CMAKE_INSTALL_DATADIR}/ledgertree/sql)
set(LEDGERTREE_DOCS ${CMAKE_INSTALL_DATADIR}/doc/ledgertree)
set(LEDGERTREE_MANUALS ${CMAKE_INSTALL_MANDIR})
set(LEDGERTREE_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/LedgerTree)

# Four components, of which each is a Debian package (see packages.cmake): library (what a product on LedgerTree needs on
# the machine of an accountant), tools (for whoever looks after the database), demo, development.
file(RELATIVE_PATH libraries_from_programs ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(ledgertree-demo ledgertree-schema PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
install(TARGETS ledgertree EXPORT LedgerTreeTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS SheetKit PactKit LIBRARY DESTINATION ${LEDGERTREE_COMPONENTS} COMPONENT library)
install(TARGETS ledgertree-schema RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
install(TARGETS ledgertree-demo RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT demo)
install(FILES host/ledgertree-demo.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT demo)
install(FILES host/ledgertree-demo.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT demo)
install(DIRECTORY src/db/ DESTINATION ${LEDGERTREE_SQL} COMPONENT tools FILES_MATCHING PATTERN "*.sql")
install(FILES README.md DESTINATION ${LEDGERTREE_DOCS} COMPONENT tools)
install(DIRECTORY docs/ DESTINATION ${LEDGERTREE_DOCS}/docs COMPONENT tools)

# The manual pages, packed as the system keeps them.
find_program(GZIP gzip REQUIRED)
function(ledgertree_packed file folder name component)
  set(packed ${PROJECT_BINARY_DIR}/packed/${component}/${name}.gz)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/packed/${component})
  execute_process(COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/package/${file} OUTPUT_FILE ${packed} COMMAND_ERROR_IS_FATAL ANY)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/package/${file})
  install(FILES ${packed} DESTINATION ${folder} COMPONENT ${component})
endfunction()
ledgertree_packed(ledgertree-demo.1 ${LEDGERTREE_MANUALS}/man1 ledgertree-demo.1 demo)
ledgertree_packed(ledgertree-schema.8 ${LEDGERTREE_MANUALS}/man8 ledgertree-schema.8 tools)

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
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libledgertree-dev COMPONENT development)
