# What every engine has to keep: on the embedded one always, on SQL Server where LEDGERTREE_TEST_CONNECTION names one.
set(LINK ledgertree_shell_control ledgertree_engines_sqlite ledgertree_engines_odbc ledgertree_test_support)
