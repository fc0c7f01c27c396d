set(LINK ledgertree_embedded)
