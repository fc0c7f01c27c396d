# Debian packages by CPack; scripts/package builds them. What a program of the package loads is found by dpkg-shlibdeps.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ledgertree)
set(CPACK_PACKAGE_CONTACT "The LedgerTree developers <developers@ledgertree.example>")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library tools demo development)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${LEDGERTREE_BUILT_LIBRARIES})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(summary "chart of accounts for accounting products")

# Each has the copyright and the changes in a folder of its own name, as Debian wants it.
function(ledgertree_package component name section what)
  string(TOUPPER ${component} COMPONENT)
  set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${COMPONENT}_DESCRIPTION "${summary} (${what})\n${ARGN}" PARENT_SCOPE)
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/${name})
  install(FILES package/copyright DESTINATION ${folder} COMPONENT ${component})
  ledgertree_packed(changelog ${folder} changelog ${component})
endfunction()

set(soversion ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
ledgertree_package(library libledgertree${soversion} libs "library"
  "A right-to-left Persian screen that a host application embeds as a control: the\nlibrary, its plug-ins for spreadsheets and cost centres, and the guide.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
# What a program that links the library depends on, and the one thing to do behind its installation.
file(WRITE ${PROJECT_BINARY_DIR}/packed/shlibs "libledgertree ${soversion} libledgertree${soversion} (>= ${PROJECT_VERSION})\n")
file(WRITE ${PROJECT_BINARY_DIR}/packed/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/packed/shlibs;${PROJECT_BINARY_DIR}/packed/triggers")
# The screens are Persian: without a font that has its letters they are boxes.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "fonts-noto-ui-core | fonts-noto-core | fonts-dejavu-core")
# The driver for Microsoft SQL Server; the embedded database needs none.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS "tdsodbc, qt6-translations-l10n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SUGGESTS "qt6-wayland, ledgertree")

ledgertree_package(tools ledgertree database "tools"
  "For whoever looks after the database: the program that installs and checks the\nschema, its SQL scripts, and the documentation.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "tdsodbc")

ledgertree_package(demo ledgertree-demo misc "demo"
  "A small host application with a chart of accounts to look at: a steel company's\naccounts on five levels, four fiscal periods and their documents.")
set(CPACK_DEBIAN_DEMO_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEMO_PACKAGE_DEPENDS "libledgertree${soversion} (= ${PROJECT_VERSION})")

ledgertree_package(development libledgertree-dev libdevel "development files"
  "What a host application is built with: the headers, find_package(LedgerTree),\npkg-config, and two examples of embedding.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libledgertree${soversion} (= ${PROJECT_VERSION}), qt6-base-dev")
include(CPack)
