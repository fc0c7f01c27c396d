set(LINK ledgertree_engines_sqlite ledgertree_test_support)
set_source_files_properties(engines/sqlite/connection_test.cpp PROPERTIES
  COMPILE_DEFINITIONS "LEDGERTREE_VERSIONS=\"${CMAKE_CURRENT_SOURCE_DIR}/db/versions\"")
set_source_files_properties(engines/sqlite/seeds_test.cpp PROPERTIES
  COMPILE_DEFINITIONS "LEDGERTREE_FUZZ_FOLDER=\"${PROJECT_SOURCE_DIR}/fuzz\""
  INCLUDE_DIRECTORIES "${PROJECT_SOURCE_DIR}/fuzz")
