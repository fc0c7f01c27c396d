set(LINK ledgertree_ui ledgertree_test_support)
