set(LINK ledgertree_test_support)
set(RUNS ledgertree-demo ledgertree-schema)
set_source_files_properties(host/programs_test.cpp PROPERTIES
  COMPILE_DEFINITIONS "LEDGERTREE_PROGRAMS=\"$<TARGET_FILE_DIR:ledgertree-demo>\"")
