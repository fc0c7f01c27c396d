set(LINK ledgertree_embedded ledgertree_test_support)
set_source_files_properties(embedded/seeds_test.cpp PROPERTIES
  COMPILE_DEFINITIONS "LEDGERTREE_FUZZ_FOLDER=\"${PROJECT_SOURCE_DIR}/fuzz\""
  INCLUDE_DIRECTORIES "${PROJECT_SOURCE_DIR}/fuzz")
