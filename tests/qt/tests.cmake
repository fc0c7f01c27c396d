# The tests stand on a QApplication, which lives as long as they all do.
find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
set(LINK ledgertree_qt_guide ledgertree_mainform_form ledgertree_pactkit ledgertree_test_support Qt6::Test)
set(OWN_MAIN ON)
set(PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=offscreen)
set_source_files_properties(qt/screen.cpp PROPERTIES COMPILE_DEFINITIONS LEDGERTREE_SOURCES="${PROJECT_SOURCE_DIR}")
