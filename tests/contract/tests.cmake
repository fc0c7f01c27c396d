# What every engine has to keep: on the embedded one always, on SQL Server where LEDGERTREE_TEST_CONNECTION names one.
set(LINK ledgertree_control ledgertree_embedded ledgertree_odbc ledgertree_test_support)
