# The floors of the main screen, from the ground up. Each is given what stands below it and never reaches up.
ledgertree_floor(ledgertree_screen SOURCES mainform/main_screen.cpp LINK ledgertree_shell)
ledgertree_floor(ledgertree_record SOURCES mainform/account_*.cpp LINK ledgertree_screen)
