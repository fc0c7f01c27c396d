# The library as a host gets it: nothing else of the product is linked.
find_package(SQLite3 REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
set(LINK LedgerTree::ledgertree Qt6::Test SQLiteCpp SQLite::SQLite3)
set(OWN_MAIN ON)
set(PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=offscreen)
