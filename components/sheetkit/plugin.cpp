#include "sheetkit/sheet_writer.h"
#include "support/plugin_entry.h"

std::int32_t ledgertree_register_components(const LedgerTreeRegistry* registry) {
  if (registry->version != LEDGERTREE_COMPONENT_VERSION) return 0;
  registry->add(registry->context, "SheetKit.SheetWriter",
                &ledgertree::components::create<ledgertree::sheetkit::SheetWriter>);
  return 1;
}
