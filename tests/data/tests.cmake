set(LINK ledgertree_data)
