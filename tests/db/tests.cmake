set(LINK ledgertree_test_support)
