# The floors of the main screen, from the ground up. Each is given what stands below it and never reaches up.
ledgertree_floor(ledgertree_screen SOURCES mainform/main_screen.cpp LINK ledgertree_shell)
ledgertree_floor(ledgertree_proposal SOURCES coding/code_proposal*.cpp coding/suffix*.cpp LINK ledgertree_screen)
ledgertree_floor(ledgertree_field_rules SOURCES accounts/field_rules*.cpp LINK ledgertree_proposal)
ledgertree_floor(ledgertree_record SOURCES mainform/account_*.cpp mainform/form_mode*.cpp LINK ledgertree_field_rules)
ledgertree_floor(ledgertree_saving
  SOURCES accounts/account_*.cpp accounts/relation_*.cpp accounts/save_*.cpp accounts/typed_*.cpp
  LINK ledgertree_record)
ledgertree_floor(ledgertree_form_main SOURCES mainform/form_main*.cpp mainform/commands*.cpp mainform/secondary_screens*.cpp
  LINK ledgertree_saving ledgertree_periods ledgertree_entities ledgertree_batch ledgertree_recoding)
ledgertree_floor(ledgertree_control SOURCES shell/ledger_tree_control*.cpp shell/hidden_commands.cpp LINK ledgertree_form_main)
# Everything but the toolkit: what benchmarks and fuzz targets link.
add_library(ledgertree_all INTERFACE)
target_link_libraries(ledgertree_all INTERFACE ledgertree_control ledgertree_embedded)
