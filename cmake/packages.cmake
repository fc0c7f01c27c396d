# Debian packages by CPack; scripts/package builds them. What a program of the package loads is found by dpkg-shlibdeps.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ledgertree)
set(CPACK_PACKAGE_CONTACT "LedgerTree developers <ledgertree@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Chart of accounts for accounting products")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ledgertree)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${LEDGERTREE_BUILT_LIBRARIES})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# The screens are Persian: without a font that has its letters they are boxes.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "fonts-noto-ui-core | fonts-noto-core | fonts-dejavu-core")
# The driver for Microsoft SQL Server; the embedded database needs none.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "tdsodbc, qt6-translations-l10n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "qt6-wayland")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "A right-to-left Persian screen that a host application embeds as a control, with\n its plug-ins, the SQL scripts, the guide and a demo host.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ledgertree-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "ledgertree (= ${PROJECT_VERSION}), qt6-base-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers, find_package(LedgerTree) and the example of embedding.")
include(CPack)
