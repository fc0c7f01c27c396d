set(LINK ledgertree_test_support ledgertree_history)
set_source_files_properties(db/databases_test.cpp PROPERTIES COMPILE_DEFINITIONS
  "LEDGERTREE_DATABASES=\"${CMAKE_CURRENT_SOURCE_DIR}/db/databases.py\";LEDGERTREE_SCRIPTS=\"${PROJECT_SOURCE_DIR}/src/db\"")
set_source_files_properties(db/versions_test.cpp db/server_versions_test.cpp PROPERTIES
  COMPILE_DEFINITIONS "LEDGERTREE_VERSIONS=\"${CMAKE_CURRENT_SOURCE_DIR}/db/versions\"")
