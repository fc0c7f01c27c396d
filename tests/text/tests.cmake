set(LINK ledgertree_text ledgertree_data)
