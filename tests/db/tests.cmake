set(LINK ledgertree_test_support)
set_source_files_properties(db/versions_test.cpp db/server_versions_test.cpp PROPERTIES
  COMPILE_DEFINITIONS "LEDGERTREE_VERSIONS=\"${CMAKE_CURRENT_SOURCE_DIR}/db/versions\"")
