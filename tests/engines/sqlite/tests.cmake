set(LINK ledgertree_engines_sqlite ledgertree_test_support)
set_source_files_properties(engines/sqlite/seeds_test.cpp PROPERTIES
  COMPILE_DEFINITIONS "LEDGERTREE_FUZZ_FOLDER=\"${PROJECT_SOURCE_DIR}/fuzz\""
  INCLUDE_DIRECTORIES "${PROJECT_SOURCE_DIR}/fuzz")
