set(LINK ledgertree_mainform_form ledgertree_test_support)
set_source_files_properties(mainform/form_main_test.cpp PROPERTIES
  COMPILE_DEFINITIONS "LEDGERTREE_VERSIONS=\"${CMAKE_CURRENT_SOURCE_DIR}/db/versions\"")
