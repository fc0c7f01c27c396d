set(LINK ledgertree_mainform_form ledgertree_test_support)
# A working day lasts ten minutes in a long run.
set(PROPERTIES TIMEOUT 900)
