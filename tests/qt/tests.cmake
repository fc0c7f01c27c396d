# The tests stand on a QApplication, which lives as long as they all do.
find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
set(LINK ledgertree_qt ledgertree_form_main ledgertree_test_support Qt6::Test)
set(OWN_MAIN ON)
set(PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=offscreen)
