# These tests load the plug-ins themselves, as a host does.
add_library(ledgertree_built_components INTERFACE)
add_dependencies(ledgertree_built_components SheetKit PactKit)
set(LINK ledgertree_sheetkit ledgertree_pactkit ledgertree_shell_components ledgertree_built_components ledgertree_test_support)
set_source_files_properties(components/plugins_test.cpp components/sheet_file_test.cpp PROPERTIES
  COMPILE_DEFINITIONS "LEDGERTREE_BUILT_COMPONENTS=\"${LEDGERTREE_BUILT_COMPONENTS}\";LEDGERTREE_FUZZ_FOLDER=\"${PROJECT_SOURCE_DIR}/fuzz\";LEDGERTREE_SHEET_READER=\"${CMAKE_CURRENT_SOURCE_DIR}/components/read_sheet.py\""
  INCLUDE_DIRECTORIES "${PROJECT_SOURCE_DIR}/fuzz")
set(PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=offscreen)
